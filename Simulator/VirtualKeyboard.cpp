#include "Simulator/VirtualKeyboard.h"

#include "HIDDevice/HIDDevice.h"
#include "Protocol/Command.h"

#include <atomic>
#include <cstdio>
#include <mutex>
#include <optional>
#include <span>

struct VirtualKeyboard::State {
    mutable std::mutex mutex;
    bool plugged = true;
    // A cable to pull during the next whole upload: reports still to take
    // after its header, and whether that header has come.
    std::optional<int> pullAfterHeader;
    bool headerSeen = false;

    bool pullDue(std::span<const uint8_t> data)
    {
        using Protocol::Command;
        if (!pullAfterHeader)
            return false;
        if (!headerSeen) {
            const auto command = Command(data[1]);
            headerSeen = data[0] == Protocol::kReportId
                && (command == Command::KeyTable || command == Command::UserLightData || command == Command::MacroData);
            return headerSeen && *pullAfterHeader == 0;
        }
        return --*pullAfterHeader <= 0;
    }
    Clock clock;
    FirmwareModel firmware;
    TraceWriter trace;
    std::size_t faultsPrinted = 0;

    State(Clock c, const Options& options) : clock(std::move(c)), trace(options.tracePath, options.traceMemory) {}

    // Errors go to standard error as they happen, so that a demo run shows
    // them next to the app's own output. Called with the mutex held.
    void printNewFaults()
    {
        const auto& faults = firmware.faults();
        for (; faultsPrinted < faults.size(); ++faultsPrinted)
            std::fprintf(stderr, "orvane virtual keyboard: protocol error at %s\n",
                         qPrintable(faults[faultsPrinted].message));
    }
};

namespace {

const HidStatus kUnplugged{HidResult::NotResponding, "the virtual keyboard is unplugged"};

// The sizes a real keyboard's interfaces report, which is how the app tells
// the configuration interface from the other two.
struct InterfaceShape {
    int maxInputReportSize;
    int maxFeatureReportSize;
};

InterfaceShape shapeOf(VirtualKeyboard::Interface which)
{
    switch (which) {
    case VirtualKeyboard::Interface::Typing: return {8, 0};
    case VirtualKeyboard::Interface::ConsumerControl: return {3, 0};
    case VirtualKeyboard::Interface::Configuration: break;
    }
    return {OrvaneUsb::kConfigFeatureSize, OrvaneUsb::kConfigFeatureSize};
}

class VirtualKeyboardInterface final : public HidDeviceHandle {
public:
    VirtualKeyboardInterface(std::shared_ptr<VirtualKeyboard::State> state, VirtualKeyboard::Interface which,
                             int locationId, QString product)
        : state_(std::move(state)), which_(which), locationId_(locationId), product_(std::move(product))
    {
    }

    HidStatus setFeatureReport(uint8_t reportId, std::span<const uint8_t> data) override
    {
        std::lock_guard lock(state_->mutex);
        if (!state_->plugged)
            return kUnplugged;
        if (which_ != VirtualKeyboard::Interface::Configuration || reportId != Protocol::kReportId
            || data.size() != Protocol::kReportSize)
            return {HidResult::BadArgument, "only feature report 4 of 64 bytes on the configuration interface"};

        const FirmwareModel::Time at = state_->clock();
        state_->firmware.set(data, at);
        TraceRecord record{at, TraceRecord::Op::Set, reportId, {}};
        std::copy(data.begin(), data.end(), record.data.begin());
        state_->trace.record(record);
        state_->printNewFaults();
        if (state_->pullDue(data)) {
            state_->firmware.unplugged();
            state_->plugged = false;
            state_->pullAfterHeader.reset();
        }
        return {};
    }

    HidStatus getFeatureReport(uint8_t reportId, std::span<uint8_t> buffer, std::size_t& length) override
    {
        std::lock_guard lock(state_->mutex);
        if (!state_->plugged)
            return kUnplugged;
        if (which_ != VirtualKeyboard::Interface::Configuration || reportId != Protocol::kReportId)
            return {HidResult::BadArgument, "only feature report 4 on the configuration interface"};

        const FirmwareModel::Time at = state_->clock();
        const FirmwareModel::Report reply = state_->firmware.get(at);
        state_->trace.record({at, TraceRecord::Op::Get, reportId, reply});
        state_->printNewFaults();

        length = std::min({length, buffer.size(), reply.size()});
        std::copy_n(reply.begin(), length, buffer.begin());
        return {};
    }

    QVariant property(const QString& key) const override
    {
        const InterfaceShape shape = shapeOf(which_);
        if (key == QLatin1String("LocationID")) return locationId_;
        if (key == QLatin1String("VendorID")) return OrvaneUsb::kVendorId;
        if (key == QLatin1String("ProductID")) return OrvaneUsb::kProductIdPrimary;
        if (key == QLatin1String("MaxInputReportSize")) return shape.maxInputReportSize;
        if (key == QLatin1String("MaxFeatureReportSize")) return shape.maxFeatureReportSize;
        if (key == QLatin1String("Product")) return product_;
        return {};
    }

private:
    std::shared_ptr<VirtualKeyboard::State> state_;
    VirtualKeyboard::Interface which_;
    int locationId_;
    QString product_;
};

int nextLocationId()
{
    // Shaped like the location ids of USB ports, distinct per keyboard.
    static std::atomic<int> next{0x14100000};
    return next.fetch_add(0x1000);
}

VirtualKeyboard::Clock steadyClockFromNow()
{
    const auto start = std::chrono::steady_clock::now();
    return [start] {
        return std::chrono::duration_cast<FirmwareModel::Time>(std::chrono::steady_clock::now() - start);
    };
}

}  // namespace

