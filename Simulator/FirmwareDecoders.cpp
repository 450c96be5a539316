#include "Simulator/KeyboardState.h"

using Protocol::Command;

namespace {
const ProfileState kNoProfile;
}

const ProfileState& KeyboardState::profile(int number) const
{
    if (number < Protocol::kFirstProfile || number > Protocol::kLastProfile)
        return kNoProfile;
    return profiles[static_cast<std::size_t>(number - 1)];
}

KeyEntry KeyboardState::keyAt(int number, int slot) const
{
    const std::vector<KeyEntry>& keys = profile(number).keys;
    return slot >= 0 && std::size_t(slot) < keys.size() ? keys[std::size_t(slot)] : KeyEntry{};
}

namespace FirmwareDecoders {

void decodeBlock(Command header, uint8_t target, const FirmwareBlock& block, KeyboardState& state)
{
    switch (header) {
    case Command::KeyTable: keyTable(target, block, state); break;
    case Command::LightMode: lightMode(target, block, state); break;
    case Command::SystemSet: systemSettings(target, block, state); break;
    case Command::UserLightData: userLight(target, block, state); break;
    case Command::MacroData: macroStore(target, block, state); break;
    default: break;
    }
}

// Key table, 576 bytes, one 4-byte entry per layout slot:
//   byte:  4s     4s+1  4s+2  4s+3   ...  574   575
//         [kind] [b1]  [b2]  [b3]   ...  [AA]  [55]
void keyTable(uint8_t profile, const FirmwareBlock& block, KeyboardState& state)
{
    ProfileState& p = state.profiles[profile - 1];
    p.keyTable = block;
    p.keys.assign(block.size() / 4, {});
    for (std::size_t slot = 0; slot < p.keys.size(); ++slot)
        p.keys[slot] = {block[4 * slot], block[4 * slot + 1], block[4 * slot + 2], block[4 * slot + 3]};
}

// Light mode, one report; the marker ends the 16 meaningful bytes:
//   byte:  0       1..13       14    15    16..63
//         [mode] [settings]  [AA]  [55]  [00 ...]
void lightMode(uint8_t profile, const FirmwareBlock& block, KeyboardState& state)
{
    state.profiles[profile - 1].lightMode = block;
}

// System settings, one report:
//   byte:  0      1..61      62    63
//         [lock] [00 ...]  [AA]  [55]
// lock: 0x01 Windows key, 0x02 Alt+Tab, 0x04 Alt+F4, 0x80 when any is set.
void systemSettings(uint8_t profile, const FirmwareBlock& block, KeyboardState& state)
{
    ProfileState& p = state.profiles[profile - 1];
    p.systemSettings = block;
    const uint8_t lock = block[0];
    p.locks = {(lock & 0x01) != 0, (lock & 0x02) != 0, (lock & 0x04) != 0};
}

// User light colours, 576 bytes, for slot target - 128.
void userLight(uint8_t target, const FirmwareBlock& block, KeyboardState& state)
{
    state.userLightSlots[target - Protocol::kUserLightTargetBase] = block;
}

// Macro store, n reports ending in the marker.
void macroStore(uint8_t, const FirmwareBlock& block, KeyboardState& state)
{
    state.macroStore = block;
}

}  // namespace FirmwareDecoders
