#pragma once
// An in-process USB bus for virtual devices: the demo mode and the tests plug
// and unplug devices here, and every VirtualHidManager watching the bus hears
// of it on its own thread.

#include "HIDDevice/Platform/HidDeviceHandle.h"

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

// A device on the virtual bus: one or more HID interfaces.
class VirtualUsbDevice {
public:
    virtual ~VirtualUsbDevice() = default;
    virtual std::vector<std::shared_ptr<HidDeviceHandle>> interfaces() const = 0;
    // Called by the bus when the device is pulled: later transfers fail, while
    // the properties stay readable for the removal callbacks.
    virtual void setPlugged(bool plugged) = 0;
};

class VirtualBus {
public:
    using Listener = std::function<void(const std::shared_ptr<HidDeviceHandle>& iface, bool arrived)>;
    using ListenerId = int;

    static std::shared_ptr<VirtualBus> shared();

    void plug(const std::shared_ptr<VirtualUsbDevice>& device);
    void unplug(const std::shared_ptr<VirtualUsbDevice>& device);

    // The listener gets every interface already present, then later changes.
    ListenerId addListener(Listener listener);
    void removeListener(ListenerId id);

private:
    std::mutex mutex_;
    std::vector<std::shared_ptr<VirtualUsbDevice>> devices_;
    std::vector<std::pair<ListenerId, std::shared_ptr<Listener>>> listeners_;
    ListenerId nextId_ = 1;
};
