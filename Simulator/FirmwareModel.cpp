#include "Simulator/FirmwareModel.h"

#include <algorithm>

using Protocol::Command;
namespace Offset = Protocol::Offset;

namespace {

const FirmwareModel::Block kNoBlock;

QString hexByte(uint8_t byte)
{
    return QStringLiteral("0x%1").arg(byte, 2, 16, QLatin1Char('0'));
}

QString commandName(Command command)
{
    return hexByte(static_cast<uint8_t>(command));
}

// A command frame carries nothing but the report id, the command, the target
// and the count:
//   byte:  0     1        2       3..7   8        9..63
//         [04] [cmd] [target] [00..] [count] [00...]
bool reservedBytesClear(const FirmwareModel::Report& r)
{
    const auto zero = [](uint8_t b) { return b == 0; };
    return std::all_of(r.begin() + 3, r.begin() + Offset::DataCount, zero)
        && std::all_of(r.begin() + Offset::DataCount + 1, r.end(), zero);
}

bool isHeader(Command command)
{
    return FirmwareBlocks::requiredReportCount(command).has_value();
}

}  // namespace

QString secondsSinceStart(FirmwareModel::Time t)
{
    const long long ms = std::chrono::duration_cast<std::chrono::milliseconds>(t).count();
    return QStringLiteral("%1.%2").arg(ms / 1000).arg(ms % 1000, 3, 10, QLatin1Char('0'));
}

// ---- Blocks ----------------------------------------------------------------

std::optional<std::size_t> FirmwareBlocks::endMarkerOffset(Command header, std::size_t size)
{
    switch (header) {
    case Command::KeyTable:
    case Command::UserLightData:
        // Key table and user light colours, 9 reports:
        //   byte:  0 .. 573             574   575
        //         [4-byte cells ...]   [AA]  [55]
        return size - 2;
    case Command::LightMode:
        // Light mode, 1 report; the marker ends the 16 meaningful bytes:
        //   byte:  0       1..13       14    15    16..63
        //         [mode] [settings]  [AA]  [55]  [00 ...]
        return Protocol::kLightModeMarkerAt;
    case Command::SystemSet:
        // System settings, 1 report:
        //   byte:  0      1..61      62    63
        //         [lock] [00 ...]  [AA]  [55]
        return Protocol::kSystemSetMarkerAt;
    case Command::MacroData:
        // Macro store, n reports:
        //   byte:  0..399        400 ..          64n-2  64n-1
        //         [directory]  [bodies, zeros]  [AA]   [55]
        return size - 2;
    default:
        return std::nullopt;
    }
}

std::optional<std::size_t> FirmwareBlocks::requiredReportCount(Command header)
{
    switch (header) {
    case Command::KeyTable: return Protocol::kKeyTableReports;
    case Command::UserLightData: return Protocol::kUserLightReports;
    case Command::LightMode: return Protocol::kLightModeReports;
    case Command::SystemSet: return Protocol::kSystemSetReports;
    case Command::MacroData: return 0;
    default: return std::nullopt;
    }
}

bool FirmwareBlocks::isValidTarget(Command header, uint8_t target)
{
    switch (header) {
    case Command::KeyTable:
    case Command::LightMode:
    case Command::SystemSet:
        return target >= Protocol::kFirstProfile && target <= Protocol::kLastProfile;
    case Command::UserLightData:
        return target > Protocol::kUserLightTargetBase
            && target <= Protocol::kUserLightTargetBase + KeyboardState::kUserLightSlots;
    default:
        return true;  // the macro store has no target
    }
}

Command FirmwareBlocks::requiredOpening(Command header)
{
    return header == Command::MacroData ? Command::BeginMacro : Command::BeginUpload;
}

uint8_t FirmwareBlocks::endFrameTarget(Command header, uint8_t target)
{
    return header == Command::KeyTable || header == Command::LightMode ? target : 0;
}

bool FirmwareBlocks::isLightUpload(Command header)
{
    return header == Command::LightMode || header == Command::UserLightData;
}

