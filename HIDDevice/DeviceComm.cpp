#include "Common/OutputLine.h"
#include "HIDDevice/DeviceComm.h"

#include "Common/Hex.h"
#include "HIDDevice/HIDDevice.h"
#include "Protocol/Command.h"

#include <QString>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <thread>

namespace {

std::string arrayNotation(const uint8_t* bytes, std::size_t length)
{
    std::string out = "[";
    for (std::size_t i = 0; i < length; ++i) {
        if (i)
            out += ", ";
        out += std::to_string(bytes[i]);
    }
    return out + "]";
}

const HidStatus kStopped{HidResult::NotResponding, "the transport is stopped"};
const HidStatus kNoDevice{HidResult::NotResponding, "no device"};
const HidStatus kRepeatAgain{HidResult::NotResponding, "the keyboard asked for the report again after its repeat"};

}  // namespace

DeviceComm::DeviceComm(std::shared_ptr<HidDeviceHandle> device, Sleeper sleeper)
    : device_(std::move(device)), sleeper_(std::move(sleeper))
{
}

bool DeviceComm::hexDumpEnabled()
{
    static const bool enabled = [] {
        const char* v = std::getenv("ORVANE_HID_DUMP");
        return v && *v && std::string(v) != "0";
    }();
    return enabled;
}

void DeviceComm::sleep(std::chrono::milliseconds duration) const
{
    if (sleeper_)
        sleeper_(duration);
    else
        std::this_thread::sleep_for(duration);
}

HidStatus DeviceComm::setReport(const uint8_t* bytes, std::size_t length)
{
    if (!device_)
        return kNoDevice;
    const HidStatus status = device_->setFeatureReport(Protocol::kReportId, {bytes, length});
    if (hexDumpEnabled())
        std::cerr << "hid set  [" << status << "] " << hexString({bytes, length}, true) << std::endl;
    return status;
}

HidStatus DeviceComm::getReport(std::vector<uint8_t>& buffer, std::size_t& length)
{
    if (!device_)
        return kNoDevice;
    const HidStatus status = device_->getFeatureReport(Protocol::kReportId, {buffer.data(), length}, length);
    if (hexDumpEnabled())
        std::cerr << "hid get  [" << status << "] " << hexString({buffer.data(), length}, true) << std::endl;
    return status;
}

HidStatus DeviceComm::exchange(const std::vector<uint8_t>& request, std::vector<uint8_t>& reply, bool& setFailed)
{
    setFailed = false;
    std::size_t length = Protocol::kReportSize;

    sleep(kStepDelay);
    if (HidStatus set = setReport(request.data(), length); !set) {
        setFailed = true;
        return set;
    }
    sleep(kStepDelay);
    // A failed read leaves the copy and the length as they were, so byte 3 of
    // the request then decides about the repeat, and a repeat resends all of it.
    std::vector<uint8_t> copy = request;
    HidStatus readStatus = getReport(copy, length);
    reply = copy;
    if (copy[Protocol::Offset::ReplyStatus] != Protocol::kReplyRepeat)
        return readStatus;

    sleep(kStepDelay);
    if (HidStatus set = setReport(request.data(), length); !set) {
        setFailed = true;
        return set;
    }
    sleep(kStepDelay);
    std::vector<uint8_t> second = request;
    std::size_t secondLength = Protocol::kReportSize;
    readStatus = getReport(second, secondLength);
    reply = second;
    if (readStatus && second[Protocol::Offset::ReplyStatus] == Protocol::kReplyRepeat)
        return kRepeatAgain;  // the keyboard asks twice: it will not take the frame
    return readStatus;
}

HidStatus DeviceComm::runExchange(const std::vector<uint8_t>& request, std::vector<uint8_t>* replyTarget)
{
    if (deviceStatus_ == 0)
        return kStopped;
    if (request.size() < Protocol::kReportSize)
        return {HidResult::BadArgument, "a request of " + std::to_string(request.size()) + " bytes"};
    std::vector<uint8_t> reply;
    bool setFailed = false;
    const HidStatus status = exchange(request, reply, setFailed);
    // After a failed set the caller's buffer keeps its request.
    if (replyTarget && !setFailed)
        std::copy_n(reply.begin(), Protocol::kReportSize, replyTarget->begin());
    return status;
}

HidStatus DeviceComm::sendDeviceData(const std::vector<uint8_t>& data)
{
    return runExchange(data, nullptr);
}

HidStatus DeviceComm::getDeviceData(std::vector<uint8_t>& data)
{
    return runExchange(data, &data);
}

HidStatus DeviceComm::sendDeviceData(const std::vector<uint8_t>& data, int length)
{
    if (deviceStatus_ == 0)
        return kStopped;
    const int n = length / static_cast<int>(Protocol::kReportSize);
    for (int i = 0; i + 1 < n; ++i) {
        const std::size_t offset = static_cast<std::size_t>(i) * Protocol::kReportSize;
        if (offset + Protocol::kReportSize > data.size())
            break;  // a caller's buffer too short is a misuse; never read past it
        const uint8_t* report = data.data() + offset;
        OutputLine::print("newArr-" + std::to_string(i) + arrayNotation(report, Protocol::kReportSize));
        sleep(kStepDelay);
        if (const HidStatus set = setReport(report, Protocol::kReportSize); !set) {
            qCWarning(lcOrvane, "data report %d not sent: %s", i, set.reason().c_str());
            break;
        }
    }
    return {};
}