VirtualKeyboard::VirtualKeyboard(Model model, Options options)
    : model_(model), locationId_(nextLocationId())
{
    Clock clock = options.clock ? std::move(options.clock) : steadyClockFromNow();
    state_ = std::make_shared<State>(std::move(clock), options);
    for (Interface which : {Interface::Typing, Interface::ConsumerControl, Interface::Configuration})
        interfaces_.push_back(
            std::make_shared<VirtualKeyboardInterface>(state_, which, locationId_, productName(model)));
}

VirtualKeyboard::~VirtualKeyboard() = default;

std::shared_ptr<VirtualKeyboard> VirtualKeyboard::fromDemoName(const QString& name, Options options)
{
    const QString n = name.toLower();
    if (n == QLatin1String("m61")) return std::make_shared<VirtualKeyboard>(Model::M61, std::move(options));
    if (n == QLatin1String("w61")) return std::make_shared<VirtualKeyboard>(Model::W61, std::move(options));
    if (n == QLatin1String("k68")) return std::make_shared<VirtualKeyboard>(Model::K68, std::move(options));
    return nullptr;
}

QString VirtualKeyboard::productName(Model model)
{
    switch (model) {
    case Model::M61: return QStringLiteral("ORVANE M61");
    case Model::W61: return QStringLiteral("ORVANE W61");
    case Model::K68: return QStringLiteral("ORVANE K68");
    }
    return {};
}

std::vector<std::shared_ptr<HidDeviceHandle>> VirtualKeyboard::interfaces() const { return interfaces_; }

std::shared_ptr<HidDeviceHandle> VirtualKeyboard::interfaceHandle(Interface which) const
{
    return interfaces_[static_cast<std::size_t>(which)];
}

void VirtualKeyboard::setPlugged(bool plugged)
{
    std::lock_guard lock(state_->mutex);
    if (state_->plugged && !plugged)
        state_->firmware.unplugged();
    state_->plugged = plugged;
}

void VirtualKeyboard::unplugDuringUpload(int reports)
{
    std::lock_guard lock(state_->mutex);
    state_->pullAfterHeader = reports;
    state_->headerSeen = false;
}

bool VirtualKeyboard::isPlugged() const
{
    std::lock_guard lock(state_->mutex);
    return state_->plugged;
}

void VirtualKeyboard::setActiveProfile(int profile)
{
    std::lock_guard lock(state_->mutex);
    state_->firmware.setActiveProfile(profile);
}

void VirtualKeyboard::requestRepeatOnce()
{
    std::lock_guard lock(state_->mutex);
    state_->firmware.requestRepeatOnce();
}

void VirtualKeyboard::setRepeatForever(bool on)
{
    std::lock_guard lock(state_->mutex);
    state_->firmware.setRepeatForever(on);
}

void VirtualKeyboard::corruptNextDataReport()
{
    std::lock_guard lock(state_->mutex);
    state_->firmware.corruptNextDataReport();
}

void VirtualKeyboard::answerWrongSums(int count)
{
    std::lock_guard lock(state_->mutex);
    state_->firmware.answerWrongSums(count);
}

void VirtualKeyboard::setSumsCounted(bool counted)
{
    std::lock_guard lock(state_->mutex);
    state_->firmware.setSumsCounted(counted);
}

bool VirtualKeyboard::applySumFault(const QString& name)
{
    if (name == QLatin1String("corrupt"))
        corruptNextDataReport();
    else if (name == QLatin1String("wrong") || name == QLatin1String("wrong-twice"))
        answerWrongSums(name == QLatin1String("wrong") ? 1 : 2);
    else if (name == QLatin1String("uncounted"))
        setSumsCounted(false);
    else
        return false;
    return true;
}

FirmwareModel VirtualKeyboard::firmware() const
{
    std::lock_guard lock(state_->mutex);
    return state_->firmware;
}

QStringList VirtualKeyboard::protocolErrors() const
{
    std::lock_guard lock(state_->mutex);
    return state_->firmware.protocolErrors();
}

std::vector<ProtocolError> VirtualKeyboard::protocolErrorKinds() const
{
    std::lock_guard lock(state_->mutex);
    return state_->firmware.protocolErrorKinds();
}

void VirtualKeyboard::clearProtocolErrors()
{
    std::lock_guard lock(state_->mutex);
    state_->firmware.clearProtocolErrors();
    state_->faultsPrinted = 0;
}

int VirtualKeyboard::setCount() const
{
    std::lock_guard lock(state_->mutex);
    return state_->firmware.setCount();
}

int VirtualKeyboard::getCount() const
{
    std::lock_guard lock(state_->mutex);
    return state_->firmware.getCount();
}

std::vector<TraceRecord> VirtualKeyboard::recentTrace() const
{
    std::lock_guard lock(state_->mutex);
    const auto& recent = state_->trace.recent();
    return {recent.begin(), recent.end()};
}
