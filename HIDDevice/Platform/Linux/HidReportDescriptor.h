#pragma once
// Report sizes from a HID report descriptor, as our properties report
// MaxInputReportSize / MaxFeatureReportSize: the largest report's data bytes,
// plus one byte for the report id when the descriptor uses report ids.
//
// The keyboard's configuration interface is the one whose largest feature
// report comes to 64, so this count decides which interface we talk to.

#include <cstdint>
#include <span>

struct HidReportSizes {
    int maxInput = 0;
    int maxOutput = 0;
    int maxFeature = 0;

    friend bool operator==(const HidReportSizes&, const HidReportSizes&) = default;
};

// A malformed or truncated descriptor gives all zeros.
HidReportSizes hidReportSizes(std::span<const uint8_t> descriptor);
