#pragma once
// The per-key colour block of a user light slot: 576 bytes, one 4-byte cell
// per LED, sent as nine data reports after the 0x23 header.

#include "Protocol/Command.h"

#include <array>
#include <cstdint>
#include <span>

namespace Protocol {

inline constexpr std::size_t kUserLightCells = kUserLightBytes / 4;  // 144

// One LED's colour: the key's LED number and its colour as 0xRRGGBB.
struct LedColour {
    int led = 0;
    uint32_t rgb = 0;
    bool operator==(const LedColour&) const = default;
};

// The block for these LEDs; LEDs outside the block are left out. A later
// entry for the same LED wins.
std::array<uint8_t, kUserLightBytes> userLightColorBlock(std::span<const LedColour> leds);

}  // namespace Protocol
