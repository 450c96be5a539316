#pragma once
// A HidDeviceHandle for single-thread DeviceComm tests: it logs every pause,
// set and read the code under test makes, so a test compares the whole log
// byte for byte, and answers from the results the test queued.

#include "HIDDevice/DeviceComm.h"
#include "HIDDevice/Platform/HidDeviceHandle.h"

#include <deque>
#include <string>
#include <vector>

namespace testing_support {

class ScriptedHidDevice : public HidDeviceHandle {
public:
    HidStatus setFeatureReport(uint8_t reportId, std::span<const uint8_t> data) override;
    HidStatus getFeatureReport(uint8_t reportId, std::span<uint8_t> buffer, std::size_t& length) override;
    QVariant property(const QString&) const override { return {}; }
    // Pauses go into the log instead of sleeping, so they are checked too.
    DeviceComm::Sleeper sleeper();

    std::deque<HidResult> setResults;  // sets beyond these succeed
    struct Reply {
        std::vector<uint8_t> bytes;  // its size is how many bytes the device says
        HidResult status = HidResult::Success;
    };
    std::deque<Reply> replies;  // reads beyond these fail
    std::vector<std::string> log;  // "pause <ms>", "set <hex>", "get"
};

}  // namespace testing_support
