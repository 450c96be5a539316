#pragma once
// HidManager over a VirtualBus. Bus events may come from any thread; the
// callbacks run on the thread that called open(), through its event loop.

#include "HIDDevice/Platform/HidManager.h"
#include "HIDDevice/Platform/Virtual/VirtualBus.h"

#include <QObject>
#include <QPointer>

class VirtualHidManager final : public HidManager {
public:
    explicit VirtualHidManager(std::shared_ptr<VirtualBus> bus = VirtualBus::shared());
    ~VirtualHidManager() override;

    void setDeviceMatching(std::vector<HidMatch> matches) override;
    void registerDeviceMatchingCallback(DeviceCallback callback) override;
    void registerDeviceRemovalCallback(DeviceCallback callback) override;
    bool open() override;

private:
    bool matches(const HidDeviceHandle& iface) const;
    void deliver(const std::shared_ptr<HidDeviceHandle>& iface, bool arrived);

    std::shared_ptr<VirtualBus> bus_;
    std::vector<HidMatch> matches_;
    DeviceCallback onMatch_;
    DeviceCallback onRemove_;
    std::unique_ptr<QObject> context_;  // lives on the manager's thread
    VirtualBus::ListenerId listener_ = 0;
};
