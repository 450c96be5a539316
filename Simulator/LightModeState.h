#pragma once
// What a profile's light mode block tells the keyboard to run, decoded from
// the 64 bytes that arrived, so a test can ask "which effect does profile 3
// run" instead of comparing bytes.

#include <cstdint>
#include <optional>
#include <span>

struct LightModeState {
    enum class Kind {
        BuiltIn,    // one of the catalogue's effects, number in `mode`
        UserSlots,  // byte 0 is 0x80: the custom slots
        Unknown,    // a number the keyboard has no effect for
    };
    Kind kind = Kind::Unknown;
    int mode = 0;                // byte 0 as it arrived
    bool settingsAsFixed = true; // bytes 1..13 hold the fixed constants

    bool operator==(const LightModeState&) const = default;
};

// Nothing when no complete block has arrived (an empty or short block).
std::optional<LightModeState> decodeLightModeBlock(std::span<const uint8_t> block);
