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

StoredMacro KeyboardState::macro(int place) const
{
    if (place < 0 || std::size_t(place) >= macros.size())
        return {};
    return macros[std::size_t(place)];
}

namespace {

constexpr std::size_t kMacroPlaces = 100;

bool knownStepKind(uint8_t kind)
{
    using K = MacroStoreStep::Kind;
    for (K k : {K::Delay, K::KeyDown, K::KeyUp, K::MouseDown, K::MouseUp})
        if (kind == static_cast<uint8_t>(k))
            return true;
    return false;
}

// The body at `offset`: a 2-byte step count, 6 spare bytes, then the steps.
StoredMacro macroBody(const FirmwareBlock& block, std::size_t offset)
{
    StoredMacro macro{true, false, {}};
    if (offset < 4 * kMacroPlaces || offset + 8 > block.size())
        return macro;
    const std::size_t count = block[offset] | (block[offset + 1] << 8);
    if (offset + 8 + 4 * count > block.size())
        return macro;
    for (std::size_t i = 0; i < count; ++i) {
        const uint8_t* step = block.data() + offset + 8 + 4 * i;
        if (!knownStepKind(step[3]))
            return macro;
        const auto kind = static_cast<MacroStoreStep::Kind>(step[3]);
        const int value = kind == MacroStoreStep::Kind::Delay ? step[0] | (step[1] << 8) : step[2];
        macro.steps.push_back({kind, value});
    }
    macro.valid = true;
    return macro;
}

}  // namespace

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

// User light colours, 576 bytes, for slot target - 128; one cell per LED:
//   byte:  4i    4i+1   4i+2    4i+3   ...  574   575
//         [i]   [red]  [green] [blue]  ...  [AA]  [55]
void userLight(uint8_t target, const FirmwareBlock& block, KeyboardState& state)
{
    const int slot = target - Protocol::kUserLightTargetBase;
    state.userLightSlots[slot] = block;
    std::map<int, uint32_t>& leds = state.userLightLeds[slot];
    leds.clear();
    // The last cell carries the marker in its colour bytes.
    for (std::size_t cell = 0; cell + 1 < block.size() / 4; ++cell) {
        const uint8_t* c = &block[4 * cell];
        if (c[0] == 0 && c[1] == 0 && c[2] == 0 && c[3] == 0)
            continue;
        leds[static_cast<int>(cell)] = (uint32_t(c[1]) << 16) | (uint32_t(c[2]) << 8) | c[3];
    }
}

// Macro store, n reports ending in the marker:
//   byte:  0..399                 400..               64n-2  64n-1
//         [directory, 4 a place] [bodies ...] [00 ...] [AA]   [55]
// entry: offset lo, hi, 0, 0 / FF FF FF FF empty macro / 0 0 0 0 none.
void macroStore(uint8_t, const FirmwareBlock& block, KeyboardState& state)
{
    state.macroStore = block;
    state.macros.assign(kMacroPlaces, {});
    for (std::size_t place = 0; place < kMacroPlaces && 4 * place + 3 < block.size(); ++place) {
        const uint8_t* e = block.data() + 4 * place;
        if (e[0] == 0xFF && e[1] == 0xFF && e[2] == 0xFF && e[3] == 0xFF)
            state.macros[place] = {true, true, {}};
        else if (e[0] | e[1] | e[2] | e[3])
            state.macros[place] = macroBody(block, std::size_t(e[0] | (e[1] << 8)));
    }
}

}  // namespace FirmwareDecoders
