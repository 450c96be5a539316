#include "Protocol/UploadConfirmation.h"

#include <algorithm>

namespace UploadConfirmation {
namespace {

uint16_t addBytes(uint16_t sum, const uint8_t* bytes, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        sum = static_cast<uint16_t>(sum + bytes[i]);
    return sum;
}

bool isFrame(const ReportStep& step, Protocol::Command command)
{
    return !step.dataReport && step.kind == ReportStep::Kind::Single && step.data.size() > Protocol::Offset::Command
        && step.data[Protocol::Offset::Command] == static_cast<uint8_t>(command);
}

bool isHeader(const ReportStep& step)
{
    using Protocol::Command;
    static constexpr Command kHeaders[] = {Command::KeyTable, Command::LightMode, Command::MacroData,
                                           Command::SystemSet, Command::UserLightData};
    return std::any_of(std::begin(kHeaders), std::end(kHeaders), [&](Command c) { return isFrame(step, c); });
}

}  // namespace

uint16_t dataSum(const ReportSequence& sequence)
{
    uint16_t sum = 0;
    for (const ReportStep& step : sequence.steps) {
        if (!step.dataReport)
            continue;
        if (step.kind == ReportStep::Kind::Run) {
            // Reports 0 .. n-2 of the buffer, never past its end.
            const std::size_t reports = std::max(step.length / int(Protocol::kReportSize) - 1, 0);
            const std::size_t bytes = std::min(reports * Protocol::kReportSize,
                                               step.data.size() / Protocol::kReportSize * Protocol::kReportSize);
            sum = addBytes(sum, step.data.data(), bytes);
        } else {
            sum = addBytes(sum, step.data.data(), std::min(step.data.size(), Protocol::kReportSize));
        }
    }
    return sum;
}

std::optional<Check> checkFor(const ReportSequence& sequence)
{
    if (!sequence.carriesDataReports())
        return std::nullopt;
    std::optional<Check> check;
    std::optional<Upload> upload;
    for (std::size_t i = 0; i < sequence.steps.size(); ++i) {
        const ReportStep& step = sequence.steps[i];
        if (!upload && isHeader(step))
            upload = Upload{static_cast<Protocol::Command>(step.data[Protocol::Offset::Command]),
                            step.data[Protocol::Offset::Target]};
        if (upload && isFrame(step, Protocol::Command::EndUpload))
            check = Check{i, 0, *upload};
    }
    if (check)
        check->expectedSum = dataSum(sequence);
    return check;
}

Verdict judge(std::span<const uint8_t> reply, uint16_t expectedSum)
{
    if (reply.size() <= Protocol::Offset::ReplyChecksumHi)
        return Verdict::Wrong;
    const uint16_t answered =
        uint16_t(reply[Protocol::Offset::ReplyChecksumLo] | (reply[Protocol::Offset::ReplyChecksumHi] << 8));
    if (answered == expectedSum)
        return Verdict::Confirmed;
    return answered == 0 ? Verdict::NotCounted : Verdict::Wrong;
}

}  // namespace UploadConfirmation
