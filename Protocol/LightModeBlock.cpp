#include "Protocol/LightModeBlock.h"

namespace Protocol {

std::array<uint8_t, kReportSize> lightModeBlock(uint8_t mode)
{
    // One data report, 64 bytes, sent as it is (no report id in front):
    //   byte:  0      1   2   3    4    5   6    7    8    9    10   11..13  14   15   16..63
    //         [mode] 00  00  [FF] [FF] 00  [0F] [07] [01] [0F] [0F] 00 ..   [AA] [55] [00 ...]
    //   0      effect number, or 0x80 for the custom slots
    //   3..10  fixed settings the firmware expects
    //   14,15  end marker
    std::array<uint8_t, kReportSize> block{};
    block[0] = mode;
    block[3] = 0xFF;
    block[4] = 0xFF;
    block[6] = 0x0F;
    block[7] = 0x07;
    block[8] = 0x01;
    block[9] = 0x0F;
    block[10] = 0x0F;
    block[kLightModeMarkerAt] = kEndMarker0;
    block[kLightModeMarkerAt + 1] = kEndMarker1;
    return block;
}

}  // namespace Protocol