uint16_t FirmwareBlocks::addToSum(uint16_t sum, std::span<const uint8_t> bytes)
{
    for (uint8_t b : bytes)
        sum = static_cast<uint16_t>(sum + b);
    return sum;
}

// ---- Reports ---------------------------------------------------------------

void FirmwareModel::set(std::span<const uint8_t> bytes, Time at)
{
    ++setCount_;
    checkInterval(at);

    Report report{};
    std::copy_n(bytes.begin(), std::min(bytes.size(), report.size()), report.begin());

    // While the announced count is not reached, every report is data.
    if (pending_)
        onDataReport(report, at);
    else if (report[Offset::ReportId] == Protocol::kReportId)
        onCommandFrame(report, at);
    else
        onStrayReport(report, at);
}

void FirmwareModel::onStrayReport(const Report& report, Time at)
{
    if (Protocol::isKnownCommand(report[Offset::Command]) && reservedBytesClear(report)) {
        // Under another report id the frame never reaches the command parser.
        flag(ProtocolError::BadReportId, at,
             QStringLiteral("command frame %1 with report id %2 instead of 0x04")
                 .arg(hexByte(report[Offset::Command]), hexByte(report[Offset::ReportId])));
        return;
    }
    dataSum_ = FirmwareBlocks::addToSum(dataSum_, report);
    if (upload_ && upload_->blockDone)
        flag(ProtocolError::WrongCount, at,
             QStringLiteral("data report beyond the block announced by %1").arg(commandName(*upload_->header)));
    else
        flag(ProtocolError::DataWithoutHeader, at, QStringLiteral("data report without a header"));
}

FirmwareModel::Report FirmwareModel::get(Time at)
{
    ++getCount_;
    checkInterval(at);
    return lastReply_;
}

void FirmwareModel::checkInterval(Time at)
{
    if (lastReportAt_ && at - *lastReportAt_ < kMinReportInterval) {
        const auto gap = std::chrono::duration_cast<std::chrono::microseconds>(at - *lastReportAt_).count();
        flag(ProtocolError::TooFast, at,
             QStringLiteral("report %1 ms after the previous one").arg(gap / 1000.0, 0, 'f', 1));
    }
    lastReportAt_ = at;
}

void FirmwareModel::onCommandFrame(const Report& frame, Time at)
{
    const uint8_t command = frame[Offset::Command];
    if (!reservedBytesClear(frame))
        flag(ProtocolError::StrayFrameBytes, at,
             QStringLiteral("command frame %1 with bytes set outside 0, 1, 2 and 8").arg(hexByte(command)));

    if (!Protocol::isKnownCommand(command)) {
        flag(ProtocolError::UnknownCommand, at, QStringLiteral("unknown command %1").arg(hexByte(command)));
        lastReply_ = frame;
        lastReply_[Offset::ReplyStatus] = Protocol::kReplyOk;
        return;
    }

    if (repeatRequested_ || repeatForever_) {
        repeatRequested_ = false;
        lastReply_ = frame;
        lastReply_[Offset::ReplyStatus] = Protocol::kReplyRepeat;
        return;
    }
    actOnCommand(frame, at);
}

void FirmwareModel::actOnCommand(const Report& frame, Time at)
{
    const auto command = static_cast<Command>(frame[Offset::Command]);
    const uint8_t target = frame[Offset::Target];
    ++commandCounts_[frame[Offset::Command]];
    checkEndFrames(command, target, at);

    Report reply = frame;
    reply[Offset::ReplyStatus] = Protocol::kReplyOk;

    switch (command) {
    case Command::BeginUpload:
    case Command::BeginMacro:
        openUpload(command, at);
        break;
    case Command::ReadStatus:
        // A poll needs no opening and may enclose the uploads it causes.
        dataSum_ = 0;
        reply[Offset::ReplyProfile] = static_cast<uint8_t>(state_.activeProfile);
        break;
    case Command::EndUpload: {
        uint16_t sum = sumsCounted_ ? dataSum_ : 0;
        if (upload_ && sumsCounted_ && wrongSums_ > 0) {
            --wrongSums_;
            sum = static_cast<uint16_t>(sum + 1);
            sum = sum == 0 ? 1 : sum;  // 0 would read as a firmware that does not count
        }
        reply[Offset::ReplyChecksumLo] = static_cast<uint8_t>(sum & 0xFF);
        reply[Offset::ReplyChecksumHi] = static_cast<uint8_t>(sum >> 8);
        closeUpload(target, at);
        break;
    }
    case Command::ApplyLight:
        break;
    default:
        if (isHeader(command))
            openBlock(frame, at);
        break;
    }
    lastReply_ = reply;
}

