// The settings rows of the device database ("t_configdata"): one value per
// key and profile, all text.

#include "SQLite/DeviceSQLite.h"
#include "SQLite/StoreSupport.h"

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
    return readConfigData(profile, keyValue).value;
}

StoreRead DeviceSQLite::readConfigData(int profile, const QString& keyValue) const
{
    if (!db)
        return {health.opening.result, {}, health.opening.reason};
    try {
        SQLite::Statement query(*db, R"(SELECT "value" FROM "t_configdata" WHERE "profId" = ? AND "key" = ?)");
        query.bind(1, profile);
        query.bind(2, keyValue.toStdString());
        StoreSupport::reachStep("device.read.config");
        const bool found = query.executeStep();
        StoreSupport::noteSuccess(*db);
        if (found)
            return {StoreResult::Ok, QString::fromStdString(query.getColumn(0).getString()), {}};
        return {};
    } catch (const std::exception& e) {
        failed(e);
        return {health.lastFailure.result, {}, health.lastFailure.reason};
    }
}

bool DeviceSQLite::updateConfigData(int profile, const QString& keyValue, const QString& newvalue)
{
    if (!db)
        return true;
    try {
        setConfigValue(profile, keyValue.toStdString(), newvalue.toStdString());
        StoreSupport::noteSuccess(*db);
        return true;
    } catch (const std::exception& e) {
        failed(e);
        return false;
    }
}
