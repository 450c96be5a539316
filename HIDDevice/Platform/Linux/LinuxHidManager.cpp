#include "HIDDevice/Platform/Linux/LinuxHidManager.h"

#include <QDebug>
#include <QMetaObject>
#include <QPointer>
#include <QSocketNotifier>

#include <cstring>

namespace {

struct EnumerateDeleter { void operator()(udev_enumerate* e) const { udev_enumerate_unref(e); } };
struct DeviceDeleter { void operator()(udev_device* d) const { udev_device_unref(d); } };
using DevicePtr = std::unique_ptr<udev_device, DeviceDeleter>;

std::string orEmpty(const char* s) { return s ? s : ""; }

DeviceEvent eventOf(udev_device* device, DeviceEvent::Action action)
{
    DeviceEvent event;
    event.action = action;
    event.subsystem = orEmpty(udev_device_get_subsystem(device));
    event.devtype = orEmpty(udev_device_get_devtype(device));
    event.syspath = orEmpty(udev_device_get_syspath(device));
    return event;
}

DeviceEvent::Action actionOf(const char* action)
{
    if (action && std::strcmp(action, "add") == 0)
        return DeviceEvent::Action::Add;
    if (action && std::strcmp(action, "remove") == 0)
        return DeviceEvent::Action::Remove;
    return DeviceEvent::Action::Other;
}

}  // namespace

LinuxHidManager::LinuxHidManager() : registry_("/dev", notice_) {}

LinuxHidManager::~LinuxHidManager()
{
    notice_->setSink({});
}

void LinuxHidManager::setDeviceMatching(std::vector<HidMatch> matches) { registry_.setMatches(std::move(matches)); }
void LinuxHidManager::registerDeviceMatchingCallback(DeviceCallback callback) { onMatch_ = std::move(callback); }
void LinuxHidManager::registerDeviceRemovalCallback(DeviceCallback callback) { onRemove_ = std::move(callback); }
void LinuxHidManager::registerProblemCallback(ProblemCallback callback) { onProblem_ = std::move(callback); }

bool LinuxHidManager::open()
{
    if (context_)
        return true;
    udev_.reset(udev_new());
    if (!udev_) {
        qWarning("udev: cannot create a context: %s", strerror(errno));
        return false;
    }
    // The monitor starts before the enumeration so that nothing plugged in
    // between the two is missed; the registry drops duplicates.
    monitor_.reset(udev_monitor_new_from_netlink(udev_.get(), "udev"));
    if (!monitor_) {
        qWarning("udev: cannot create a monitor: %s", strerror(errno));
        return false;
    }
    if (udev_monitor_filter_add_match_subsystem_devtype(monitor_.get(), "hidraw", nullptr) < 0
        || udev_monitor_filter_add_match_subsystem_devtype(monitor_.get(), "usb", nullptr) < 0
        || udev_monitor_enable_receiving(monitor_.get()) < 0) {
        qWarning("udev: cannot listen for device events: %s", strerror(errno));
        return false;
    }
    const int fd = udev_monitor_get_fd(monitor_.get());
    if (fd < 0) {
        qWarning("udev: the monitor has no socket");
        return false;
    }

    context_ = std::make_unique<QObject>();
    QPointer<QObject> ctx = context_.get();
    notice_->setSink([this, ctx](const QString& message) {
        if (!ctx)
            return;
        QMetaObject::invokeMethod(ctx.data(), [this, message] {
            if (onProblem_)
                onProblem_(message);
        }, Qt::QueuedConnection);
    });
    notifier_ = new QSocketNotifier(fd, QSocketNotifier::Read, context_.get());
    QObject::connect(notifier_, &QSocketNotifier::activated, context_.get(), [this] { readMonitor(); });
    // Present interfaces are reported from the event loop, like later ones.
    QMetaObject::invokeMethod(context_.get(), [this] { enumeratePresent(); }, Qt::QueuedConnection);
    return true;
}

void LinuxHidManager::enumeratePresent()
{
    std::unique_ptr<udev_enumerate, EnumerateDeleter> en(udev_enumerate_new(udev_.get()));
    if (!en) {
        qWarning("udev: cannot enumerate devices: %s", strerror(errno));
        return;
    }
    if (udev_enumerate_add_match_subsystem(en.get(), "hidraw") < 0 || udev_enumerate_scan_devices(en.get()) < 0) {
        qWarning("udev: scanning hidraw devices failed: %s", strerror(errno));
        return;
    }
    for (udev_list_entry* e = udev_enumerate_get_list_entry(en.get()); e; e = udev_list_entry_get_next(e)) {
        DevicePtr device(udev_device_new_from_syspath(udev_.get(), udev_list_entry_get_name(e)));
        if (device)  // it may have gone since the scan
            deliver(registry_.handle(eventOf(device.get(), DeviceEvent::Action::Add)));
    }
}

void LinuxHidManager::readMonitor()
{
    // One notification may stand for several queued events: drain them.
    while (true) {
        DevicePtr device(udev_monitor_receive_device(monitor_.get()));
        if (!device)
            return;
        deliver(registry_.handle(eventOf(device.get(), actionOf(udev_device_get_action(device.get())))));
    }
}

void LinuxHidManager::deliver(const std::vector<LinuxHidRegistry::Change>& changes)
{
    for (const LinuxHidRegistry::Change& change : changes) {
        if (change.arrived) {
            // Say early, not at the first upload, when the nodes are not ours.
            change.device->checkAccess();
            if (onMatch_)
                onMatch_(change.device);
        } else if (onRemove_) {
            onRemove_(change.device);
        }
    }
}

std::unique_ptr<HidManager> createPlatformHidManager() { return std::make_unique<LinuxHidManager>(); }
