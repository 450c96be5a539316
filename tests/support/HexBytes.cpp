#include "support/HexBytes.h"

#include "Common/Hex.h"

#include <stdexcept>

namespace testing_support {

std::vector<uint8_t> bytesFromHex(const std::string& hex)
{
    std::vector<uint8_t> out;
    int nibble = -1;
    for (char c : hex) {
        int v;
        if (c >= '0' && c <= '9') v = c - '0';
        else if (c >= 'a' && c <= 'f') v = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F') v = c - 'A' + 10;
        else if (c == ' ') continue;
        else throw std::invalid_argument("bad hex digit");
        if (nibble < 0) nibble = v;
        else { out.push_back(static_cast<uint8_t>(nibble << 4 | v)); nibble = -1; }
    }
    if (nibble >= 0)
        throw std::invalid_argument("odd number of hex digits");
    return out;
}

std::string hexFromBytes(const std::vector<uint8_t>& bytes)
{
    return hexString(bytes);
}

std::vector<uint8_t> report(std::initializer_list<uint8_t> leading, std::size_t size)
{
    std::vector<uint8_t> out(size, 0);
    std::size_t i = 0;
    for (uint8_t b : leading)
        out[i++] = b;
    return out;
}

}  // namespace testing_support
