// The local settings and the device database of the session.
#include "View/MainController.h"

#include "Common/Globals.h"
#include "Language/LanguageTag.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/LocalSQLite.h"

namespace {
const QString kOwner = QString::fromLatin1(kLocalOwner);
}

void MainController::initLocalData()
{
    if (localDBfile.isEmpty()) {
        localDBfile = QString::fromLatin1(kLocalDatabaseFile);
        localDB = std::make_unique<LocalSQLite>(localDBfile);
    }
    QString language = localDB->getLocalData(kOwner, QStringLiteral("language"));
    if (language.isEmpty()) {
        language = systemLanguageTag();
        localDB->writeLocalData(kOwner, QStringLiteral("language"), language);
    }
    G_Language = languageIdForTag(language);
}

void MainController::initSQLite()
{
    {
        std::lock_guard lock(sessionMutex_);
        // The keyboard of the session may have gone since ConnectDevice took
        // its snapshot; the next refreshUI sets up the one announced now.
        if (!kbHIDdevice_ || !session_ || !kbHIDdevice_->isSameDevice(session_->device))
            return;
        deviceComm_ = std::make_shared<DeviceComm>(session_->device.device, environment_.transportSleeper);
    }
    deviceDBfile = deviceDatabaseFileName(session_->deviceType);

    const QString stored = localDB ? localDB->getLocalData(kOwner, QStringLiteral("version")) : QString();
    const VersionCheck version = checkDeviceDatabaseVersion(stored);
    if (localDB && version.action == VersionAction::Write)
        localDB->writeLocalData(kOwner, QStringLiteral("version"), QString::fromLatin1(kDeviceDatabaseVersion));
    else if (localDB && version.action == VersionAction::Update)
        localDB->updateLocalData(kOwner, QStringLiteral("version"), QString::fromLatin1(kDeviceDatabaseVersion));

    // The old connection closes first: a reset deletes the file it holds.
    deviceDB.reset();
    deviceDB = std::make_unique<DeviceSQLite>(deviceDBfile, version.reset);
}
