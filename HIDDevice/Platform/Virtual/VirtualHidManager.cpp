#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"

#include "HIDDevice/HIDDevice.h"

#include <QMetaObject>

VirtualHidManager::VirtualHidManager(std::shared_ptr<VirtualBus> bus) : bus_(std::move(bus)) {}

VirtualHidManager::~VirtualHidManager()
{
    if (listener_)
        bus_->removeListener(listener_);
}

void VirtualHidManager::setDeviceMatching(std::vector<HidMatch> matches) { matches_ = std::move(matches); }
void VirtualHidManager::registerDeviceMatchingCallback(DeviceCallback callback) { onMatch_ = std::move(callback); }
void VirtualHidManager::registerDeviceRemovalCallback(DeviceCallback callback) { onRemove_ = std::move(callback); }

bool VirtualHidManager::matches(const HidDeviceHandle& iface) const
{
    const int vid = hidIntProperty(iface, QStringLiteral("VendorID"));
    const int pid = hidIntProperty(iface, QStringLiteral("ProductID"));
    for (const HidMatch& m : matches_)
        if (m.vendorId == vid && m.productId == pid)
            return true;
    return false;
}

void VirtualHidManager::deliver(const std::shared_ptr<HidDeviceHandle>& iface, bool arrived)
{
    if (!matches(*iface))
        return;
    const DeviceCallback& cb = arrived ? onMatch_ : onRemove_;
    if (cb)
        cb(iface);
}

bool VirtualHidManager::open()
{
    if (listener_)
        return true;
    context_ = std::make_unique<QObject>();
    QPointer<QObject> ctx = context_.get();
    // Queued even for interfaces already present, so that they are reported
    // once the thread's event loop runs, as later arrivals are.
    listener_ = bus_->addListener([this, ctx](const std::shared_ptr<HidDeviceHandle>& iface, bool arrived) {
        if (!ctx)
            return;
        QMetaObject::invokeMethod(
            ctx.data(), [this, iface, arrived] { deliver(iface, arrived); }, Qt::QueuedConnection);
    });
    return true;
}
