#pragma once
// One command in a 65-byte buffer, zero at first; the first 64 bytes go out
// as one feature report.

#include "Protocol/Command.h"

#include <array>
#include <cstdint>
#include <vector>

class CommandFrame {
public:
    //  byte:  0     1        2       3..7   8        9..63   64
    //        [04] [cmd] [target] [00..] [count] [00...] [unsent]
    explicit CommandFrame(Protocol::Command command, uint8_t target = 0, uint8_t dataCount = 0);

    void setCommand(Protocol::Command command) { bytes_[Protocol::Offset::Command] = static_cast<uint8_t>(command); }
    void setTarget(uint8_t target) { bytes_[Protocol::Offset::Target] = target; }
    void setDataCount(uint8_t count) { bytes_[Protocol::Offset::DataCount] = count; }
    // Back to all zero with the report id, as the uploads do between frames.
    void clear();

    const std::array<uint8_t, Protocol::kFrameBufferSize>& bytes() const { return bytes_; }
    std::vector<uint8_t> toVector() const { return {bytes_.begin(), bytes_.end()}; }

private:
    std::array<uint8_t, Protocol::kFrameBufferSize> bytes_{};
};

namespace Protocol {
// Byte 9 of a status reply turned into a profile: 0 reads as 1, above 5 as 5.
int clampReportedProfile(uint8_t byte9);
}  // namespace Protocol
