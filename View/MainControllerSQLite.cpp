// The local settings and the device database of the session.
#include "View/MainController.h"

#include "Common/DeviceModel.h"
#include "Common/Globals.h"

void MainController::initLocalData() {}

void MainController::initSQLite()
{
    {
        std::lock_guard lock(sessionMutex_);
        // The keyboard may have gone between the announcement and now.
        if (!kbHIDdevice_)
            return;
        deviceComm_ = std::make_shared<DeviceComm>(kbHIDdevice_->device, environment_.transportSleeper);
    }
    deviceDBfile = DeviceModel::deviceDatabaseFile(g_device_type);
}
