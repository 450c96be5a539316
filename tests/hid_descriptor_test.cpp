#include "HIDDevice/Platform/Linux/HidReportDescriptor.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

HidReportSizes sizesOf(const Bytes& d) { return hidReportSizes(d); }

// The boot keyboard of the HID specification (Appendix B.1 / E.6).
const Bytes kBootKeyboard = {
    0x05, 0x01, 0x09, 0x06, 0xA1, 0x01, 0x05, 0x07, 0x19, 0xE0, 0x29, 0xE7, 0x15, 0x00, 0x25, 0x01,
    0x75, 0x01, 0x95, 0x08, 0x81, 0x02, 0x95, 0x01, 0x75, 0x08, 0x81, 0x01, 0x95, 0x05, 0x75, 0x01,
    0x05, 0x08, 0x19, 0x01, 0x29, 0x05, 0x91, 0x02, 0x95, 0x01, 0x75, 0x03, 0x91, 0x01, 0x95, 0x06,
    0x75, 0x08, 0x15, 0x00, 0x25, 0x65, 0x05, 0x07, 0x19, 0x00, 0x29, 0x65, 0x81, 0x00, 0xC0};

// Vendor page collection; `id` 0 leaves the report id item out.
Bytes vendorFeature(uint8_t id, uint8_t count)
{
    Bytes d = {0x06, 0x00, 0xFF, 0x09, 0x01, 0xA1, 0x01};
    if (id)
        d.insert(d.end(), {0x85, id});
    d.insert(d.end(), {0x09, 0x02, 0x15, 0x00, 0x26, 0xFF, 0x00, 0x75, 0x08, 0x95, count, 0xB1, 0x02, 0xC0});
    return d;
}

}  // namespace

TEST(HidReportDescriptor, EachReportCountsItsIdByte)
{
    // Consumer control, report id 3, one 16-bit usage.
    const Bytes consumer = {0x05, 0x0C, 0x09, 0x01, 0xA1, 0x01, 0x85, 0x03, 0x15, 0x00, 0x26, 0xFF, 0x03,
                            0x19, 0x00, 0x2A, 0xFF, 0x03, 0x75, 0x10, 0x95, 0x01, 0x81, 0x00, 0xC0};
    const std::vector<std::pair<Bytes, HidReportSizes>> cases{
        {kBootKeyboard, {8, 1, 0}},
        {consumer, {3, 0, 0}},
        {vendorFeature(4, 63), {0, 0, 64}},  // id byte + 63 data bytes: the configuration interface
        {vendorFeature(0, 64), {0, 0, 64}},  // 64 data bytes, no id
        {vendorFeature(4, 64), {0, 0, 65}},
        {vendorFeature(0, 32), {0, 0, 32}},
    };
    for (std::size_t i = 0; i < cases.size(); ++i)
        EXPECT_EQ(sizesOf(cases[i].first), cases[i].second) << "case " << i;
}

TEST(HidReportDescriptor, LargestReportCountsNotTheSumOverReportIds)
{
    // Feature 4 with 63 bytes, feature 5 with 10 bytes, and a pushed/popped
    // global state in between that must not leak its report size.
    Bytes d = {0x06, 0x00, 0xFF, 0x09, 0x01, 0xA1, 0x01,
               0x85, 0x04, 0x75, 0x08, 0x95, 0x3F, 0xB1, 0x02,
               0xA4, 0x75, 0x10, 0xB4,
               0x85, 0x05, 0x95, 0x0A, 0xB1, 0x02,
               0xC0};
    EXPECT_EQ(sizesOf(d).maxFeature, 64);
}

TEST(HidReportDescriptor, MalformedOrTruncatedBytesGiveZero)
{
    const HidReportSizes zero{};
    EXPECT_EQ(sizesOf({}), zero);
    Bytes good = vendorFeature(4, 63);
    for (std::size_t cut = 1; cut < good.size(); ++cut)
        EXPECT_EQ(sizesOf(Bytes(good.begin(), good.begin() + cut)), zero) << "cut at " << cut;
    EXPECT_EQ(sizesOf({0x26, 0xFF}), zero);                     // item data runs past the end
    EXPECT_EQ(sizesOf({0xC0}), zero);                           // end without a collection
    EXPECT_EQ(sizesOf({0xA1, 0x01, 0x85, 0x00, 0xC0}), zero);   // report id 0 is reserved
    EXPECT_EQ(sizesOf({0xB4}), zero);                           // pop without push
    EXPECT_EQ(sizesOf({0xFE, 0x05, 0x10, 0x01}), zero);         // long item cut short
    EXPECT_EQ(sizesOf({0x0C}), zero);                           // reserved item type
    // Absurd size x count must not wrap into a plausible number.
    EXPECT_EQ(sizesOf({0xA1, 0x01, 0x77, 0xFF, 0xFF, 0xFF, 0xFF, 0x97, 0xFF, 0xFF, 0xFF, 0xFF, 0xB1, 0x02, 0xC0}),
              zero);
}
