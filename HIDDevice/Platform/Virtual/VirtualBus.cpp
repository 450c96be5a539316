#include "HIDDevice/Platform/Virtual/VirtualBus.h"

#include <algorithm>

std::shared_ptr<VirtualBus> VirtualBus::shared()
{
    static auto bus = std::make_shared<VirtualBus>();
    return bus;
}

void VirtualBus::plug(const std::shared_ptr<VirtualUsbDevice>& device)
{
    std::vector<std::shared_ptr<Listener>> listeners;
    {
        std::lock_guard lock(mutex_);
        if (std::find(devices_.begin(), devices_.end(), device) != devices_.end())
            return;
        devices_.push_back(device);
        for (auto& [id, l] : listeners_)
            listeners.push_back(l);
    }
    device->setPlugged(true);
    for (const auto& iface : device->interfaces())
        for (const auto& l : listeners)
            (*l)(iface, true);
}

void VirtualBus::unplug(const std::shared_ptr<VirtualUsbDevice>& device)
{
    std::vector<std::shared_ptr<Listener>> listeners;
    {
        std::lock_guard lock(mutex_);
        auto it = std::find(devices_.begin(), devices_.end(), device);
        if (it == devices_.end())
            return;
        devices_.erase(it);
        for (auto& [id, l] : listeners_)
            listeners.push_back(l);
    }
    device->setPlugged(false);
    for (const auto& iface : device->interfaces())
        for (const auto& l : listeners)
            (*l)(iface, false);
}

VirtualBus::ListenerId VirtualBus::addListener(Listener listener)
{
    auto shared = std::make_shared<Listener>(std::move(listener));
    std::vector<std::shared_ptr<HidDeviceHandle>> present;
    ListenerId id;
    {
        std::lock_guard lock(mutex_);
        id = nextId_++;
        listeners_.emplace_back(id, shared);
        for (const auto& d : devices_)
            for (const auto& iface : d->interfaces())
                present.push_back(iface);
    }
    for (const auto& iface : present)
        (*shared)(iface, true);
    return id;
}

void VirtualBus::removeListener(ListenerId id)
{
    std::lock_guard lock(mutex_);
    std::erase_if(listeners_, [id](const auto& p) { return p.first == id; });
}
