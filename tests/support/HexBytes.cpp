#include "support/HexBytes.h"

#include "Common/Hex.h"

#include <algorithm>

namespace testing_support {

std::string hexFromBytes(const std::vector<uint8_t>& bytes)
{
    return hexString(bytes);
}

std::vector<uint8_t> report(std::initializer_list<uint8_t> leading, std::size_t size)
{
    std::vector<uint8_t> out(size, 0);
    std::copy(leading.begin(), leading.end(), out.begin());
    return out;
}

}  // namespace testing_support
