#include "SQLite/StoreResult.h"

#include <QFileInfo>

namespace {

QString fixForFolder(const QString& folder)
{
    return QStringLiteral("To fix it, give yourself write access to the folder and start the app again:\n"
                          "  sudo chown -R \"$USER\" '%1' && chmod -R u+w '%1'")
        .arg(folder);
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
            return QStringLiteral("%1 could not be read because the file was damaged. The damaged file was kept as "
                                  "%2, and a new one with the defaults is in use.")
                .arg(what, health.movedAside);
        return QStringLiteral("%1 were in a file made for another version of the app, so a new file was made. "
                              "The old file was kept as %2.")
            .arg(what, health.movedAside);
    }
    switch (status.result) {
    case StoreResult::Ok:
    case StoreResult::Missing:
        return {};
    case StoreResult::Busy:
        return QStringLiteral("%1 are in use by another program, perhaps another copy of Orvane Keyboard Studio "
                              "(%2), so they are left as they are for now. Close the other program and start the "
                              "app again.")
            .arg(what, health.file);
    case StoreResult::ReadOnly:
        return QStringLiteral("%1 cannot be saved: Orvane Keyboard Studio may not write in %2, so changes you make "
                              "now are not kept. ")
                   .arg(what, folder)
            + fixForFolder(folder);
    case StoreResult::MoveFailed:
        return QStringLiteral("%1 cannot be used: the file %2 had to make room for a new one but could not be "
                              "moved aside (%3). Nothing was deleted. ")
                   .arg(what, health.file, reason)
            + fixForFolder(folder);
    case StoreResult::Damaged:
    case StoreResult::Failed:
        break;
    }
    return QStringLiteral("%1 could not be opened (%2): %3. Check the disk and start the app again.")
        .arg(what, health.file, reason);
}
