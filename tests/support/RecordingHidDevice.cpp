#include "support/RecordingHidDevice.h"

#include "support/HexBytes.h"

#include <algorithm>

namespace testing_support {

HidStatus RecordingHidDevice::setFeatureReport(uint8_t, std::span<const uint8_t> data)
{
    std::unique_lock lock(mutex_);
    ++waiting_;
    gateChanged_.wait(lock, [this] { return !gateClosed_; });
    --waiting_;
    last_.assign(data.begin(), data.end());
    sets_.push_back(hexFromBytes(last_));
    return {};
}

HidStatus RecordingHidDevice::getFeatureReport(uint8_t, std::span<uint8_t> buffer, std::size_t& length)
{
    std::lock_guard lock(mutex_);
    std::vector<uint8_t> reply = last_;
    reply.resize(64, 0);
    reply[3] = 0x01;
    reply[9] = replyProfile;
    length = std::min<std::size_t>(length, 64);
    std::copy_n(reply.begin(), length, buffer.begin());
    return {};
}

void RecordingHidDevice::record(const char* bracket)
{
    std::lock_guard lock(mutex_);
    if (recordBrackets)
        sets_.push_back(bracket);
}

std::vector<std::string> RecordingHidDevice::sets() const
{
    std::lock_guard lock(mutex_);
    return sets_;
}

DeviceComm::Sleeper RecordingHidDevice::pauseRecorder()
{
    return [this](std::chrono::milliseconds ms) {
        std::lock_guard lock(mutex_);
        sets_.push_back("pause " + std::to_string(ms.count()));
    };
}

void RecordingHidDevice::setGate(bool open)
{
    {
        std::lock_guard lock(mutex_);
        gateClosed_ = !open;
    }
    gateChanged_.notify_all();
}

}  // namespace testing_support
