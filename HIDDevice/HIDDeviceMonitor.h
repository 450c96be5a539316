#pragma once
// HIDDeviceMonitor: watches for the keyboards' configuration interface.
//
// Built once with the vendor/product pairs to match; start() runs on the
// monitor thread, sets the platform manager up there, and from then on the
// manager's callbacks (for devices present at start and later ones alike)
// arrive on that thread's event loop. Of all the interfaces a keyboard
// offers, only the one with a 64-byte feature report is announced, with
// "HIDDeviceConnected" / "HIDDeviceDisconnected" on the default
// notification centre. The monitor keeps no list of devices.

#include "HIDDevice/HIDDevice.h"
#include "HIDDevice/Platform/HidManager.h"

#include <QThread>

#include <functional>
#include <memory>
#include <vector>

class HIDDeviceMonitor {
public:
    using ManagerFactory = std::function<std::unique_ptr<HidManager>()>;
    using ProblemHandler = std::function<void(const QString&)>;

    HIDDeviceMonitor(std::vector<HIDMonitorData> vp, int reportSize, ManagerFactory factory = createPlatformHidManager);
    ~HIDDeviceMonitor();

    // On the monitor thread: creates and opens the manager. Callbacks then
    // come from the thread's event loop.
    void start();
    // On the monitor thread, before it ends: drops the manager.
    void stop();

    // Both return false when they posted a notification, true otherwise.
    bool rawDeviceAdded(int result, void* sender, const std::shared_ptr<HidDeviceHandle>& device);
    bool rawDeviceRemoved(int result, void* sender, const std::shared_ptr<HidDeviceHandle>& device);

    // Plain-words problems of the platform (a permission failure, say).
    void setProblemHandler(ProblemHandler handler) { onProblem_ = std::move(handler); }

    const std::vector<HIDMonitorData> vp;
    const int reportSize;

private:
    // Posts `notification` for the configuration interface; true otherwise.
    bool announce(const std::shared_ptr<HidDeviceHandle>& device, const QString& notification);

    ManagerFactory factory_;
    ProblemHandler onProblem_;
    std::unique_ptr<HidManager> manager_;
};

// The monitor thread: runs start(), then its event loop until quit().
class HIDMonitorThread : public QThread {
public:
    explicit HIDMonitorThread(HIDDeviceMonitor& monitor, QObject* parent = nullptr)
        : QThread(parent), monitor_(monitor)
    {
        setObjectName(QStringLiteral("hid-monitor"));
    }

protected:
    void run() override
    {
        monitor_.start();
        exec();
        monitor_.stop();
    }

private:
    HIDDeviceMonitor& monitor_;
};
