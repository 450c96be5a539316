#include "Common/DataPaths.h"

#include <QDir>
#include <QStandardPaths>

#include <mutex>

namespace {
std::mutex g_mutex;
QString g_override;
}  // namespace

void DataPaths::setDataFolderOverride(const QString& folder)
{
    std::lock_guard lock(g_mutex);
    g_override = folder;
}

QString DataPaths::dataFolder()
{
    {
        std::lock_guard lock(g_mutex);
        if (!g_override.isEmpty())
            return QDir(g_override).absolutePath();
    }
    const QString fromEnv = qEnvironmentVariable("ORVANE_DATA_DIR");
    if (!fromEnv.isEmpty())
        return QDir(fromEnv).absolutePath();
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/" + kApplicationId;
}

QString DataPaths::databaseFolder()
{
    return dataFolder() + "/db/";
}
