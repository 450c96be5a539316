#include "Protocol/UserLightColorBlock.h"

namespace Protocol {

std::array<uint8_t, kUserLightBytes> userLightColorBlock(std::span<const LedColour> leds)
{
    // 144 cells of 4 bytes; the cell of LED i starts at byte 4i:
    //   byte:  4i    4i+1   4i+2    4i+3   ...  574   575
    //         [i]   [red]  [green] [blue]  ...  [AA]  [55]
    // A LED without a colour keeps an all-zero cell, its number included.
    // The marker overwrites the last two bytes of cell 143, which no key
    // uses.
    std::array<uint8_t, kUserLightBytes> block{};
    for (const LedColour& entry : leds) {
        if (entry.led < 0 || static_cast<std::size_t>(entry.led) >= kUserLightCells)
            continue;
        const std::size_t at = 4 * static_cast<std::size_t>(entry.led);
        block[at] = static_cast<uint8_t>(entry.led);
        block[at + 1] = static_cast<uint8_t>(entry.rgb >> 16);
        block[at + 2] = static_cast<uint8_t>(entry.rgb >> 8);
        block[at + 3] = static_cast<uint8_t>(entry.rgb);
    }
    block[kUserLightBytes - 2] = kEndMarker0;
    block[kUserLightBytes - 1] = kEndMarker1;
    return block;
}

}  // namespace Protocol