void FirmwareModel::checkEndFrames(Command command, uint8_t target, Time at)
{
    if (!applyDue_) {
        if (command == Command::ApplyLight)
            flag(ProtocolError::WrongEndFrame, at, QStringLiteral("0xf0 where no light upload ended"));
        return;
    }
    const uint8_t due = *applyDue_;
    applyDue_.reset();
    if (command != Command::ApplyLight)
        flag(ProtocolError::WrongEndFrame, at,
             QStringLiteral("light upload ended without 0xf0, %1 came instead").arg(commandName(command)));
    else if (target != due)
        flag(ProtocolError::WrongEndFrame, at, QStringLiteral("0xf0 with byte 2 = %1 instead of %2").arg(target).arg(due));
}

void FirmwareModel::openUpload(Command opening, Time at)
{
    if (upload_)
        flag(ProtocolError::WrongEndFrame, at,
             QStringLiteral("%1 while an upload opened by %2 is not closed")
                 .arg(commandName(opening), commandName(upload_->opening)));
    upload_ = Upload{opening, std::nullopt, 0, false};
    dataSum_ = 0;
}

void FirmwareModel::closeUpload(uint8_t target, Time at)
{
    if (!upload_) {
        // The end of a status poll: a cleared frame.
        if (target != 0)
            flag(ProtocolError::WrongEndFrame, at, QStringLiteral("0x02 with byte 2 = %1 outside an upload").arg(target));
        return;
    }
    const Upload upload = *upload_;
    upload_.reset();
    if (!upload.header)
        return;
    const uint8_t due = FirmwareBlocks::endFrameTarget(*upload.header, upload.target);
    if (target != due)
        flag(ProtocolError::WrongEndFrame, at,
             QStringLiteral("0x02 after %1 with byte 2 = %2 instead of %3").arg(commandName(*upload.header)).arg(target).arg(due));
    if (FirmwareBlocks::isLightUpload(*upload.header))
        applyDue_ = due;
}

void FirmwareModel::openBlock(const Report& frame, Time at)
{
    const auto header = static_cast<Command>(frame[Offset::Command]);
    const uint8_t target = frame[Offset::Target];
    const std::size_t count = frame[Offset::DataCount];
    const std::size_t required = *FirmwareBlocks::requiredReportCount(header);

    const Command opening = FirmwareBlocks::requiredOpening(header);
    if (!upload_ || upload_->opening != opening || upload_->header)
        flag(ProtocolError::MissingOpening, at,
             QStringLiteral("header %1 without %2 before it").arg(commandName(header), commandName(opening)));
    if (!FirmwareBlocks::isValidTarget(header, target))
        flag(ProtocolError::BadTarget, at,
             QStringLiteral("header %1 addresses target %2").arg(commandName(header)).arg(target));
    if (count == 0 || (required != 0 && count != required)) {
        flag(ProtocolError::WrongCount, at,
             QStringLiteral("header %1 announces %2 data reports, the block needs %3")
                 .arg(commandName(header))
                 .arg(count)
                 .arg(required != 0 ? QString::number(required) : QStringLiteral("at least 1")));
    }

    if (!upload_)
        upload_ = Upload{opening, std::nullopt, 0, false};
    upload_->header = header;
    upload_->target = target;
    upload_->blockDone = count == 0;
    if (count == 0)
        return;
    pending_ = PendingBlock{header, target, count, {}};
    pending_->bytes.reserve(count * Protocol::kReportSize);
}

