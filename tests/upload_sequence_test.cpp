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
// With `pauses`, the pauses the transport takes stand among the frames.
std::vector<std::string> wire(const std::vector<ReportSequence>& sequences, bool pauses = false)
{
    auto device = std::make_shared<RecordingHidDevice>();
    auto comm = std::make_shared<DeviceComm>(
        device, pauses ? device->pauseRecorder() : DeviceComm::Sleeper([](std::chrono::milliseconds) {}));
    TransportQueue queue;
    captureLines();
    for (const auto& sequence : sequences)
        queue.submit(comm, sequence);
    EXPECT_TRUE(queue.waitForIdle(5s));
    capturedLines();
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

// The opening 0x18, `header`, every report of `block`, then `closing`.
template <std::size_t N>
std::vector<std::string> upload(std::string header, const std::array<uint8_t, N>& block,
                                 std::vector<std::string> closing, uint8_t opening = 0x18)
{
    std::vector<std::string> out = {frame({0x04, opening}), header};
    for (std::size_t i = 0; i < N; i += 64)
        out.push_back(hexFromBytes(std::vector<uint8_t>(block.begin() + i, block.begin() + i + 64)));
    out.insert(out.end(), closing.begin(), closing.end());
    return out;
}

std::vector<std::string> operator+(std::vector<std::string> a, const std::vector<std::string>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

}  // namespace

TEST(UploadWire, EachUploadGoesOutWholeWithItsOpeningHeaderTargetCountPausesAndClosingFrames)
{
    const auto table = numberedBlock<576>(5);
    EXPECT_EQ(wire(UploadSequences::keyTable(3, table)),
              upload(frame({0x04, 0x11, 0x03, 0, 0, 0, 0, 0, 0x09}), table, {frame({0x04, 0x02, 0x03})}));
    const auto light = numberedBlock<64>(7);
    EXPECT_EQ(wire(UploadSequences::lightMode(2, light)),
              upload(frame({0x04, 0x13, 0x02, 0, 0, 0, 0, 0, 0x01}), light,
                     {frame({0x04, 0x02, 0x02}), frame({0x04, 0xF0, 0x02})}));
    const auto colors = numberedBlock<576>(9);
    EXPECT_EQ(wire(UploadSequences::userLightColors(4, colors)),
              upload(frame({0x04, 0x23, 0x84, 0, 0, 0, 0, 0, 0x09}), colors,
                     {frame({0x04, 0x02}), frame({0x04, 0xF0})}));
    const auto settings = numberedBlock<64>(1);
    EXPECT_EQ(wire(UploadSequences::systemSettings(3, settings)),
              upload(frame({0x04, 0x17, 0x03, 0, 0, 0, 0, 0, 0x01}), settings, {frame({0x04, 0x02})}));

    // The macro store has its own opening and count, and 30 ms pauses right before and after the data.
    const auto store = numberedBlock<128>(2);
    const std::vector<std::string> macros = upload(frame({0x04, 0x15, 0x00, 0, 0, 0, 0, 0, 0x02}), store,
                                                   {frame({0x04, 0x02})}, 0x19);
    // 10 ms before every set and every read; the data reports take no read.
    const std::string p10 = "pause 10", p30 = "pause 30";
    EXPECT_EQ(wire({UploadSequences::macroStore(store)}, true),
              (std::vector<std::string>{p10, macros[0], p10, p10, macros[1], p10, p30, p10, macros[2], p10,
                                        macros[3], p30, p10, macros[4], p10}));

    // Saving a user light slot sends its colours, then the mode on the profile in use.
    const auto mode = numberedBlock<64>(0x21);
    const auto sequences = UploadSequences::userLightSave(2, colors, 3, mode);
    ASSERT_EQ(sequences.size(), 2u) << "the transport is free between the two";
    EXPECT_EQ(wire(sequences), upload(frame({0x04, 0x23, 0x82, 0, 0, 0, 0, 0, 0x09}), colors,
                                      {frame({0x04, 0x02}), frame({0x04, 0xF0})})
                                   + upload(frame({0x04, 0x13, 0x03, 0, 0, 0, 0, 0, 0x01}), mode,
                                            {frame({0x04, 0x02, 0x03}), frame({0x04, 0xF0, 0x03})}));

    // Blanking the user lights sends six complete sequences, for targets 129 to 134.
    const auto blank = numberedBlock<576>(0);
    const auto resets = UploadSequences::userLightReset(blank);
    ASSERT_EQ(resets.size(), 6u);
    std::vector<std::string> expected;
    for (uint8_t target = 129; target <= 134; ++target)
        expected = expected + upload(frame({0x04, 0x23, target, 0, 0, 0, 0, 0, 0x09}), blank,
                                     {frame({0x04, 0x02}), frame({0x04, 0xF0})});
    EXPECT_EQ(wire(resets), expected);
}
