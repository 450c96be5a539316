#pragma once
// Bytes as lower-case hex, for traces, dumps and test messages.

#include <cstdint>
#include <span>
#include <string>

// "0430ff" or, with `spaced`, "04 30 ff".
std::string hexString(std::span<const uint8_t> bytes, bool spaced = false);