void FirmwareModel::onDataReport(const Report& received, Time at)
{
    Report report = received;
    if (corruptNext_) {
        corruptNext_ = false;
        report[0] ^= 0x01;
    }
    dataSum_ = FirmwareBlocks::addToSum(dataSum_, report);
    pending_->bytes.insert(pending_->bytes.end(), report.begin(), report.end());
    if (pending_->bytes.size() == pending_->expected * Protocol::kReportSize)
        finishBlock(at);
}

void FirmwareModel::finishBlock(Time at)
{
    PendingBlock block = std::move(*pending_);
    pending_.reset();
    if (upload_)
        upload_->blockDone = true;

    // A wrongly sized or wrongly addressed block was flagged at its header;
    // the firmware would not know where to put it.
    const std::size_t required = *FirmwareBlocks::requiredReportCount(block.header);
    if (required != 0 && block.expected != required)
        return;
    if (!FirmwareBlocks::isValidTarget(block.header, block.target))
        return;

    const std::size_t marker = *FirmwareBlocks::endMarkerOffset(block.header, block.bytes.size());
    if (block.bytes[marker] != Protocol::kEndMarker0 || block.bytes[marker + 1] != Protocol::kEndMarker1) {
        flag(ProtocolError::MissingEndMarker, at,
             QStringLiteral("block of %1 for target %2 has %3 %4 instead of 0xaa 0x55 at byte %5")
                 .arg(commandName(block.header))
                 .arg(block.target)
                 .arg(hexByte(block.bytes[marker]), hexByte(block.bytes[marker + 1]))
                 .arg(marker));
        return;
    }
    FirmwareDecoders::decodeBlock(block.header, block.target, block.bytes, state_);
    // No command names the active profile: the keyboard runs the light
    // setting it was given last, and so that profile is the active one. This
    // is how a profile picked in the app becomes the keyboard's.
    if (block.header == Command::LightMode)
        state_.activeProfile = block.target;
}

void FirmwareModel::unplugged()
{
    upload_.reset();
    pending_.reset();
    applyDue_.reset();
    dataSum_ = 0;
    lastReply_ = {};
    lastReportAt_.reset();
}

void FirmwareModel::flag(ProtocolError kind, Time at, const QString& what)
{
    faults_.push_back({kind, QStringLiteral("%1 s: %2").arg(secondsSinceStart(at), what)});
}

// ---- Controls and read-back -----------------------------------------------

void FirmwareModel::setActiveProfile(int profile)
{
    state_.activeProfile = std::clamp(profile, 0, 255);
}

void FirmwareModel::requestRepeatOnce()
{
    repeatRequested_ = true;
}

void FirmwareModel::setRepeatForever(bool on)
{
    repeatForever_ = on;
}

void FirmwareModel::corruptNextDataReport() { corruptNext_ = true; }
void FirmwareModel::answerWrongSums(int count) { wrongSums_ = std::max(count, 0); }
void FirmwareModel::setSumsCounted(bool counted) { sumsCounted_ = counted; }

const FirmwareModel::Block& FirmwareModel::keyTable(int profile) const { return state_.profile(profile).keyTable; }
const FirmwareModel::Block& FirmwareModel::lightMode(int profile) const { return state_.profile(profile).lightMode; }
const FirmwareModel::Block& FirmwareModel::systemSettings(int profile) const
{
    return state_.profile(profile).systemSettings;
}

const FirmwareModel::Block& FirmwareModel::userLight(int slot) const
{
    const auto it = state_.userLightSlots.find(slot);
    return it == state_.userLightSlots.end() ? kNoBlock : it->second;
}

int FirmwareModel::commandCount(Command command) const
{
    const auto it = commandCounts_.find(static_cast<uint8_t>(command));
    return it == commandCounts_.end() ? 0 : it->second;
}

QStringList FirmwareModel::protocolErrors() const
{
    QStringList out;
    for (const Fault& f : faults_)
        out << f.message;
    return out;
}

std::vector<ProtocolError> FirmwareModel::protocolErrorKinds() const
{
    std::vector<ProtocolError> out;
    for (const Fault& f : faults_)
        out.push_back(f.kind);
    return out;
}
