// The system settings block: which stored values lock which keys, and what
// a switch on the system page does to the lock byte.
#include "Protocol/SystemSettingsBlock.h"
#include "support/HexBytes.h"

#include <gtest/gtest.h>

using namespace testing_support;
using namespace SystemSettingsBlock;

TEST(SystemSettingsBlock, OnlyAStoredOneLocksAnyLockSetsTheTopBitAndASwitchTouchesItsOwnLockOnly)
{
    // The whole block: the lock byte, zeros, AA 55 at 62.
    const Block block = build(0x83);
    auto expected = report({0x83});
    expected[62] = 0xAA;
    expected[63] = 0x55;
    EXPECT_EQ(hexFromBytes({block.begin(), block.end()}), hexFromBytes(expected));

    // "disable_win", "disable_alttab", "disable_altf4" as stored.
    const std::vector<std::pair<std::array<const char*, 3>, int>> stored{
        {{"0", "0", "0"}, 0x00}, {{"0", "0", "1"}, 0x84}, {{"1", "1", "0"}, 0x83},
        {{"1", "1", "1"}, 0x87}, {{"2", "", " 1"}, 0x00}, {{"0", "1", "0"}, 0x82}};
    for (const auto& [v, lock] : stored)
        EXPECT_EQ(int(lockByte([&](std::string_view key) {
                      return std::string(key == "disable_win" ? v[0] : key == "disable_alttab" ? v[1]
                                                                    : key == "disable_altf4"  ? v[2] : "1");
                  })), lock) << lock;
    // Lock byte before, switch tag, state, lock byte after.
    const std::vector<std::array<int, 4>> switches{
        {0x00, 667, 1, 0x84}, {0x84, 667, 0, 0x00}, {0x81, 666, 1, 0x83}, {0x87, 665, 0, 0x86},
        {0x00, 665, 2, 0x00}, {0x83, 668, 1, 0x83}, {0x00, 664, 1, 0x00}, {0x84, 667, 1, 0x84}};
    for (const auto& [before, tag, state, after] : switches)
        EXPECT_EQ(int(lockByteAfterSwitch(uint8_t(before), tag, state)), after) << tag << " " << state;
}
