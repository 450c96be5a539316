// The system settings block: which stored values lock which keys, and what
// a switch on the system page does to the lock byte.
#include "Protocol/SystemSettingsBlock.h"
#include "support/HexBytes.h"

#include <gtest/gtest.h>

using namespace testing_support;
using namespace SystemSettingsBlock;

namespace {

// The whole block of a lock byte, and the one expected: the lock byte,
// zeros, AA 55 at 62.
std::string built(int lock)
{
    const Block block = build(uint8_t(lock));
    return hexFromBytes({block.begin(), block.end()});
}
std::string expected(int lock)
{
    auto bytes = report({uint8_t(lock)});
    bytes[62] = 0xAA;
    bytes[63] = 0x55;
    return hexFromBytes(bytes);
}

}  // namespace

TEST(SystemSettingsBlock, OnlyAStoredOneLocksAndAnyLockSetsTheTopBit)
{
    // "disable_win", "disable_alttab", "disable_altf4" as stored.
    const std::vector<std::pair<std::array<const char*, 3>, int>> cases{
        {{"0", "0", "0"}, 0x00}, {{"0", "0", "1"}, 0x84}, {{"1", "1", "0"}, 0x83},
        {{"1", "1", "1"}, 0x87}, {{"2", "", " 1"}, 0x00}, {{"0", "1", "0"}, 0x82}};
    for (const auto& [v, lock] : cases)
        EXPECT_EQ(built(lockByte([&](std::string_view key) {
                      return std::string(key == "disable_win" ? v[0] : key == "disable_alttab" ? v[1]
                                                                    : key == "disable_altf4"  ? v[2] : "1");
                  })),
                  expected(lock)) << lock;
}

TEST(SystemSettingsBlock, ASwitchSetsOrClearsItsOwnLockOnly)
{
    // Lock byte before, switch tag, state, lock byte after.
    const std::vector<std::array<int, 4>> cases{{0x00, 667, 1, 0x84}, {0x84, 667, 0, 0x00}, {0x81, 666, 1, 0x83},
                                                {0x87, 665, 0, 0x86}, {0x00, 665, 2, 0x00}, {0x83, 668, 1, 0x83},
                                                {0x00, 664, 1, 0x00}, {0x84, 667, 1, 0x84}};
    for (const auto& [before, tag, state, after] : cases)
        EXPECT_EQ(built(lockByteAfterSwitch(uint8_t(before), tag, state)), expected(after)) << tag << " " << state;
}
