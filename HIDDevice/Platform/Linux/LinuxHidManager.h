#pragma once
// HidManager for real hardware: libudev enumeration at open(), then a udev
// monitor served by the opening thread's event loop (a QSocketNotifier on the
// monitor socket, no polling). Interfaces are reported per USB interface, not
// per hidraw node; see LinuxHidRegistry for why.

#include "HIDDevice/Platform/HidManager.h"
#include "HIDDevice/Platform/Linux/LinuxHidRegistry.h"
#include "HIDDevice/Platform/Linux/PermissionDoctor.h"

#include <libudev.h>

#include <QObject>

#include <memory>

class QSocketNotifier;

class LinuxHidManager final : public HidManager {
public:
    LinuxHidManager();
    ~LinuxHidManager() override;

    void setDeviceMatching(std::vector<HidMatch> matches) override;
    void registerDeviceMatchingCallback(DeviceCallback callback) override;
    void registerDeviceRemovalCallback(DeviceCallback callback) override;
    void registerProblemCallback(ProblemCallback callback) override;
    bool open() override;

private:
    struct UdevDeleter { void operator()(udev* u) const { udev_unref(u); } };
    struct MonitorDeleter { void operator()(udev_monitor* m) const { udev_monitor_unref(m); } };

    void enumeratePresent();
    void readMonitor();
    void deliver(const std::vector<LinuxHidRegistry::Change>& changes);

    std::shared_ptr<PermissionNotice> notice_ = std::make_shared<PermissionNotice>(&permissionAdvice);
    LinuxHidRegistry registry_;
    DeviceCallback onMatch_;
    DeviceCallback onRemove_;
    ProblemCallback onProblem_;
    std::unique_ptr<udev, UdevDeleter> udev_;
    std::unique_ptr<udev_monitor, MonitorDeleter> monitor_;
    std::unique_ptr<QObject> context_;  // lives on the opening thread
    QSocketNotifier* notifier_ = nullptr;  // owned by context_
};
