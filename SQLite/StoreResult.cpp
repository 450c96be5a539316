#include "SQLite/StoreResult.h"

#include "Language/AppText.h"

#include <QFileInfo>

namespace {

QString fixForFolder(const QString& folder)
{
    return appText(AppText::StoreFixFolder)
        + QStringLiteral("  sudo chown -R \"$USER\" '%1' && chmod -R u+w '%1'").arg(folder);
}

}  // namespace

QString storeProblemMessage(const StoreHealth& health, const QString& what)
{
    const QString folder = QFileInfo(health.file).absolutePath();
    // After a good opening, the latest failure tells what went wrong since.
    const StoreStatus& status = health.opening.ok() ? health.lastFailure : health.opening;
    const QString reason = QString::fromStdString(status.reason);
    if (!health.movedAside.isEmpty() && health.opening.ok()) {
        if (health.movedBecauseDamaged)
            return appText(AppText::StoreMovedAsideDamaged).arg(what, health.movedAside);
        return appText(AppText::StoreMovedAsideVersion).arg(what, health.movedAside);
    }
    switch (status.result) {
    case StoreResult::Ok:
    case StoreResult::Missing:
        return {};
    case StoreResult::Busy:
        if (!health.holder.isEmpty())
            return appText(AppText::StoreBusyHeld).arg(what, health.holder, health.file);
        return appText(AppText::StoreBusy).arg(what, health.file);
    case StoreResult::DiskFull:
        return appText(AppText::StoreDiskFull).arg(what, folder);
    case StoreResult::NotAFolder:
        return appText(AppText::StoreNotAFolder).arg(what, folder);
    case StoreResult::PathTooLong:
        return appText(AppText::StorePathTooLong).arg(what, folder);
    case StoreResult::ReadOnly:
        return appText(AppText::StoreReadOnly).arg(what, folder) + fixForFolder(folder);
    case StoreResult::MoveFailed:
        return appText(AppText::StoreMoveFailed).arg(what, health.file, reason) + fixForFolder(folder);
    case StoreResult::Damaged:
    case StoreResult::Failed:
        if (health.opening.ok())
            return appText(AppText::StoreOperationFailed).arg(what, reason);
        break;
    }
    return appText(AppText::StoreOpenFailed).arg(what, health.file, reason);
}

void StoreHealth::noteFailure(const std::exception& error)
{
    lastFailure = storeStatusOf(error);
    lockHeld = lastFailure.result == StoreResult::Busy;
    if (lockHeld)
        holder = lockHolder(file);
    if (onFailure)
        onFailure(lastFailure);
}
