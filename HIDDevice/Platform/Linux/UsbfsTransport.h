#pragma once
// Feature reports as raw HID class control transfers through usbfs.
//
// hidraw takes the report id from byte 0 of the buffer, so a data report
// whose byte 0 is payload would go out under another id. Over usbfs we put
// report 4 in wValue ourselves and the data stage is exactly the caller's
// bytes. That needs the interface claimed, which means unbinding usbhid from
// that one interface for the duration; UsbfsInterfaceClaim does both and
// gives the interface back to the kernel driver when it ends.

#include "HIDDevice/Platform/HidStatus.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

struct libusb_context;
struct libusb_device_handle;

struct ControlSetup {
    uint8_t requestType = 0;
    uint8_t request = 0;
    uint16_t value = 0;
    uint16_t index = 0;
    uint16_t length = 0;
    friend bool operator==(const ControlSetup&, const ControlSetup&) = default;
};

// HID class SET_REPORT / GET_REPORT for a feature report (HID 1.11, 7.2).
ControlSetup setFeatureReportSetup(uint8_t reportId, int interfaceNumber, std::size_t length);
ControlSetup getFeatureReportSetup(uint8_t reportId, int interfaceNumber, std::size_t length);

// libusb and errno codes as a status; `what` names the step that failed.
HidStatus hidStatusFromLibusb(int code, const std::string& what);
HidStatus hidStatusFromErrno(int err, const std::string& what);

class UsbfsInterfaceClaim {
public:
    UsbfsInterfaceClaim() = default;
    ~UsbfsInterfaceClaim();
    UsbfsInterfaceClaim(const UsbfsInterfaceClaim&) = delete;
    UsbfsInterfaceClaim& operator=(const UsbfsInterfaceClaim&) = delete;

    // Opens the usbfs node, detaches the kernel driver from `interfaceNumber`
    // only, and claims it.
    HidStatus acquire(const std::filesystem::path& usbfsNode, int interfaceNumber);
    // Releases the interface and re-attaches the driver it had.
    HidStatus release();
    bool held() const { return handle_ != nullptr; }

    // `transferred` is the data stage length.
    HidStatus control(const ControlSetup& setup, uint8_t* data, std::size_t& transferred);

private:
    struct ContextDeleter { void operator()(libusb_context* c) const; };
    struct HandleDeleter { void operator()(libusb_device_handle* h) const; };
    struct FdCloser { void operator()(int* fd) const; };

    std::unique_ptr<libusb_context, ContextDeleter> context_;
    std::unique_ptr<int, FdCloser> fd_;  // must outlive handle_
    std::unique_ptr<libusb_device_handle, HandleDeleter> handle_;
    int interface_ = -1;
    bool detached_ = false;
};
