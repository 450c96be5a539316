#pragma once
// The system settings of one profile: the three key locks, as one 64-byte
// report. The locks are stored per profile as settings rows ("1" locked,
// anything else free); this header joins each switch on the system page to
// its setting and its bit, and builds the block from the three values.

#include "Protocol/Command.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace SystemSettingsBlock {

using Block = std::array<uint8_t, Protocol::kReportSize>;

struct LockSwitch {
    int tag;                     // control tag of the switch on the system page
    std::string_view configKey;  // its settings row
    uint8_t bit;                 // its bit in the lock byte
};

// In the order the block is built and the switches are refreshed.
inline constexpr std::array<LockSwitch, 3> kLockSwitches{{
    {665, "disable_win", 0x01},
    {666, "disable_alttab", 0x02},
    {667, "disable_altf4", 0x04},
}};
// Set whenever any lock is: the keyboard reads the byte only then.
inline constexpr uint8_t kAnyLockBit = 0x80;

// The switch of a control tag; nullptr for a tag of no lock switch.
const LockSwitch* lockSwitchForTag(int tag);

// Only the exact value "1" counts as locked; "2", "" and " 1" are free.
bool isLocked(std::string_view value);

// The stored value of a setting of the profile being sent.
using SettingReader = std::function<std::string(std::string_view configKey)>;

// The lock byte of a profile's stored settings: the bits of the locked
// switches, plus 0x80 when there is one. So 0x00 or 0x81 to 0x87.
uint8_t lockByte(const SettingReader& valueOf);

// The lock byte after switch `tag` is set to `btnstate` (1 locked, else
// free), as storing that state and reading the three settings back gives.
// An unknown tag changes nothing.
uint8_t lockByteAfterSwitch(uint8_t current, int tag, int btnstate);

// byte:  0            1 .. 61     62    63
//       [lock byte]  [00 ... 00] [AA]  [55]
// Lock byte: 01 Windows key, 02 Alt+Tab, 04 Alt+F4, 80 any of them.
// Sent even with no lock set: that is how a lock is released.
Block build(uint8_t lockByte);

}  // namespace SystemSettingsBlock
