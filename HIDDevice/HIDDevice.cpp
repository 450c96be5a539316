#include "HIDDevice/HIDDevice.h"

#include <QVariantMap>

int hidIntProperty(const HidDeviceHandle& handle, const QString& key)
{
    const QVariant v = handle.property(key);
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

HIDDevice::HIDDevice(std::shared_ptr<HidDeviceHandle> handle) : device(std::move(handle))
{
    if (!device)
        return;
    id = hidIntProperty(*device, QStringLiteral("LocationID"));
    vendorId = hidIntProperty(*device, QStringLiteral("VendorID"));
    productId = hidIntProperty(*device, QStringLiteral("ProductID"));
    reportSize = hidIntProperty(*device, QStringLiteral("MaxInputReportSize"));
    featureSize = hidIntProperty(*device, QStringLiteral("MaxFeatureReportSize"));
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
    if (entry.typeId() != qMetaTypeId<HIDDevice>())
        return false;
    out = entry.value<HIDDevice>();
    return true;
}
