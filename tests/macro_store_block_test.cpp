// The macro store block against hand-worked blocks, the keyboard's limits,
// and the virtual keyboard reading a hand-worked store back step by step.
#include "Protocol/MacroStoreBlock.h"
#include "Simulator/KeyboardState.h"
#include "support/HexBytes.h"

#include <gtest/gtest.h>

using namespace testing_support;
using MacroStoreBlock::MacroSteps;

namespace {

RecordInfo rec(int64_t type, int64_t value) { return {0, 0, type, 0, value, {}}; }
RecordInfo delay(int64_t ms) { return rec(1, ms); }
RecordInfo keyDown(int64_t code) { return rec(2, code); }
RecordInfo keyUp(int64_t code) { return rec(3, code); }
RecordInfo mouseDown(int64_t button) { return rec(4, button); }
RecordInfo mouseUp(int64_t button) { return rec(5, button); }

// `reports` * 64 zero bytes, the given bytes at their offsets, AA 55 at the end.
std::vector<uint8_t> block(std::size_t reports, std::initializer_list<std::pair<std::size_t, std::vector<uint8_t>>> placed)
{
    std::vector<uint8_t> out(reports * 64, 0);
    for (const auto& [offset, bytes] : placed)
        std::copy(bytes.begin(), bytes.end(), out.begin() + std::ptrdiff_t(offset));
    out[out.size() - 2] = 0xAA;
    out[out.size() - 1] = 0x55;
    return out;
}

MacroStoreBlock::Result build(const std::vector<MacroSteps>& macros) { return MacroStoreBlock::build(macros); }

// Place 0: a recorded delay, then a key: nothing inserted after a delay.
// Place 1: no steps. Place 2: key down, recorded delay, key up, then two
// mouse steps that get a 10 ms delay before each; value 3 is the right
// button, bit 2; 70000 ms keep their low 16 bits; records without an
// encoding (type 7, key code 300) are left out.
const std::vector<MacroSteps> kLibrary{
    {delay(300), keyDown(5)},
    {},
    {keyDown(4), delay(70000), rec(7, 1), keyUp(4), mouseDown(1), keyDown(300), mouseUp(3)},
};
const std::vector<uint8_t> kLibraryBlock = block(9, {
    {0, {0x90, 0x01, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xA0, 0x01, 0, 0}},
    {400, {2, 0, 0, 0, 0, 0, 0, 0, 0x2C, 0x01, 0, 0x50, 0, 0, 5, 0xB0}},
    {416, {7, 0, 0, 0, 0, 0, 0, 0,
           0, 0, 4, 0xB0, 0x70, 0x11, 0, 0x50, 0, 0, 4, 0x30, 0x0A, 0, 0, 0x50,
           0, 0, 1, 0x90, 0x0A, 0, 0, 0x50, 0, 0, 2, 0x10}},
});

}  // namespace

TEST(MacroStoreBlock, HandWorkedBlocksWithInsertedDelaysEmptyMacrosAndOffsets)
{
    // No macros: eight reports, all zero but the marker at 510.
    const auto empty = build({});
    EXPECT_EQ(empty.reports, 8);
    EXPECT_EQ(hexFromBytes(empty.block), hexFromBytes(block(8, {})));

    // Key down, key up with no delay: three steps, 10 ms between; end 420.
    const auto tap = build({{keyDown(4), keyUp(4)}});
    EXPECT_EQ(tap.end, 420u);
    EXPECT_EQ(hexFromBytes(tap.block),
              hexFromBytes(block(8, {{0, {0x90, 0x01}},
                                     {400, {3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4, 0xB0, 0x0A, 0, 0, 0x50, 0, 0, 4, 0x30}}})));

    // Directory offsets past an empty macro; end 452 needs a ninth report.
    const auto library = build(kLibrary);
    EXPECT_EQ(library.end, 452u);
    EXPECT_EQ(hexFromBytes(library.block), hexFromBytes(kLibraryBlock));
}

TEST(MacroStoreBlock, ReportCountAtSixtyFourByteBoundariesAndBothKeyboardLimits)
{
    // Delays alone get nothing inserted: k of them end the block at 408 + 4k.
    const auto delays = [](int k) { return MacroSteps(std::size_t(k), delay(20)); };
    struct Case {
        int steps;
        int reports;
    };
    for (const Case c : {Case{10, 8}, Case{11, 9}, Case{26, 9}, Case{27, 10}, Case{682, 50}}) {
        const auto result = build({delays(c.steps)});
        EXPECT_EQ(result.reports, c.reports) << c.steps;
        EXPECT_EQ(result.block.size(), std::size_t(64 * c.reports)) << c.steps;
    }
    // One step more and the 51 reports pass 3200 bytes by one report.
    const auto tooLong = build({delays(683)});
    EXPECT_TRUE(tooLong.block.empty());
    EXPECT_EQ(tooLong.bytesOver, 64u);
    // 342 key steps count 1368 bytes as records, but with the 341 delays put
    // between them they are the same 683 steps.
    EXPECT_EQ(build({MacroSteps(342, keyDown(4))}).bytesOver, 64u);
    EXPECT_TRUE(MacroStoreBlock::withinRecordLimit(1, 342));

    // The directory holds 100 macros.
    EXPECT_FALSE(build(std::vector<MacroSteps>(100)).refused());
    const auto tooMany = build(std::vector<MacroSteps>(103));
    EXPECT_TRUE(tooMany.block.empty());
    EXPECT_EQ(tooMany.macrosOver, 3);

    // The record count check: exactly 2500 goes on.
    EXPECT_TRUE(MacroStoreBlock::withinRecordLimit(1, 623));
    EXPECT_FALSE(MacroStoreBlock::withinRecordLimit(1, 624));
    EXPECT_FALSE(MacroStoreBlock::withinRecordLimit(2, 623));
}

TEST(MacroStoreBlock, VirtualKeyboardListsTheStepsOfEachPlaceWithTheirDelays)
{
    KeyboardState state;
    FirmwareDecoders::macroStore(0, kLibraryBlock, state);
    using K = MacroStoreStep::Kind;
    EXPECT_EQ(state.macro(0), (StoredMacro{true, true, {{K::Delay, 300}, {K::KeyDown, 5}}}));
    EXPECT_EQ(state.macro(1), (StoredMacro{true, true, {}}));
    EXPECT_EQ(state.macro(2), (StoredMacro{true, true,
                                           {{K::KeyDown, 4}, {K::Delay, 0x1170}, {K::KeyUp, 4}, {K::Delay, 10},
                                            {K::MouseDown, 1}, {K::Delay, 10}, {K::MouseUp, 2}}}));
    EXPECT_FALSE(state.macro(3).present);

    // A body that runs past the block, or an unknown step kind, is flagged.
    std::vector<uint8_t> damaged = kLibraryBlock;
    damaged[416] = 200;
    damaged[411] = 0x77;
    FirmwareDecoders::macroStore(0, damaged, state);
    EXPECT_FALSE(state.macro(0).valid);
    EXPECT_FALSE(state.macro(2).valid);
}
