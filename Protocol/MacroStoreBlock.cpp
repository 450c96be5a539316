#include "Protocol/MacroStoreBlock.h"

#include <algorithm>
#include <optional>

namespace MacroStoreBlock {
namespace {

// recordType of a step, as the recorder writes it.
enum RecordType : int64_t { kDelay = 1, kKeyDown = 2, kKeyUp = 3, kMouseDown = 4, kMouseUp = 5 };

// Byte 3 of a step.
constexpr uint8_t kDelayKind = 0x50;
constexpr uint8_t kKeyDownKind = 0xB0;
constexpr uint8_t kKeyUpKind = 0x30;
constexpr uint8_t kMouseDownKind = 0x90;
constexpr uint8_t kMouseUpKind = 0x10;

constexpr std::size_t kReport = Protocol::kReportSize;

Step delayStep(uint16_t ms) { return {uint8_t(ms & 0xFF), uint8_t(ms >> 8), 0, kDelayKind}; }

// The mouse value names a button; the keyboard wants its bit of a HID mouse
// report: 1 left, 2 right, 4 middle.
std::optional<uint8_t> mouseButtonBit(int64_t value)
{
    switch (value) {
    case 1: return 1;
    case 2: return 4;
    case 3: return 2;
    default: return std::nullopt;
    }
}

std::optional<Step> encode(const RecordInfo& record)
{
    const int64_t v = record.recordValue;
    switch (record.recordType) {
    case kDelay: return delayStep(uint16_t(v & 0xFFFF));  // 65536 ms and above lose their top bits
    case kKeyDown:
    case kKeyUp:
        if (v < 0 || v > 0xFF)
            return std::nullopt;
        return Step{0, 0, uint8_t(v), record.recordType == kKeyDown ? kKeyDownKind : kKeyUpKind};
    case kMouseDown:
    case kMouseUp:
        if (const auto bit = mouseButtonBit(v))
            return Step{0, 0, *bit, record.recordType == kMouseDown ? kMouseDownKind : kMouseUpKind};
        return std::nullopt;
    default: return std::nullopt;
    }
}

std::size_t reportsFor(std::size_t end) { return (end + kReport - 1) / kReport + 1; }

void put16(std::vector<uint8_t>& block, std::size_t at, std::size_t value)
{
    block[at] = uint8_t(value & 0xFF);
    block[at + 1] = uint8_t((value >> 8) & 0xFF);
}

}  // namespace

bool withinRecordLimit(int64_t macroCount, int64_t recordCount)
{
    return 4 * recordCount + 8 * macroCount <= kRecordLimitBytes;
}

std::vector<Step> encodeSteps(const MacroSteps& steps)
{
    std::vector<Step> out;
    bool lastWasDelay = false;
    for (const RecordInfo& record : steps) {
        const std::optional<Step> step = encode(record);
        if (!step)
            continue;
        const bool isDelay = record.recordType == kDelay;
        if (!isDelay && !out.empty() && !lastWasDelay)
            out.push_back(delayStep(kInsertedDelayMs));
        out.push_back(*step);
        lastWasDelay = isDelay;
    }
    return out;
}

Result build(std::span<const MacroSteps> macros)
{
    Result result;
    result.macros = int(macros.size());
    std::vector<std::vector<Step>> bodies;
    bodies.reserve(macros.size());
    std::size_t end = kDirectoryBytes;
    for (const MacroSteps& steps : macros) {
        bodies.push_back(encodeSteps(steps));
        if (!bodies.back().empty())
            end += kHeadBytes + kStepBytes * bodies.back().size();
    }
    result.end = end;
    result.reports = int(reportsFor(end));
    const std::size_t bytes = kReport * std::size_t(result.reports);
    result.macrosOver = std::max(0, result.macros - kMaxMacros);
    result.bytesOver = bytes > kMaxBytes ? bytes - kMaxBytes : 0;
    if (result.refused())
        return result;

    std::vector<uint8_t>& block = result.block;
    block.assign(bytes, 0);
    std::size_t at = kDirectoryBytes;
    for (std::size_t place = 0; place < bodies.size(); ++place) {
        const std::vector<Step>& body = bodies[place];
        const std::size_t entry = 4 * place;
        if (body.empty()) {
            std::fill_n(block.begin() + std::ptrdiff_t(entry), 4, uint8_t(0xFF));
            continue;
        }
        put16(block, entry, at);
        put16(block, at, body.size());
        std::size_t stepAt = at + kHeadBytes;
        for (const Step& step : body) {
            std::copy(step.begin(), step.end(), block.begin() + std::ptrdiff_t(stepAt));
            stepAt += kStepBytes;
        }
        at = stepAt;
    }
    block[bytes - 2] = Protocol::kEndMarker0;
    block[bytes - 1] = Protocol::kEndMarker1;
    return result;
}

}  // namespace MacroStoreBlock
