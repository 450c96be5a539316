#include "HIDDevice/HIDDeviceMonitor.h"

#include "Common/NotificationCenter.h"

HIDDeviceMonitor::HIDDeviceMonitor(std::vector<HIDMonitorData> vp_, int reportSize_, ManagerFactory factory)
    : vp(std::move(vp_)), reportSize(reportSize_), factory_(std::move(factory))
{
}

HIDDeviceMonitor::~HIDDeviceMonitor() = default;

void HIDDeviceMonitor::start()
{
    manager_ = factory_ ? factory_() : nullptr;
    if (!manager_)
        return;  // no platform to watch: the monitor stays silent
    std::vector<HidMatch> matches;
    for (const HIDMonitorData& d : vp)
        matches.push_back({d.vendorId, d.productId});
    manager_->setDeviceMatching(std::move(matches));
    manager_->registerDeviceMatchingCallback(
        [this](const std::shared_ptr<HidDeviceHandle>& device) { rawDeviceAdded(0, manager_.get(), device); });
    manager_->registerDeviceRemovalCallback(
        [this](const std::shared_ptr<HidDeviceHandle>& device) { rawDeviceRemoved(0, manager_.get(), device); });
    manager_->registerProblemCallback([this](const QString& message) {
        if (onProblem_)
            onProblem_(message);
    });
    // A manager that cannot be opened simply stays silent.
    manager_->open();
}

void HIDDeviceMonitor::stop()
{
    manager_.reset();
}

bool HIDDeviceMonitor::announce(const std::shared_ptr<HidDeviceHandle>& device, const QString& notification)
{
    if (!device)
        return true;
    // Read now, also on removal: the departing device still answers.
    const HIDDevice hid(device);
    if (!isConfigurationInterface(hid))
        return true;
    NotificationCenter::defaultCenter().post(notification, makeDeviceNotificationObject(hid));
    return false;
}

bool HIDDeviceMonitor::rawDeviceAdded(int, void*, const std::shared_ptr<HidDeviceHandle>& device)
{
    return announce(device, HIDNotification::Connected);
}

bool HIDDeviceMonitor::rawDeviceRemoved(int, void*, const std::shared_ptr<HidDeviceHandle>& device)
{
    return announce(device, HIDNotification::Disconnected);
}
