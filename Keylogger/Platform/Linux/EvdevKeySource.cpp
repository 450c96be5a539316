// Every keyboard and keypad of the machine through evdev: the event nodes
// that udev marks as having keys and that this user may read, opened
// read-only and non-blocking, each watched by a socket notifier on the
// calling thread's loop; a udev monitor adds and drops nodes as keyboards
// come and go. The Orvane keyboard's configuration interface is never
// opened here: it belongs to the device session.
#include "Keylogger/Platform/SystemKeySource.h"

#include "Common/InputKeyCodes.h"
#include "HIDDevice/HIDDevice.h"
#include "HIDDevice/Platform/Linux/HidReportDescriptor.h"
#include "HIDDevice/Platform/Linux/NodeAccess.h"

#include <QSocketNotifier>

#include <libevdev/libevdev.h>
#include <libudev.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <vector>

namespace {

struct UdevDeleter {
    void operator()(udev* u) const { udev_unref(u); }
    void operator()(udev_monitor* m) const { udev_monitor_unref(m); }
    void operator()(udev_enumerate* e) const { udev_enumerate_unref(e); }
    void operator()(udev_device* d) const { udev_device_unref(d); }
    void operator()(libevdev* d) const { libevdev_free(d); }
};
template <typename T>
using Owned = std::unique_ptr<T, UdevDeleter>;

bool hasKeys(udev_device* device)
{
    for (const char* property : {"ID_INPUT_KEYBOARD", "ID_INPUT_KEY"})
        if (const char* value = udev_device_get_property_value(device, property); value && std::strcmp(value, "1") == 0)
            return true;
    return false;
}

// The configuration interface of an Orvane keyboard: its vendor, and the
// 64-byte feature report that makes an interface the one we configure.
bool isKeyboardConfigurationInterface(udev_device* device)
{
    udev_device* hid = udev_device_get_parent_with_subsystem_devtype(device, "hid", nullptr);
    if (!hid)
        return false;
    const char* hidId = udev_device_get_property_value(hid, "HID_ID");  // "0003:00000C45:00008075"
    if (!hidId || QString::fromLatin1(hidId).section(':', 1, 1).toInt(nullptr, 16) != OrvaneUsb::kVendorId)
        return false;
    std::ifstream file(std::filesystem::path(udev_device_get_syspath(hid)) / "report_descriptor", std::ios::binary);
    const std::vector<uint8_t> descriptor{std::istreambuf_iterator<char>(file), {}};
    return hidReportSizes(descriptor).maxFeature == 64;
}

bool hasKeyOfThePage(const libevdev* device)
{
    for (int code = 1; code < KEY_CNT; ++code)
        if (libevdev_has_event_code(device, EV_KEY, code) && hidUsageFromEvdev(code))
            return true;
    return false;
}

class EvdevKeySource final : public SystemKeySource {
public:
    ~EvdevKeySource() override
    {
        for (auto& [node, device] : devices_) {
            device.notifier.reset();
            ::close(device.fd);
        }
    }

    bool open(Callbacks callbacks) override;

private:
    struct Device {
        int fd = -1;
        Owned<libevdev> evdev;
        std::unique_ptr<QSocketNotifier> notifier;
    };

    bool add(udev_device* device);
    void remove(const QString& node);
    void read(const QString& node);
    void readMonitor();

