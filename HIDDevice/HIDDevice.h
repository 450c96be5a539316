#pragma once
// One discovered HID interface, and the vendor/product pairs to look for.
// Plain values: a copy shares the platform handle.

#include "HIDDevice/Platform/HidDeviceHandle.h"

#include <QMetaType>
#include <QString>

#include <memory>

struct HIDMonitorData {
    int vendorId = 0;
    int productId = 0;
};

struct HIDDevice {
    int id = 0;           // "LocationID"
    int vendorId = 0;     // "VendorID"
    int productId = 0;    // "ProductID"
    int reportSize = 0;   // "MaxInputReportSize"
    int featureSize = 0;  // "MaxFeatureReportSize"
    std::shared_ptr<HidDeviceHandle> device;
    QString name;         // "Product"

    HIDDevice() = default;
    // Reads the properties from the handle; a missing or mistyped one gives 0 or "".
    explicit HIDDevice(std::shared_ptr<HidDeviceHandle> handle);

    bool isSameDevice(const HIDDevice& other) const { return device && device == other.device; }
};
Q_DECLARE_METATYPE(HIDDevice)

// The notification names of discovery. Only the first two are posted.
namespace HIDNotification {
inline const QString Connected = QStringLiteral("HIDDeviceConnected");
inline const QString Disconnected = QStringLiteral("HIDDeviceDisconnected");
inline const QString DataReceived = QStringLiteral("HIDDeviceDataReceived");
inline const QString WirelessConnected = QStringLiteral("HIDWirelessConnected");
inline const QString WirelessDisconnected = QStringLiteral("HIDWirelessDisconnected");
// Key of the device in the notification's dictionary.
inline const QString DeviceKey = QStringLiteral("device");
}  // namespace HIDNotification

// The keyboards this application configures.
namespace OrvaneUsb {
inline constexpr int kVendorId = 3141;          // 0x0C45
inline constexpr int kProductIdPrimary = 32885; // 0x8075
inline constexpr int kProductIdSecondary = 32774; // 0x8006
inline constexpr int kConfigFeatureSize = 64;
}  // namespace OrvaneUsb

// An integer property, 0 when it is missing or not a number.
int hidIntProperty(const HidDeviceHandle& handle, const QString& key);

// True for the keyboard's configuration interface: our ids and a 64-byte
// feature report.
bool isConfigurationInterface(const HIDDevice& device);

// The notification object: {"device": HIDDevice}. Returns false when the
// object has no such entry.
QVariant makeDeviceNotificationObject(const HIDDevice& device);
bool deviceFromNotificationObject(const QVariant& object, HIDDevice& out);
