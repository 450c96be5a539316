#pragma once
// Which matched HID interfaces are present, keyed by USB interface identity.
//
// It turns device events (hidraw and usb, as udev reports them) into arrivals
// and removals. A hidraw node coming and going while its USB interface stays
// is a driver unbind and rebind, ours or anyone's: the device keeps its handle
// and only learns its new node. Only the USB interface going away is a
// removal. Pure bookkeeping over sysfs, so the tests drive it with a fake tree.

#include "HIDDevice/Platform/HidManager.h"
#include "HIDDevice/Platform/Linux/LinuxHidDevice.h"

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct DeviceEvent {
    enum class Action { Add, Remove, Other };
    Action action = Action::Other;
    std::string subsystem;  // "hidraw" or "usb"
    std::string devtype;    // for usb: "usb_device" or "usb_interface"
    std::filesystem::path syspath;
};

class LinuxHidRegistry {
public:
    struct Change {
        std::shared_ptr<LinuxHidDevice> device;
        bool arrived = false;
    };

    LinuxHidRegistry(std::filesystem::path devRoot, std::shared_ptr<PermissionNotice> notice);

    void setMatches(std::vector<HidMatch> matches) { matches_ = std::move(matches); }
    std::vector<Change> handle(const DeviceEvent& event);

private:
    bool matches(const UsbHidInterface& info) const;
    std::vector<Change> hidrawAdded(const std::filesystem::path& syspath);
    void hidrawRemoved(const std::filesystem::path& syspath);
    std::vector<Change> usbRemoved(const DeviceEvent& event);

    std::filesystem::path devRoot_;
    std::shared_ptr<PermissionNotice> notice_;
    std::vector<HidMatch> matches_;
    std::map<std::string, std::shared_ptr<LinuxHidDevice>> devices_;
};
