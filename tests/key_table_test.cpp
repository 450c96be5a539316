// The key table block against hand-worked tables: every kind of assignment,
// macros by their place, and the rows that cannot be sent.
#include "Common/KeyCombination.h"
#include "Protocol/KeyTableBlock.h"
#include "support/HexBytes.h"

#include <gtest/gtest.h>

#include <map>

using namespace testing_support;

namespace {

// A stand-in code map: escape in slot 1, "a" in 4, left control in 91, and a
// key whose slot would run into the end marker.
const std::map<int, int> kSlots{{41, 1}, {4, 4}, {224, 91}, {57, 143}};
std::optional<int> slotOf(int code) { return kSlots.contains(code) ? std::optional(kSlots.at(code)) : std::nullopt; }

// 576 zero bytes, the given bytes at their offsets, AA 55 at 574.
std::string table(std::initializer_list<std::pair<std::size_t, std::vector<uint8_t>>> placed)
{
    std::vector<uint8_t> block(576, 0);
    for (const auto& [offset, bytes] : placed)
        std::copy(bytes.begin(), bytes.end(), block.begin() + std::ptrdiff_t(offset));
    block[574] = 0xAA;
    block[575] = 0x55;
    return hexFromBytes(block);
}

std::string built(const std::vector<ProfileKey>& rows, const std::vector<MacroInfo>& macros = {})
{
    const auto block = KeyTableBlock::build(rows, macros, slotOf);
    return hexFromBytes({block.begin(), block.end()});
}

ProfileKey onEscape(int type, int value, int value2 = 0) { return {0, 0, 1, 41, type, value, value2, 0, "x"}; }

}  // namespace

