#pragma once
// What we know of one USB HID interface, read from sysfs.
//
// Every reader takes the sysfs path it works from, so the tests run them over
// a fake tree in a temporary folder. A hidraw node's sysfs path looks like
//   <usb device>/<usb interface>/<hid device>/hidraw/hidrawN
// e.g. .../usb1/1-1.4/1-1.4:1.1/0003:0C45:8075.0001/hidraw/hidraw3.

#include "HIDDevice/Platform/Linux/HidReportDescriptor.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

struct UsbHidInterface {
    // The USB interface's sysfs name, "1-1.4:1.1": port path, configuration and
    // interface number. It survives a driver unbind and rebind, while the
    // hidraw node does not, so it is what identifies the interface.
    std::string identity;
    std::filesystem::path interfaceDir;
    int interfaceNumber = -1;
    int vendorId = 0;
    int productId = 0;
    int busNumber = 0;
    int deviceAddress = 0;
    uint32_t locationId = 0;
    std::optional<std::string> product;  // the USB device's product string
    HidReportSizes sizes;
};

// One sysfs attribute: its first line without the trailing newline, or a
// number in the given base; nullopt when missing or malformed.
std::optional<std::string> readSysfsLine(const std::filesystem::path& file);
std::optional<int> readSysfsNumber(const std::filesystem::path& file, int base);

// Reads the interface that a hidraw node belongs to; nullopt when the node is
// not on USB or the tree is incomplete.
std::optional<UsbHidInterface> readUsbHidInterface(const std::filesystem::path& hidrawSysPath);

// The interface identity a hidraw sysfs path belongs to, from the path alone
// (the directories are already gone when a removal is handled).
std::string interfaceIdentityOfHidraw(const std::filesystem::path& hidrawSysPath);

// The current hidraw node name ("hidraw5") under a USB interface; nullopt while
// no HID driver is bound to it.
std::optional<std::string> findHidrawName(const std::filesystem::path& interfaceDir);

// Our "LocationID": bus number in the top byte, then one nibble per hub port
// ("1.4" on bus 3 gives 0x03140000). Stable for a given socket.
uint32_t locationIdFromUsbPath(int busNumber, std::string_view portPath);

// The usbfs node of a USB device, e.g. /dev/bus/usb/001/004.
std::filesystem::path usbfsNode(const std::filesystem::path& devRoot, int busNumber, int deviceAddress);
