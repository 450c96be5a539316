#pragma once
// A HidDeviceHandle that records every report set on it and answers each
// read like the keyboard family does: the last frame with byte 3 = 1 and
// byte 9 = `replyProfile`. `recordBrackets` also records each sequence's
// "begin data"/"begin" and "end". While the gate is closed, a set waits.

#include "HIDDevice/DeviceComm.h"
#include "HIDDevice/Platform/HidDeviceHandle.h"

#include <QVariantMap>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace testing_support {

class RecordingHidDevice : public HidDeviceHandle {
public:
    HidStatus setFeatureReport(uint8_t reportId, std::span<const uint8_t> data) override;
    HidStatus getFeatureReport(uint8_t reportId, std::span<uint8_t> buffer, std::size_t& length) override;
    QVariant property(const QString& key) const override { return properties.value(key); }
    void beginSequence(bool withData) override { record(withData ? "begin data" : "begin"); }
    void endSequence() override { record("end"); }

    // Hex of every set (and bracket) in order.
    std::vector<std::string> sets() const;
    void setGate(bool open);
    // A sleeper that records "pause <ms>" among the sets instead of sleeping.
    DeviceComm::Sleeper pauseRecorder();
    bool someoneWaitsAtGate() const { return waiting_ > 0; }

    QVariantMap properties;
    std::atomic<bool> recordBrackets = false;
    std::atomic<uint8_t> replyProfile = 1;

private:
    void record(const char* bracket);

    mutable std::mutex mutex_;
    std::condition_variable gateChanged_;
    std::vector<std::string> sets_;
    std::vector<uint8_t> last_ = std::vector<uint8_t>(64, 0);
    bool gateClosed_ = false;
    std::atomic<int> waiting_ = 0;
};

}  // namespace testing_support
