#include "Protocol/UploadSequences.h"

#include "Protocol/CommandFrame.h"

#include <algorithm>

using Protocol::Command;

namespace UploadSequences {
namespace {

// `value` as the single byte it travels in. One that does not fit marks the
// sequence as refused, so that it never reaches the keyboard cut short.
uint8_t fitByte(ReportSequence& seq, const char* what, long long value)
{
    if (value >= 0 && value <= 0xFF)
        return static_cast<uint8_t>(value);
    if (seq.refusal.empty())
        seq.refusal = std::string(what) + " " + std::to_string(value) + " does not fit a byte";
    return 0;
}

// A data report sent on its own: 64 payload bytes in a 65-byte buffer.
ReportStep singleReport(const Report& block)
{
    std::vector<uint8_t> buffer(Protocol::kFrameBufferSize, 0);
    std::copy(block.begin(), block.end(), buffer.begin());
    return ReportStep::singleData(std::move(buffer));
}

// Nine reports in a buffer of `bufferSize`, sent as a run of `runLength`
// (which, by the transport's rule, sends one report fewer than it spans).
ReportStep nineReportRun(const NineReports& data, std::size_t bufferSize, std::size_t runLength)
{
    std::vector<uint8_t> buffer(bufferSize, 0);
    std::copy(data.begin(), data.end(), buffer.begin());
    return ReportStep::run(std::move(buffer), static_cast<int>(runLength));
}

// The opening every upload but the macro store shares: 0x18 (the fresh
// frame), then the header announcing `count` data reports for `target`. The
// frame stays set for the closing frames.
ReportSequence opening(std::string name, CommandFrame& frame, Command header, const char* targetName,
                       long long target, std::size_t count)
{
    ReportSequence seq{std::move(name), {}, {}};
    seq.steps.push_back(ReportStep::single(frame));
    frame.setCommand(header);
    frame.setTarget(fitByte(seq, targetName, target));
    frame.setDataCount(static_cast<uint8_t>(count));
    seq.steps.push_back(ReportStep::single(frame));
    return seq;
}

}  // namespace

ReportSequence keyTable(int profile, const NineReports& table)
{
    CommandFrame frame(Command::BeginUpload);
    ReportSequence seq = opening("key table " + std::to_string(profile), frame, Command::KeyTable, "profile",
                                 profile, Protocol::kKeyTableReports);
    seq.steps.push_back(nineReportRun(table, Protocol::kKeyTableBufferSize, Protocol::kKeyTableRunLength));
    frame.setCommand(Command::EndUpload);
    frame.setDataCount(0);
    seq.steps.push_back(ReportStep::single(frame));
    seq.mark = {UploadMark::Kind::KeyTable, profile, 0};
    return seq;
}

ReportSequence lightMode(int profile, const Report& block)
{
    CommandFrame frame(Command::BeginUpload);
    ReportSequence seq = opening("light mode " + std::to_string(profile), frame, Command::LightMode, "profile",
                                 profile, 1);
    seq.steps.push_back(singleReport(block));
    frame.setCommand(Command::EndUpload);
    frame.setDataCount(0);
    seq.steps.push_back(ReportStep::single(frame));
    frame.setCommand(Command::ApplyLight);
    seq.steps.push_back(ReportStep::single(frame));
    return seq;
}

ReportSequence userLightColors(int slot, const NineReports& colors)
{
    CommandFrame frame(Command::BeginUpload);
    ReportSequence seq = opening("user light slot " + std::to_string(slot), frame, Command::UserLightData,
                                 "target", Protocol::kUserLightTargetBase + static_cast<long long>(slot),
                                 Protocol::kUserLightReports);
    seq.steps.push_back(nineReportRun(colors, Protocol::kUserLightBufferSize, Protocol::kUserLightRunLength));
    frame.clear();
    frame.setCommand(Command::EndUpload);
    seq.steps.push_back(ReportStep::single(frame));
    frame.setCommand(Command::ApplyLight);
    seq.steps.push_back(ReportStep::single(frame));
    seq.mark = {UploadMark::Kind::UserLightSlot, slot, 0};
    return seq;
}

std::vector<ReportSequence> userLightSave(int slot, const NineReports& colors, int profile, const Report& modeBlock)
{
    return {userLightColors(slot, colors), lightMode(profile, modeBlock)};
}

std::vector<ReportSequence> userLightReset(const NineReports& blankColors)
{
    std::vector<ReportSequence> sequences;
    for (int slot = 1; slot <= kUserLightSlots; ++slot)
        sequences.push_back(userLightColors(slot, blankColors));
    return sequences;
}

ReportSequence systemSettings(int profile, const Report& block)
{
    CommandFrame frame(Command::BeginUpload);
    ReportSequence seq = opening("system settings " + std::to_string(profile), frame, Command::SystemSet, "profile",
                                 profile, 1);
    seq.steps.push_back(singleReport(block));
    frame.clear();
    frame.setCommand(Command::EndUpload);
    seq.steps.push_back(ReportStep::single(frame));
    return seq;
}

ReportSequence macroStore(std::span<const uint8_t> store)
{
    const std::size_t blocks = store.size() / Protocol::kReportSize;
    ReportSequence seq{"macro store", {}, {}, {UploadMark::Kind::MacroStore, 0, 0}};
    CommandFrame frame(Command::BeginMacro);
    seq.steps.push_back(ReportStep::single(frame));
    frame.setCommand(Command::MacroData);
    frame.setDataCount(fitByte(seq, "count", static_cast<long long>(blocks)));
    seq.steps.push_back(ReportStep::single(frame));
    seq.steps.push_back(ReportStep::sleep(std::chrono::milliseconds(Protocol::kMacroPauseMs)));
    std::vector<uint8_t> buffer(std::max(Protocol::kMacroBufferSize, store.size() + Protocol::kReportSize), 0);
    std::copy(store.begin(), store.begin() + static_cast<std::ptrdiff_t>(blocks * Protocol::kReportSize), buffer.begin());
    seq.steps.push_back(ReportStep::run(std::move(buffer), static_cast<int>((blocks + 1) * Protocol::kReportSize)));
    seq.steps.push_back(ReportStep::sleep(std::chrono::milliseconds(Protocol::kMacroPauseMs)));
    frame.setCommand(Command::EndUpload);
    frame.setDataCount(0);
    seq.steps.push_back(ReportStep::single(frame));
    return seq;
}

ReportSequence statusPoll()
{
    ReportSequence seq{"status poll", {}, {}};
    seq.steps.push_back(ReportStep::exchange(CommandFrame(Command::ReadStatus)));
    seq.steps.push_back(ReportStep::single(CommandFrame(Command::EndUpload)));
    return seq;
}

}  // namespace UploadSequences
