#include "HIDDevice/Platform/Linux/LinuxHidRegistry.h"

namespace fs = std::filesystem;

LinuxHidRegistry::LinuxHidRegistry(fs::path devRoot, std::shared_ptr<PermissionNotice> notice)
    : devRoot_(std::move(devRoot)), notice_(std::move(notice))
{
}

bool LinuxHidRegistry::matches(const UsbHidInterface& info) const
{
    for (const HidMatch& m : matches_)
        if (m.vendorId == info.vendorId && m.productId == info.productId)
            return true;
    return false;
}

std::vector<LinuxHidRegistry::Change> LinuxHidRegistry::handle(const DeviceEvent& event)
{
    if (event.subsystem == "hidraw") {
        if (event.action == DeviceEvent::Action::Add)
            return hidrawAdded(event.syspath);
        if (event.action == DeviceEvent::Action::Remove)
            hidrawRemoved(event.syspath);
        return {};
    }
    if (event.subsystem == "usb" && event.action == DeviceEvent::Action::Remove)
        return usbRemoved(event);
    return {};
}

std::vector<LinuxHidRegistry::Change> LinuxHidRegistry::hidrawAdded(const fs::path& syspath)
{
    const std::string node = syspath.filename().string();
    const auto known = devices_.find(interfaceIdentityOfHidraw(syspath));
    if (known != devices_.end()) {
        known->second->setHidrawName(node);  // rebound driver, same interface
        return {};
    }
    std::optional<UsbHidInterface> info = readUsbHidInterface(syspath);
    if (!info || !matches(*info))
        return {};
    auto device = std::make_shared<LinuxHidDevice>(std::move(*info), devRoot_, notice_);
    device->setHidrawName(node);
    devices_.emplace(device->identity(), device);
    return {{device, true}};
}

void LinuxHidRegistry::hidrawRemoved(const fs::path& syspath)
{
    const auto known = devices_.find(interfaceIdentityOfHidraw(syspath));
    if (known != devices_.end())
        known->second->forgetHidrawName(syspath.filename().string());
}

std::vector<LinuxHidRegistry::Change> LinuxHidRegistry::usbRemoved(const DeviceEvent& event)
{
    // An interface event names one interface; a device event (should the
    // interface events be missed) takes every interface of that device.
    const std::string name = event.syspath.filename().string();
    const bool wholeDevice = event.devtype == "usb_device";
    std::vector<Change> removed;
    for (auto it = devices_.begin(); it != devices_.end();) {
        const bool gone = wholeDevice ? it->first.rfind(name + ":", 0) == 0 : it->first == name;
        if (gone) {
            it->second->markUnplugged();
            removed.push_back({it->second, false});
            it = devices_.erase(it);
        } else {
            ++it;
        }
    }
    return removed;
}
