#include "Common/DeviceModel.h"

int DeviceModel::deviceTypeForProduct(const QString& product)
{
    if (product == QLatin1String("ORVANE M61") || product == QLatin1String("ORVANE W61"))
        return kDeviceType61k;
    return kDeviceType68k;
}

int DeviceModel::keyboardTypeForDeviceType(int deviceType)
{
    switch (deviceType) {
    case kDeviceTypeCnc: return 2;
    case kDeviceType61k: return 1;
    default: return 0;
    }
}

int DeviceModel::deviceTypeForKeyboardType(int keyboardType)
{
    switch (keyboardType) {
    case 0: return kDeviceType68k;
    case 2: return kDeviceTypeCnc;
    default: return kDeviceType61k;
    }
}
