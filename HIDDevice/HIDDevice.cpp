#include "HIDDevice/HIDDevice.h"

#include <QVariantMap>

namespace {
int intProperty(const HidDeviceHandle& handle, const char* key)
{
    const QVariant v = handle.property(QString::fromLatin1(key));
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
        return static_cast<int>(v.toLongLong());
    default:
        return 0;
    }
}
}  // namespace

HIDDevice::HIDDevice(std::shared_ptr<HidDeviceHandle> handle) : device(std::move(handle))
{
    if (!device)
        return;
    id = intProperty(*device, "LocationID");
    vendorId = intProperty(*device, "VendorID");
    productId = intProperty(*device, "ProductID");
    reportSize = intProperty(*device, "MaxInputReportSize");
    featureSize = intProperty(*device, "MaxFeatureReportSize");
    const QVariant product = device->property(QStringLiteral("Product"));
    if (product.typeId() == QMetaType::QString)
        name = product.toString();
}

bool isConfigurationInterface(const HIDDevice& device)
{
    return device.vendorId == OrvaneUsb::kVendorId
        && (device.productId == OrvaneUsb::kProductIdSecondary || device.productId == OrvaneUsb::kProductIdPrimary)
        && device.featureSize == OrvaneUsb::kConfigFeatureSize;
}

QVariant makeDeviceNotificationObject(const HIDDevice& device)
{
    QVariantMap map;
    map.insert(HIDNotification::DeviceKey, QVariant::fromValue(device));
    return map;
}

bool deviceFromNotificationObject(const QVariant& object, HIDDevice& out)
{
    if (object.typeId() != QMetaType::QVariantMap)
        return false;
    const QVariant entry = object.toMap().value(HIDNotification::DeviceKey);
    if (!entry.canConvert<HIDDevice>() || entry.typeId() != qMetaTypeId<HIDDevice>())
        return false;
    out = entry.value<HIDDevice>();
    return true;
}
