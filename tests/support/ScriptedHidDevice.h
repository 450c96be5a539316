#pragma once
// A HidDeviceHandle that plays a script: every set, get and pause the code
// under test makes must be the next expected one, byte for byte. A mismatch
// fails the test at once with both frames in hex; expectations left over
// fail it in verify() (called by the destructor too).

#include "HIDDevice/DeviceComm.h"
#include "HIDDevice/Platform/HidDeviceHandle.h"

#include <QVariantMap>

#include <chrono>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace testing_support {

class ScriptedHidDevice : public HidDeviceHandle {
public:
    ScriptedHidDevice() = default;
    ~ScriptedHidDevice() override;

    ScriptedHidDevice& expectSet(std::vector<uint8_t> bytes, HidResult status = HidResult::Success);
    // `reply` is what the device answers; `received` how many bytes it says.
    ScriptedHidDevice& expectGet(std::vector<uint8_t> reply, HidResult status = HidResult::Success);
    ScriptedHidDevice& expectSleep(std::chrono::milliseconds ms);
    ScriptedHidDevice& expectBegin(bool carriesDataReports);
    ScriptedHidDevice& expectEnd();

    // Pauses go into the script instead of sleeping, so they are checked too.
    DeviceComm::Sleeper sleeper();

    HidStatus setFeatureReport(uint8_t reportId, std::span<const uint8_t> data) override;
    HidStatus getFeatureReport(uint8_t reportId, std::span<uint8_t> buffer, std::size_t& length) override;
    QVariant property(const QString& key) const override { return properties.value(key); }
    void beginSequence(bool carriesDataReports) override;
    void endSequence() override;

    void verify();

    QVariantMap properties;

private:
    struct Expectation {
        enum class Kind { Set, Get, Sleep, Begin, End } kind;
        std::vector<uint8_t> bytes;
        HidResult status = HidResult::Success;
        long long ms = 0;
        bool flag = false;
    };
    Expectation next(Expectation::Kind kind, const std::string& what);

    mutable std::mutex mutex_;
    std::deque<Expectation> script_;
    bool verified_ = false;
};

}  // namespace testing_support