TEST(KeyTable, EveryAssignmentMacroAndProfileRowFillsItsKeysSlotOrNone)
{
    // macroType, macroValue, macro2Value, and the entry at bytes 4 to 7
    // (empty: the entry stays zero).
    const std::vector<std::tuple<int, int, int, std::vector<uint8_t>>> cases{
        {10, 101, 0, {2, 0x10, 0x52, 0}}, {10, 102, 0, {2, 0, 0x48, 0}}, {10, 103, 0, {2, 0, 0x47, 0}},
        {10, 104, 0, {2, 0x01, 0x1d, 0}}, {10, 105, 0, {2, 0x08, 0x06, 0}}, {10, 106, 0, {2, 0x08, 0x19, 0}},
        {10, 107, 0, {2, 0x08, 0x1b, 0}}, {10, 121, 0, {2}},
        {11, 121, 0, {3, 0xcd}}, {11, 122, 0, {3, 0xb7}}, {11, 123, 0, {3, 0xb6}}, {11, 124, 0, {3, 0xb5}},
        {11, 125, 0, {3, 0xe9}}, {11, 126, 0, {3, 0xea}}, {11, 127, 0, {3, 0xe2}}, {11, 101, 0, {3}},
        {13, 131, 0, {1, 1, 0x01}}, {13, 132, 0, {1, 1, 0x02}}, {13, 133, 0, {1, 1, 0x04}},
        {13, 134, 0, {1, 1, 0x08}}, {13, 135, 0, {1, 1, 0x10}}, {13, 136, 0, {1, 3, 0x01}},
        {13, 137, 0, {1, 3, 0xff}}, {13, 1, 0, {1}},
        // Custom key: a plain key, lone modifiers, a key with a modifier.
        {14, 4, 0, {2, 0, 0x04}}, {14, 227, 0, {2, 0x08, 0}}, {14, 231, 0, {2, 0x80, 0}},
        {14, 6, 227, {2, 0x08, 0x06}}, {14, 6, 5, {2, 0x05, 0x06}}, {14, 225, 224, {2, 0x01, 0x02}},
        {16, 1, 0, {2, 0, 0xaf, 0}}, {18, 1, 0, {5, 3, 0, 0}}, {15, 1, 0, {}}, {17, 1, 0, {}}, {0, 1, 0, {}},
    };
    for (const auto& [type, value, value2, entry] : cases)
        EXPECT_EQ(built({onEscape(type, value, value2)}), table({{4, entry}})) << type << "/" << value << "/" << value2;

    // A macro is named by its place in the list, with its play count.
    const std::vector<MacroInfo> macros{{7, 1, 1, 1, "a"}, {3, 2, 1, 1, "b"}, {9, 12, 1, 1, "c"}};
    EXPECT_EQ(built({onEscape(12, 9)}, macros), table({{4, {6, 2, 0, 0x0c}}}));
    EXPECT_EQ(built({onEscape(12, 7)}, macros), table({{4, {6, 0, 0, 0x01}}}));
    // A deleted macro, or none at all: the key keeps its own function.
    EXPECT_EQ(built({onEscape(12, 4)}, macros), table({}));
    EXPECT_EQ(built({onEscape(12, 7)}), table({}));

    // A place or a play count beyond one byte cannot be sent.
    std::vector<MacroInfo> many(257, MacroInfo{1, 3, 0, 0, ""});
    many[0] = {700, 256, 0, 0, ""};
    many[255] = {500, 255, 0, 0, ""};
    many[256] = {600, 1, 0, 0, ""};
    EXPECT_EQ(built({onEscape(12, 500)}, many), table({{4, {6, 0xff, 0, 0xff}}}));
    EXPECT_EQ(built({onEscape(12, 600), {0, 0, 1, 4, 12, 700, 0, 0, "x"}}, many), table({}));

    // A profile fills each key's slot and skips keys it cannot address.
    const std::vector<ProfileKey> rows{{0, 0, 2, 41, 16, 1, 0, 0, "Fn"}, {0, 0, 2, 224, 14, 4, 0, 0, "A"},
                                       {0, 0, 2, 4, 11, 127, 0, 0, "Mute"}, {0, 0, 2, 999, 16, 1, 0, 0, "no key"},
                                       {0, 0, 2, 57, 18, 1, 0, 0, "past the end"}};
    EXPECT_EQ(built(rows), table({{4, {2, 0, 0xaf, 0}}, {16, {3, 0xe2, 0, 0}}, {364, {2, 0, 0x04, 0}}}));
}

TEST(KeyTable, CombinationsKeepTheirModifiersInTheRowAndInTheEntrysModifierByte)
{
    using KeyCombination::Combination;
    using KeyCombination::RowValues;
    struct Case { Combination held; RowValues row; std::vector<uint8_t> entry; };
    const Case cases[] = {
        {{0x00, 0x0E}, {0x0E, 0}, {2, 0x00, 0x0E, 0}},        // K
        {{0x01, 0x0E}, {0x0E, 224}, {2, 0x01, 0x0E, 0}},      // Ctrl+K, as rows have always held it
        {{0x03, 0x0E}, {0x0E, 0x103}, {2, 0x03, 0x0E, 0}},    // Ctrl+Shift+K
        {{0xE0, 0x3E}, {0x3E, 0x1E0}, {2, 0xE0, 0x3E, 0}},    // a mask that reads as a usage without the flag
        {{0x02, 0}, {225, 0}, {2, 0x02, 0, 0}},               // Left Shift alone
        {{0x05, 0}, {224, 0x105}, {2, 0x05, 0, 0}},           // Ctrl+Alt alone
    };
    for (const Case& c : cases) {
        EXPECT_EQ(KeyCombination::toRow(c.held), c.row);
        EXPECT_EQ(KeyCombination::fromRow(c.row.macroValue, c.row.macro2Value), c.held);
        EXPECT_EQ(built({onEscape(14, c.row.macroValue, c.row.macro2Value)}), table({{4, c.entry}}));
    }
    EXPECT_FALSE(KeyCombination::toRow({}));
}
