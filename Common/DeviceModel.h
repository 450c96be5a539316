#pragma once
// The three keyboard models and their numberings. `g_device_type` counts
// 0 CNC, 1 61-key, 2 68-key; `keyboardType` counts the other way round,
// 0 68-key, 1 61-key, 2 CNC; `keyboardLayout` 1 61-key, 2 CNC, 3 68-key.

#include <QString>

namespace DeviceModel {

inline constexpr int kDeviceTypeCnc = 0;
inline constexpr int kDeviceType61k = 1;
inline constexpr int kDeviceType68k = 2;

// Only the product string decides; anything but the two 61-key names,
// spelt exactly, is the 68-key model.
int deviceTypeForProduct(const QString& product);

// g_device_type -> keyboardType
int keyboardTypeForDeviceType(int deviceType);
// keyboardType -> g_device_type; anything unknown is the 61-key model.
int deviceTypeForKeyboardType(int keyboardType);

}  // namespace DeviceModel
