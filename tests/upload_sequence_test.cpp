// The bytes of every upload as they reach the keyboard, frame by frame.
#include "support/CapturedLines.h"
#include "HIDDevice/TransportQueue.h"
#include "Protocol/UploadSequences.h"
#include "support/HexBytes.h"
#include "support/RecordingHidDevice.h"

#include <gtest/gtest.h>

using namespace testing_support;
using namespace std::chrono_literals;

namespace {

// Plays sequences through the real transport onto a recording device.
std::vector<std::string> wire(const std::vector<ReportSequence>& sequences)
{
    auto device = std::make_shared<RecordingHidDevice>();
    auto comm = std::make_shared<DeviceComm>(device, [](std::chrono::milliseconds) {});
    TransportQueue queue;
    for (const auto& sequence : sequences)
        queue.submit(comm, sequence);
    EXPECT_TRUE(queue.waitForIdle(5s));
    return device->sets();
}
std::vector<std::string> wire(const ReportSequence& sequence) { return wire(std::vector{sequence}); }

std::string frame(std::initializer_list<uint8_t> leading) { return hexFromBytes(report(leading)); }

template <std::size_t N>
std::array<uint8_t, N> numberedBlock(uint8_t seed)
{
    std::array<uint8_t, N> block{};
    for (std::size_t i = 0; i < N; ++i)
        block[i] = static_cast<uint8_t>(seed + i * 3);
    block[N - 2] = 0xAA;
    block[N - 1] = 0x55;
    return block;
}

template <std::size_t N>
std::string reportOf(const std::array<uint8_t, N>& block, std::size_t index)
{
    return hexFromBytes(std::vector<uint8_t>(block.begin() + index * 64, block.begin() + index * 64 + 64));
}

}  // namespace

TEST(UploadWire, KeyTableAddressesItsProfileAndKeepsItInTheClosingFrame)
{
    const auto table = numberedBlock<576>(5);
    std::vector<std::string> expected = {frame({0x04, 0x18}), frame({0x04, 0x11, 0x03, 0, 0, 0, 0, 0, 0x09})};
    for (std::size_t i = 0; i < 9; ++i)
        expected.push_back(reportOf(table, i));
    expected.push_back(frame({0x04, 0x02, 0x03}));
    captureLines();
    EXPECT_EQ(wire(UploadSequences::keyTable(3, table)), expected);
    capturedLines();
}

TEST(UploadWire, LightModeIsAppliedAfterTheEndFrameBothKeepingTheProfile)
{
    std::array<uint8_t, 64> block{};
    block[0] = 0x07;
    block[14] = 0xAA;
    block[15] = 0x55;
    const std::vector<std::string> expected = {
        frame({0x04, 0x18}), frame({0x04, 0x13, 0x02, 0, 0, 0, 0, 0, 0x01}),
        hexFromBytes(std::vector<uint8_t>(block.begin(), block.end())),
        frame({0x04, 0x02, 0x02}), frame({0x04, 0xF0, 0x02})};
    EXPECT_EQ(wire(UploadSequences::lightMode(2, block)), expected);
}

TEST(UploadWire, UserLightColoursTargetTheSlotAndCloseOnAClearedFrame)
{
    const auto colors = numberedBlock<576>(9);
    std::vector<std::string> expected = {frame({0x04, 0x18}), frame({0x04, 0x23, 0x84, 0, 0, 0, 0, 0, 0x09})};
    for (std::size_t i = 0; i < 9; ++i)
        expected.push_back(reportOf(colors, i));
    expected.push_back(frame({0x04, 0x02}));
    expected.push_back(frame({0x04, 0xF0}));
    captureLines();
    EXPECT_EQ(wire(UploadSequences::userLightColors(4, colors)), expected);
    capturedLines();
}

TEST(UploadWire, SystemSettingsCloseWithAFrameThatIsZeroButForIdAndCommand)
{
    const auto block = numberedBlock<64>(1);
    const std::vector<std::string> expected = {
        frame({0x04, 0x18}), frame({0x04, 0x17, 0x03, 0, 0, 0, 0, 0, 0x01}), reportOf(block, 0), frame({0x04, 0x02})};
    EXPECT_EQ(wire(UploadSequences::systemSettings(3, block)), expected);
}

TEST(UploadWire, MacroStoreHasItsOwnOpeningCountAndPauses)
{
    const auto store = numberedBlock<128>(2);
    const auto sequence = UploadSequences::macroStore(store);
    const std::vector<std::string> expected = {
        frame({0x04, 0x19}), frame({0x04, 0x15, 0x00, 0, 0, 0, 0, 0, 0x02}), reportOf(store, 0), reportOf(store, 1),
        frame({0x04, 0x02})};
    captureLines();
    EXPECT_EQ(wire(sequence), expected);
    capturedLines();
    // The 30 ms pauses stand right before and after the data.
    ASSERT_EQ(sequence.steps.size(), 6u);
    EXPECT_EQ(sequence.steps[2].kind, ReportStep::Kind::Sleep);
    EXPECT_EQ(sequence.steps[2].pause, 30ms);
    EXPECT_EQ(sequence.steps[4].kind, ReportStep::Kind::Sleep);
    EXPECT_EQ(sequence.steps[4].pause, 30ms);
}

TEST(UploadWire, SavingAUserLightSlotSendsItsColoursThenTheModeOnTheProfileInUse)
{
    const auto colors = numberedBlock<576>(4);
    std::array<uint8_t, 64> mode{};
    mode[0] = 0x21;
    mode[14] = 0xAA;
    mode[15] = 0x55;
    const auto sequences = UploadSequences::userLightSave(2, colors, 3, mode);
    ASSERT_EQ(sequences.size(), 2u) << "the transport is free between the two";
    captureLines();
    const auto sets = wire(sequences);
    capturedLines();
    ASSERT_EQ(sets.size(), 13u + 5u);
    EXPECT_EQ(sets[1], frame({0x04, 0x23, 0x82, 0, 0, 0, 0, 0, 0x09}));
    EXPECT_EQ(sets[12], frame({0x04, 0xF0}));
    EXPECT_EQ(sets[14], frame({0x04, 0x13, 0x03, 0, 0, 0, 0, 0, 0x01}));
    EXPECT_EQ(sets[15], reportOf(mode, 0));
    EXPECT_EQ(sets[17], frame({0x04, 0xF0, 0x03}));
}

TEST(UploadWire, BlankingTheUserLightsSendsSixCompleteSequencesForTargets129To134)
{
    const auto blank = numberedBlock<576>(0);
    const auto sequences = UploadSequences::userLightReset(blank);
    ASSERT_EQ(sequences.size(), 6u);
    captureLines();
    const auto sets = wire(sequences);
    capturedLines();
    ASSERT_EQ(sets.size(), 6u * 13);
    for (int slot = 1; slot <= 6; ++slot) {
        const std::size_t at = (slot - 1) * 13;
        EXPECT_EQ(sets[at], frame({0x04, 0x18}));
        EXPECT_EQ(sets[at + 1], frame({0x04, 0x23, static_cast<uint8_t>(128 + slot), 0, 0, 0, 0, 0, 0x09}));
        EXPECT_EQ(sets[at + 10], reportOf(blank, 8));
        EXPECT_EQ(sets[at + 11], frame({0x04, 0x02}));
        EXPECT_EQ(sets[at + 12], frame({0x04, 0xF0}));
    }
}
