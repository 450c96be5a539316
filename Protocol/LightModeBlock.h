#pragma once
// The light mode block: the one data report that tells the keyboard which
// effect to run for a profile. Only byte 0 varies; the rest are constants the
// firmware expects as they are.

#include "Protocol/Command.h"

#include <array>
#include <cstdint>

namespace Protocol {

// Byte 0 for the keyboard's custom slots (a user light mode) instead of a
// built-in effect.
inline constexpr uint8_t kUserLightModeByte = 0x80;

std::array<uint8_t, kReportSize> lightModeBlock(uint8_t mode);

}  // namespace Protocol
