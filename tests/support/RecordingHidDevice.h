#pragma once
// A HidDeviceHandle that records every report set on it and answers each
// read like the keyboard family does: the last frame with byte 3 = 1.
// `gate` can hold the next set until the test opens it.

#include "HIDDevice/Platform/HidDeviceHandle.h"

#include <QVariantMap>

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
    void beginSequence(bool carriesDataReports) override;
    void endSequence() override;

    // Hex of every set, in order; "begin data"/"begin"/"end" mark brackets
    // when `recordBrackets` is set.
    std::vector<std::string> sets() const;

    // Byte 9 of every read's reply (the active profile for a status poll).
    void setReplyProfile(uint8_t profile);

    // While closed, a set waits; opening lets all waiting sets through.
    void closeGate();
    void openGate();
    bool someoneWaitsAtGate() const;

    QVariantMap properties;
    bool recordBrackets = false;

private:
    mutable std::mutex mutex_;
    std::condition_variable gateChanged_;
    std::vector<std::string> sets_;
    std::vector<uint8_t> last_ = std::vector<uint8_t>(64, 0);
    uint8_t replyProfile_ = 1;
    bool gateClosed_ = false;
    int waiting_ = 0;
};

}  // namespace testing_support
