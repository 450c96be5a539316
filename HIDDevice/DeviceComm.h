#pragma once
// DeviceComm: the transport of one connection and the only code that talks
// to a keyboard.
//
// It sends the first 64 bytes of what it is given as feature report 4, waits
// the fixed 10 ms before each step, reads one report back after each single
// report and repeats a report once when the reply's byte 3 is 255 (a second
// 255 is a failure: the keyboard will not take the frame). It knows
// nothing of commands. The operations block their caller; the application
// calls them only on its transport thread. Each answers with a HidStatus, so
// a failure carries its reason. Whether the transport is busy is the
// transport queue's fact (TransportQueue::isBusy), not kept here. Set
// ORVANE_HID_DUMP=1 to print every report in hex on standard error.

#include "HIDDevice/Platform/HidDeviceHandle.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class DeviceComm {
public:
    using Sleeper = std::function<void(std::chrono::milliseconds)>;

    static constexpr std::chrono::milliseconds kStepDelay{10};

    explicit DeviceComm(std::shared_ptr<HidDeviceHandle> device, Sleeper sleeper = {});

    // One report out, one reply read and dropped (a repeat on 255 included).
    HidStatus sendDeviceData(const std::vector<uint8_t>& data);
    // n = length / 64; sends reports 0 .. n-2 and reads nothing back. A set
    // that fails stops the run; the result is still a success, as callers of
    // a run never act on it, but the reason is logged.
    HidStatus sendDeviceData(const std::vector<uint8_t>& data, int length);
    // Like the first, but the reply replaces the caller's buffer.
    HidStatus getDeviceData(std::vector<uint8_t>& data);

    int deviceStatus() const { return deviceStatus_; }
    void setDeviceStatus(int status) { deviceStatus_ = status; }
    const std::shared_ptr<HidDeviceHandle>& device() const { return device_; }

    // Set when the session that owns this transport ends (unplug): steps of
    // sequences still queued for it are then skipped.
    void release() { released_ = true; }
    bool isReleased() const { return released_; }

    void sleep(std::chrono::milliseconds duration) const;
    static bool hexDumpEnabled();

private:
    // The single-report exchange shared by sendDeviceData and getDeviceData.
    // Returns the status of the last read; `reply` holds the last reply, or
    // is untouched when a set failed (then `setFailed` is true).
    HidStatus exchange(const std::vector<uint8_t>& request, std::vector<uint8_t>& reply, bool& setFailed);
    // One exchange; the reply goes to `replyTarget` when one is given.
    HidStatus runExchange(const std::vector<uint8_t>& request, std::vector<uint8_t>* replyTarget);
    HidStatus setReport(const uint8_t* bytes, std::size_t length);
    HidStatus getReport(std::vector<uint8_t>& buffer, std::size_t& length);

    std::shared_ptr<HidDeviceHandle> device_;
    Sleeper sleeper_;
    int deviceStatus_ = 1;
    std::atomic<bool> released_ = false;
};
