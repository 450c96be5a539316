// The settings rows of the device database ("t_configdata"): one value per
// key and profile, all text.

#include "SQLite/DeviceSQLite.h"

#include <SQLiteCpp/Statement.h>

void DeviceSQLite::setConfigValue(int profile, const std::string& key, const std::string& value)
{
    SQLite::Statement update(*db, R"(UPDATE "t_configdata" SET "value" = ? WHERE "profId" = ? AND "key" = ?)");
    update.bind(1, value);
    update.bind(2, profile);
    update.bind(3, key);
    update.exec();
}

QString DeviceSQLite::getConfigData(int profile, const QString& keyValue) const
{
    if (!db)
        return {};
    try {
        SQLite::Statement query(*db, R"(SELECT "value" FROM "t_configdata" WHERE "profId" = ? AND "key" = ?)");
        query.bind(1, profile);
        query.bind(2, keyValue.toStdString());
        if (query.executeStep())
            return QString::fromStdString(query.getColumn(0).getString());
    } catch (const std::exception& e) {
        failed(e);
    }
    return {};
}

bool DeviceSQLite::updateConfigData(int profile, const QString& keyValue, const QString& newvalue)
{
    if (!db)
        return true;
    try {
        setConfigValue(profile, keyValue.toStdString(), newvalue.toStdString());
        return true;
    } catch (const std::exception& e) {
        failed(e);
        return false;
    }
}
