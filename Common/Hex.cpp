#include "Common/Hex.h"

std::string hexString(std::span<const uint8_t> bytes, bool spaced)
{
    static constexpr char digits[] = "0123456789abcdef";
    std::string out;
    out.reserve(bytes.size() * (spaced ? 3 : 2));
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (spaced && i)
            out += ' ';
        out += digits[bytes[i] >> 4];
        out += digits[bytes[i] & 0xF];
    }
    return out;
}
