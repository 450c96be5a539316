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
            return QStringLiteral("The file with %1 was damaged and could not be read. It was moved aside to %2, "
                                  "and %1 start again from the defaults in a new file.")
                .arg(what, health.movedAside);
        return QStringLiteral("The file with %1 was written by an older version and was replaced by a new one. "
                              "The old file was kept as %2.")
            .arg(what, health.movedAside);
    }
    switch (status.result) {
    case StoreResult::Ok:
    case StoreResult::Missing:
        return {};
    case StoreResult::Busy:
        return QStringLiteral("The file with %1 (%2) is in use by another program, perhaps another copy of "
                              "Orvane Keyboard Studio, so it is left as it is for now. Close the other program "
                              "and start the app again.")
            .arg(what, health.file);
    case StoreResult::ReadOnly:
        return QStringLiteral("Orvane Keyboard Studio may not write %1 in %2, so changes you make now are not kept. ")
                   .arg(what, folder)
            + fixForFolder(folder);
    case StoreResult::MoveFailed:
        return QStringLiteral("The file with %1 (%2) had to make room for a new one but could not be moved aside "
                              "(%3). Nothing was deleted, and %1 are not used until this is fixed. ")
                   .arg(what, health.file, reason)
            + fixForFolder(folder);
    case StoreResult::Damaged:
    case StoreResult::Failed:
        break;
    }
    return QStringLiteral("The file with %1 (%2) could not be opened: %3. Check the disk and start the app again.")
        .arg(what, health.file, reason);
}
