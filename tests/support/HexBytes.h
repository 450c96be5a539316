#pragma once
// Test helpers for whole-frame comparisons: frames are printed as hex strings
// so that a failing assertion shows the exact bytes.

#include <cstdint>
#include <string>
#include <vector>

namespace testing_support {

std::string hexFromBytes(const std::vector<uint8_t>& bytes);

// A 64-byte report that is all zero but for the given leading bytes.
std::vector<uint8_t> report(std::initializer_list<uint8_t> leading, std::size_t size = 64);

}  // namespace testing_support