    Callbacks callbacks_;
    Owned<udev> udev_;
    Owned<udev_monitor> monitor_;
    std::unique_ptr<QSocketNotifier> monitorNotifier_;
    std::map<QString, Device> devices_;
    bool refused_ = false;  // a keyboard's node could not be opened
};

bool EvdevKeySource::open(Callbacks callbacks)
{
    callbacks_ = std::move(callbacks);
    udev_.reset(udev_new());
    if (!udev_)
        return false;
    monitor_.reset(udev_monitor_new_from_netlink(udev_.get(), "udev"));
    if (monitor_ && udev_monitor_filter_add_match_subsystem_devtype(monitor_.get(), "input", nullptr) == 0
        && udev_monitor_enable_receiving(monitor_.get()) == 0) {
        monitorNotifier_ = std::make_unique<QSocketNotifier>(udev_monitor_get_fd(monitor_.get()), QSocketNotifier::Read);
        QObject::connect(monitorNotifier_.get(), &QSocketNotifier::activated, [this] { readMonitor(); });
    }
    Owned<udev_enumerate> enumerate(udev_enumerate_new(udev_.get()));
    udev_enumerate_add_match_subsystem(enumerate.get(), "input");
    udev_enumerate_scan_devices(enumerate.get());
    udev_list_entry* entry = nullptr;
    udev_list_entry_foreach(entry, udev_enumerate_get_list_entry(enumerate.get()))
    {
        Owned<udev_device> device(udev_device_new_from_syspath(udev_.get(), udev_list_entry_get_name(entry)));
        if (device)
            add(device.get());
    }
    return !devices_.empty() || !refused_;
}

bool EvdevKeySource::add(udev_device* device)
{
    const char* devnode = udev_device_get_devnode(device);
    const char* sysname = udev_device_get_sysname(device);
    if (!devnode || !sysname || std::strncmp(sysname, "event", 5) != 0 || !hasKeys(device))
        return false;
    const QString node = QString::fromLocal8Bit(devnode);
    if (devices_.count(node) || isKeyboardConfigurationInterface(device))
        return false;
    const int fd = ::open(devnode, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        refused_ = refused_ || errno == EACCES || errno == EPERM;
        return false;
    }
    libevdev* evdev = nullptr;
    if (libevdev_new_from_fd(fd, &evdev) != 0 || !hasKeyOfThePage(evdev)) {
        libevdev_free(evdev);
        ::close(fd);
        return false;
    }
    Device& added = devices_[node];
    added.fd = fd;
    added.evdev.reset(evdev);
    added.notifier = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
    QObject::connect(added.notifier.get(), &QSocketNotifier::activated, [this, node] { read(node); });
    callbacks_.added(node);
    return true;
}

void EvdevKeySource::remove(const QString& node)
{
    const auto it = devices_.find(node);
    if (it == devices_.end())
        return;
    // Called from the node's own notifier: it goes once its signal is done.
    it->second.notifier->setEnabled(false);
    it->second.notifier.release()->deleteLater();
    ::close(it->second.fd);
    devices_.erase(it);
    callbacks_.removed(node);
}

void EvdevKeySource::read(const QString& node)
{
    libevdev* evdev = devices_.at(node).evdev.get();
    input_event event{};
    unsigned flags = LIBEVDEV_READ_FLAG_NORMAL;
    for (;;) {
        const int status = libevdev_next_event(evdev, flags, &event);
        if (status == -EAGAIN && flags == LIBEVDEV_READ_FLAG_SYNC) {
            flags = LIBEVDEV_READ_FLAG_NORMAL;  // caught up after dropped events
            continue;
        }
        if (status == -EAGAIN)
            return;
        if (status < 0) {  // unplugged: the node is gone
            remove(node);
            return;
        }
        if (status == LIBEVDEV_READ_STATUS_SYNC)
            flags = LIBEVDEV_READ_FLAG_SYNC;
        if (event.type == EV_KEY)
            callbacks_.value(hidUsageFromEvdev(event.code).value_or(0), event.value);
    }
}

void EvdevKeySource::readMonitor()
{
    Owned<udev_device> device(udev_monitor_receive_device(monitor_.get()));
    if (!device)
        return;
    const char* action = udev_device_get_action(device.get());
    const char* devnode = udev_device_get_devnode(device.get());
    if (!action || !devnode)
        return;
    if (std::strcmp(action, "remove") == 0)
        remove(QString::fromLocal8Bit(devnode));
    else  // "add", or "change" when the node's access may have changed
        add(device.get());
}

}  // namespace

std::unique_ptr<SystemKeySource> createPlatformKeySource() { return std::make_unique<EvdevKeySource>(); }

InputDeviceAccess inputDeviceAccess() { return inputDeviceAccessIn("/dev/input"); }

InputDeviceAccess inputDeviceAccessIn(const std::filesystem::path& folder)
{
    // Readable when every event node is: that is what membership of the
    // nodes' group gives, and any keyboard may be among the others.
    namespace fs = std::filesystem;
    std::error_code ec;
    InputDeviceAccess access;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, ec)) {
        if (entry.path().filename().string().rfind("event", 0) != 0)
            continue;
        if (access.state == InputDeviceAccess::State::NoDevices)
            access.state = InputDeviceAccess::State::Readable;
        // The effective user's rights: what an open by this process would get.
        if (::faccessat(AT_FDCWD, entry.path().c_str(), R_OK, AT_EACCESS) == 0)
            continue;
        access.state = InputDeviceAccess::State::NotPermitted;
        if (const auto own = readOwnership(entry.path()); own && access.group.isEmpty())
            access.group = QString::fromStdString(groupName(own->gid));
    }
    return access;
}
