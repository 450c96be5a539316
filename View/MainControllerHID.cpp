// Connection and loss of the keyboard.
#include "Common/OutputLine.h"
#include "View/MainController.h"

#include "Common/DeviceModel.h"
#include "Common/Globals.h"
#include "Protocol/Command.h"
#include "SQLite/DeviceSQLite.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/MacroController.h"
#include "View/MacroWindowController.h"
#include "View/control/ButtonView.h"

#include <algorithm>

void MainController::announceLocked(const HIDDevice& device)
{
    // The main thread sees the handle only together with the rest, so a
    // queued refreshUI never finds a new keyboard under the old model.
    announcedType_ = DeviceModel::deviceTypeForProduct(device.name);
    g_device_type = announcedType_;
    deviceState = true;
    isSendDevice = true;
    device_name_ = device.name;
    kbHIDdevice_ = device;
}

void MainController::deviceConnected(const QVariant& object)
{
    HIDDevice device;
    if (!deviceFromNotificationObject(object, device))
        return;
    {
        std::lock_guard lock(sessionMutex_);
        if (kbHIDdevice_) {
            // One keyboard at a time: another one waits until this one goes.
            const auto known = [&](const HIDDevice& d) { return d.isSameDevice(device); };
            if (!kbHIDdevice_->isSameDevice(device) && std::none_of(waiting_.begin(), waiting_.end(), known))
                waiting_.push_back(device);
            return;
        }
        announceLocked(device);
    }
    QMetaObject::invokeMethod(this, [this] { refreshUI(); }, Qt::QueuedConnection);
}

void MainController::deviceDisconnected(const QVariant& object)
{
    HIDDevice device;
    if (!deviceFromNotificationObject(object, device))
        return;
    {
        std::lock_guard lock(sessionMutex_);
        std::erase_if(waiting_, [&](const HIDDevice& d) { return d.isSameDevice(device); });
        if (!kbHIDdevice_ || !kbHIDdevice_->isSameDevice(device))
            return;
        kbHIDdevice_.reset();
        deviceState = false;
        isSendDevice = false;
        // Steps still queued for this transport are skipped from now on.
        if (deviceComm_)
            deviceComm_->release();
        deviceComm_.reset();
        if (!waiting_.empty()) {
            announceLocked(waiting_.front());
            waiting_.erase(waiting_.begin());
        }
    }
    QMetaObject::invokeMethod(this, [this] { refreshUI(); }, Qt::QueuedConnection);
}

void MainController::refreshUI()
{
    // Every connection and disconnection brings the user back to the key page.
    action_func_key();
    if (connectedDevice()) {
        ConnectDevice();
        imgbtn_usb->initControl(QStringLiteral("sys_btn_usb_h"), QStringLiteral("sys_btn_usb_h"));
    } else {
        imgbtn_usb->initControl(QStringLiteral("sys_btn_usb_n"), QStringLiteral("sys_btn_usb_n"));
    }
    setWindowButtonToolTips();
    updateNoKeyboardState();
    updateUserLightNotice();
}

void MainController::ConnectDevice()
{
    if (currentTransport())
        return;
    // Device, name and model are taken once; everything below works from
    // this one snapshot, whatever the monitor thread announces meanwhile.
    session_ = announcement();
    if (!session_)
        return;
    withdrawProblem(kNotAnsweringTopic);  // a fresh connection answers again
    withdrawUnconfirmed();
    setCurrentDevice(session_->deviceType);
    fillFlagAndNormalKeys();
    const QString previousStore = deviceDBfile;
    initSQLite();
    // The macro window works on the database that initSQLite replaced: the
    // same keyboard back goes on with what is being recorded; another
    // model's store is no place for it.
    if (macroWindow) {
        if (deviceDB && deviceDBfile == previousStore)
            macroWindow->controller()->rebind(deviceDB.get(), currentTransport());
        else
            macroWindow->closeWithoutAsking();
    }
    loadUserlightData();
    if (!currentTransport() || !deviceDB)
        return;
    loadMacroData();
    switchToStoredProfile();
    // After the profile's light and settings: whatever an earlier session
    // left half-sent goes out again whole.
    sendUnfinishedUploads();
}

void MainController::switchToStoredProfile()
{
    // The stored profile wins at connection; the poll follows the keyboard
    // afterwards. A seeded database always holds a number here. A read that
    // failed is no reason to send profile 1's settings, nor to store 1 over
    // the number the user left.
    const StoreRead read = deviceDB->readConfigData(1, QStringLiteral("currentProfile"));
    if (read.failed())
        return settingsUnread(read);
    bool ok = false;
    const int stored = read.value.toInt(&ok);
    if (!ok || stored < Protocol::kFirstProfile || stored > Protocol::kLastProfile) {
        OutputLine::print("currentProfile unreadable, using profile 1");
        swicthProfile(Protocol::kFirstProfile);
        return;
    }
    swicthProfile(stored);
}
