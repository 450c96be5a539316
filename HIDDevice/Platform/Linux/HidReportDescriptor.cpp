#include "HIDDevice/Platform/Linux/HidReportDescriptor.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace {

// Item prefix: bits 0-1 size code, 2-3 type, 4-7 tag (HID 1.11, 6.2.2.2).
enum ItemType : uint8_t { Main = 0, Global = 1, Local = 2, Reserved = 3 };

namespace MainTag {
constexpr uint8_t Input = 0x8, Output = 0x9, Feature = 0xB, Collection = 0xA, EndCollection = 0xC;
}
namespace GlobalTag {
constexpr uint8_t ReportSize = 0x7, ReportId = 0x8, ReportCount = 0x9, Push = 0xA, Pop = 0xB;
}
constexpr uint8_t kLongItemPrefix = 0xFE;

struct GlobalState {
    uint32_t reportSize = 0;
    uint32_t reportCount = 0;
    uint32_t reportId = 0;
};

enum class Kind { Input, Output, Feature };

// Bits per (kind, report id); 64-bit so that absurd size x count cannot wrap.
using BitTotals = std::map<std::pair<Kind, uint32_t>, uint64_t>;

std::optional<BitTotals> sumReportBits(std::span<const uint8_t> d, bool& usesReportIds)
{
    BitTotals bits;
    GlobalState global;
    std::vector<GlobalState> stack;
    int depth = 0;
    std::size_t pos = 0;
    usesReportIds = false;

    while (pos < d.size()) {
        const uint8_t prefix = d[pos];
        if (prefix == kLongItemPrefix) {
            // Long items carry no report layout; skip them whole.
            if (pos + 3 > d.size())
                return std::nullopt;
            const std::size_t next = pos + 3 + d[pos + 1];
            if (next > d.size())
                return std::nullopt;
            pos = next;
            continue;
        }
        const std::size_t size = (prefix & 0x3) == 3 ? 4 : (prefix & 0x3);
        const uint8_t type = (prefix >> 2) & 0x3;
        const uint8_t tag = prefix >> 4;
        if (pos + 1 + size > d.size())
            return std::nullopt;
        uint32_t value = 0;
        for (std::size_t i = 0; i < size; ++i)
            value |= uint32_t(d[pos + 1 + i]) << (8 * i);
        pos += 1 + size;

        switch (type) {
        case Main:
            switch (tag) {
            case MainTag::Input:
            case MainTag::Output:
            case MainTag::Feature: {
                const Kind kind = tag == MainTag::Input ? Kind::Input
                                : tag == MainTag::Output ? Kind::Output : Kind::Feature;
                bits[{kind, global.reportId}] += uint64_t(global.reportSize) * global.reportCount;
                break;
            }
            case MainTag::Collection:
                ++depth;
                break;
            case MainTag::EndCollection:
                if (--depth < 0)
                    return std::nullopt;
                break;
            default:
                return std::nullopt;
            }
            break;
        case Global:
            switch (tag) {
            case GlobalTag::ReportSize: global.reportSize = value; break;
            case GlobalTag::ReportCount: global.reportCount = value; break;
            case GlobalTag::ReportId:
                // Report id 0 is reserved; a descriptor naming it is broken.
                if (value == 0 || value > 0xFF)
                    return std::nullopt;
                global.reportId = value;
                usesReportIds = true;
                break;
            case GlobalTag::Push: stack.push_back(global); break;
            case GlobalTag::Pop:
                if (stack.empty())
                    return std::nullopt;
                global = stack.back();
                stack.pop_back();
                break;
            default: break;  // usage page, logical and physical ranges, units
            }
            break;
        case Local:
            break;  // usages and designators do not change sizes
        case Reserved:
            return std::nullopt;
        }
    }
    // A collection still open at the end means the bytes were cut short.
    if (depth != 0)
        return std::nullopt;
    return bits;
}

}  // namespace

HidReportSizes hidReportSizes(std::span<const uint8_t> descriptor)
{
    bool usesReportIds = false;
    const std::optional<BitTotals> totals = sumReportBits(descriptor, usesReportIds);
    if (!totals)
        return {};

    constexpr uint64_t kMaxBytes = 1u << 20;  // far beyond any real report
    HidReportSizes sizes;
    for (const auto& [key, bitCount] : *totals) {
        const uint64_t dataBytes = (bitCount + 7) / 8;
        if (dataBytes == 0)
            continue;
        if (dataBytes > kMaxBytes)
            return {};
        const int bytes = int(dataBytes) + (usesReportIds ? 1 : 0);
        int& slot = key.first == Kind::Input ? sizes.maxInput
                  : key.first == Kind::Output ? sizes.maxOutput : sizes.maxFeature;
        slot = std::max(slot, bytes);
    }
    return sizes;
}
