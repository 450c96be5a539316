#pragma once
// DeviceComm: the transport of one connection and the only code that talks
// to a keyboard.
//
// It sends the first 64 bytes of what it is given as feature report 4, waits
// the fixed 10 ms before each step, reads one report back after each single
// report and repeats a report once when the reply's byte 3 is 255. It knows
// nothing of commands. The operations block their caller; the application
// calls them only on its transport thread. Set ORVANE_HID_DUMP=1 to print
// every report in hex on standard error.

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
    bool sendDeviceData(const std::vector<uint8_t>& data);
    // n = length / 64; sends reports 0 .. n-2 and reads nothing back.
    bool sendDeviceData(const std::vector<uint8_t>& data, int length);
    // Like the first, but the reply replaces the caller's buffer.
    bool getDeviceData(std::vector<uint8_t>& data);

    int deviceStatus() const { return deviceStatus_; }
    void setDeviceStatus(int status) { deviceStatus_ = status; }
    int productId() const { return productId_; }
    bool isBusy() const { return isBusy_; }
    const std::shared_ptr<HidDeviceHandle>& device() const { return device_; }

    // Set when the session that owns this transport ends (unplug): steps of
    // sequences still queued for it are then skipped.
    void release() { released_ = true; }
    bool isReleased() const { return released_; }

    void sleep(std::chrono::milliseconds duration) const;
    static bool hexDumpEnabled();

private:
    // The single-report exchange shared by sendDeviceData and getDeviceData.
    // Returns the read status; `reply` holds the last reply, or is untouched
    // when a set failed (then `setFailed` is true).
    bool exchange(const std::vector<uint8_t>& request, std::vector<uint8_t>& reply, bool& setFailed);
    // One exchange; the reply goes to `replyTarget` when one is given.
    bool runExchange(const std::vector<uint8_t>& request, std::vector<uint8_t>* replyTarget);
    int setReport(const uint8_t* bytes, std::size_t length);
    int getReport(std::vector<uint8_t>& buffer, std::size_t& length);

    std::shared_ptr<HidDeviceHandle> device_;
    Sleeper sleeper_;
    int deviceStatus_ = 1;
    int productId_ = 0;
    std::atomic<bool> isBusy_ = false;
    std::atomic<bool> released_ = false;
};
