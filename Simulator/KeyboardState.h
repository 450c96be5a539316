#pragma once
// What the virtual keyboard holds after the uploads it accepted, in a form a
// test can ask for: per profile the raw blocks and what they say, the user
// light slots, the macro store and the active profile.
//
// Every block type has one decoder in FirmwareDecoders: a small function that
// keeps the block and fills in its decoded part. Teaching the keyboard to read
// another block, or another field of one, is a new field here and a new or
// longer decoder there; FirmwareModel only calls decodeBlock().

#include "Protocol/Command.h"

#include <array>
#include <cstdint>
#include <map>
#include <vector>

using FirmwareBlock = std::vector<uint8_t>;

// One 4-byte entry of a key table: what a key does.
struct KeyEntry {
    uint8_t kind = 0;  // byte 0: 0 the keyboard's own function, 2 key, 3 consumer, 6 macro ...
    uint8_t b1 = 0;
    uint8_t b2 = 0;
    uint8_t b3 = 0;
    friend bool operator==(const KeyEntry&, const KeyEntry&) = default;
};

// The lock byte of the system settings block.
struct LockSettings {
    bool windowsKey = false;  // bit 0x01
    bool altTab = false;      // bit 0x02
    bool altF4 = false;       // bit 0x04
    friend bool operator==(const LockSettings&, const LockSettings&) = default;
};

// One step of a stored macro, as the keyboard plays it.
struct MacroStoreStep {
    enum class Kind : uint8_t { Delay = 0x50, KeyDown = 0xB0, KeyUp = 0x30, MouseDown = 0x90, MouseUp = 0x10 };
    Kind kind = Kind::Delay;
    int value = 0;  // milliseconds, key code or mouse button bit
    friend bool operator==(const MacroStoreStep&, const MacroStoreStep&) = default;
};

// A macro of the store by its place: absent (no entry), empty (an entry
// without a body) or its steps. `valid` is false when the store's bytes do
// not make sense for this place (a body outside the block, an unknown step).
struct StoredMacro {
    bool present = false;
    bool valid = true;
    std::vector<MacroStoreStep> steps;
    friend bool operator==(const StoredMacro&, const StoredMacro&) = default;
};

struct ProfileState {
    // The blocks as they arrived; empty until a complete one did.
    FirmwareBlock lightMode;       // the whole 64-byte report
    FirmwareBlock keyTable;        // 576 bytes
    FirmwareBlock systemSettings;  // 64 bytes

    // Decoded. A light mode decoder adds its fields here.
    std::vector<KeyEntry> keys;    // by layout slot, 144 once a key table arrived
    LockSettings locks;
};

struct KeyboardState {
    static constexpr int kUserLightSlots = 6;

    std::array<ProfileState, Protocol::kLastProfile> profiles;
    std::map<int, FirmwareBlock> userLightSlots;  // slot 1..6: 576 bytes of colours
    // Slot 1..6 decoded: LED number to 0xRRGGBB, for every cell that is
    // not all zero (the marker's cell 143 aside).
    std::map<int, std::map<int, uint32_t>> userLightLeds;
    FirmwareBlock macroStore;                     // n * 64 bytes
    std::vector<StoredMacro> macros;              // by place, 100 once a store arrived
    int activeProfile = Protocol::kFirstProfile;

    // Profile 1..5; anything else gives an empty profile.
    const ProfileState& profile(int number) const;
    // What a key (by its slot) does in a profile: all zero, the keyboard's
    // own function, also before that profile's table arrived.
    KeyEntry keyAt(int profile, int slot) const;
    // The locks a profile has; none before its settings arrived.
    LockSettings locksOf(int profile) const { return this->profile(profile).locks; }

    // The macro at `place` (from 0); absent for a place the store lacks.
    StoredMacro macro(int place) const;
};

namespace FirmwareDecoders {
// Keeps a complete block that passed its checks in `state`. `target` has been
// checked against the header.
void decodeBlock(Protocol::Command header, uint8_t target, const FirmwareBlock& block, KeyboardState& state);

// One per block type.
void keyTable(uint8_t profile, const FirmwareBlock& block, KeyboardState& state);
void lightMode(uint8_t profile, const FirmwareBlock& block, KeyboardState& state);
void systemSettings(uint8_t profile, const FirmwareBlock& block, KeyboardState& state);
void userLight(uint8_t target, const FirmwareBlock& block, KeyboardState& state);
void macroStore(uint8_t target, const FirmwareBlock& block, KeyboardState& state);
}  // namespace FirmwareDecoders
