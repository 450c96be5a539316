// The local settings and the device database of the session.
#include "View/MainController.h"

#include "Common/Globals.h"
#include "Common/OutputLine.h"
#include "Language/AppText.h"
#include "Language/LanguageTag.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/LocalSQLite.h"

namespace {

const QString kOwner = QString::fromLatin1(kLocalOwner);

QString localContents()
{
    return appText(AppText::StoreLocalContents);
}

QString deviceContents()
{
    return appText(AppText::StoreDeviceContents);
}

// The version rule runs only on a local store that opened and read without
// error: a locked or damaged one is no proof that the version is missing,
// and the device file is then used as it is. A store made anew after damage
// takes the current version, so the next start does not rebuild either.
VersionCheck versionRule(const LocalSQLite* local)
{
    if (!local)
        return {};
    if (local->isClean())
        return checkDeviceDatabaseVersion(local->readLocalData(kOwner, QStringLiteral("version")));
    if (local->health.movedBecauseDamaged && local->db && local->health.opening.ok()
        && local->health.lastFailure.ok())
        return {false, VersionAction::Write};
    return {};
}

}  // namespace

void MainController::reportStoreProblem(const StoreHealth& health, const QString& contents)
{
    const QString message = storeProblemMessage(health, contents);
    if (message.isEmpty())
        return;
    qCWarning(lcOrvane).noquote() << message;
    const StoreResult result = health.opening.ok() ? health.lastFailure.result : health.opening.result;
    // Asked again at a language switch; `contents` is one of the two texts below.
    const bool local = contents == localContents();
    StoreHealth seen = health;
    seen.onFailure = {};
    showProblem([seen, local] { return storeProblemMessage(seen, local ? localContents() : deviceContents()); },
                health.file + ':' + QString::number(int(result)));
}

void MainController::settingsUnread(const StoreRead& read)
{
    // Under the store watch's own topic: its "could not be saved" would be
    // wrong beside this one.
    const QString reason = QString::fromStdString(read.reason);
    showProblem([reason] { return appText(AppText::SettingsReadFailed).arg(reason); },
                (deviceDB ? deviceDB->health.file : QString()) + ':' + QString::number(int(read.result)));
}

// Every failed operation of the store is said, once per file and reason.
// Said after the action that failed has ended, from a snapshot: the store
// may be replaced by then. The control of a write that failed goes back by
// itself (see chooseLightMode, lockGameModeKey).
void MainController::watchStore(StoreHealth& health, bool local)
{
    health.onFailure = [this, &health, local](const StoreStatus&) {
        StoreHealth seen = health;
        seen.onFailure = {};
        seen.movedAside.clear();  // said when the store opened
        QMetaObject::invokeMethod(
            this, [this, seen, local] { storeOperationFailed(seen, local); }, Qt::QueuedConnection);
    };
}

void MainController::storeOperationFailed(const StoreHealth& seen, bool local)
{
    reportStoreProblem(seen, local ? localContents() : deviceContents());
}

void MainController::initLocalData()
{
    if (localDBfile.isEmpty()) {
        localDBfile = QString::fromLatin1(kLocalDatabaseFile);
        localDB = std::make_unique<LocalSQLite>(localDBfile);
        reportStoreProblem(localDB->health, localContents());
        watchStore(localDB->health, true);
    }
    // A store another program holds is not asked again: each wait costs
    // seconds, and the system's language serves as well.
    StoreRead language{localDB->health.opening.result};
    if (language.result != StoreResult::Busy)
        language = localDB->readLocalData(kOwner, QStringLiteral("language"));
    if (language.value.isEmpty()) {
        language.value = systemLanguageTag();
        // An empty row is set in place: a second row would stand behind it.
        if (language.result == StoreResult::Ok)
            localDB->updateLocalData(kOwner, QStringLiteral("language"), language.value);
        else if (language.result == StoreResult::Missing)
            localDB->writeLocalData(kOwner, QStringLiteral("language"), language.value);
    }
    G_Language = languageIdForTag(language.value);
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
    const VersionCheck version = versionRule(localDB.get());

    // The old connection closes first: a rebuild moves aside the file it holds.
    deviceDB.reset();
    deviceDB = std::make_unique<DeviceSQLite>(deviceDBfile, version.reset);
    reportStoreProblem(deviceDB->health, deviceContents());
    watchStore(deviceDB->health, false);
    loadAppRules();

    // Recorded only after a good rebuild, so a failed one is tried again at
    // the next connection.
    if (!deviceDB->isReady() || version.action == VersionAction::None)
        return;
    const QString current = QString::fromLatin1(kDeviceDatabaseVersion);
    if (version.action == VersionAction::Write)
        localDB->writeLocalData(kOwner, QStringLiteral("version"), current);
    else
        localDB->updateLocalData(kOwner, QStringLiteral("version"), current);
    reportStoreProblem(localDB->health, localContents());
}
