// The user light modes of the device database ("t_userlightdata") and their
// per-key colours ("t_keyrgbdata"). The only link between a mode and its
// colours is the value of "lightId": deleting a mode keeps its colours, and
// a mode added later under the same id finds them.

#include "SQLite/DeviceSQLite.h"

#include "SQLite/RecordStatements.h"
#include "SQLite/StoreSupport.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <string>

using RecordStatements::guarded;
using RecordStatements::guardedWrite;
using RecordStatements::replaceKeyRGB;

bool DeviceSQLite::queryUserLightList(std::vector<userLightData>& dataArray) const
{
    return guarded(db, "queryUserLightList", false, [&](SQLite::Database& connection) {
        SQLite::Statement query(connection, R"(SELECT "userlightId", "lightName", "speed", "brightness"
                                               FROM "t_userlightdata" ORDER BY "userlightId")");
        // Collected apart: a failure half way leaves the caller's list whole.
        std::vector<userLightData> rows;
        while (query.executeStep())
            rows.push_back({query.getColumn(0).getInt64(), QString::fromStdString(query.getColumn(1).getString()),
                            query.getColumn(2).getInt(), query.getColumn(3).getInt()});
        dataArray.insert(dataArray.end(), rows.begin(), rows.end());
        return true;
    });
}

int64_t DeviceSQLite::addUserLight(const QString& name)
{
    return guarded(db, "addUserLight", int64_t{0}, [&](SQLite::Database& connection) {
        return RecordStatements::insertUserLight(connection, name);
    });
}

bool DeviceSQLite::deleteUserLight(int64_t userLight)
{
    return guardedWrite(db, "deleteUserLight", [&](SQLite::Database& connection) {
        SQLite::Statement remove(connection, R"(DELETE FROM "t_userlightdata" WHERE "userlightId" = ?)");
        remove.bind(1, userLight);
        remove.exec();
    });
}

bool DeviceSQLite::deleteUserLightWithColours(int64_t userLight)
{
    return guarded(db, "deleteUserLightWithColours", false, [&](SQLite::Database& connection) {
        SQLite::Transaction transaction(connection);
        for (const char* sql : {R"(DELETE FROM "t_keyrgbdata" WHERE "lightId" = ?)",
                                R"(DELETE FROM "t_userlightdata" WHERE "userlightId" = ?)"}) {
            SQLite::Statement remove(connection, sql);
            remove.bind(1, userLight);
            remove.exec();
        }
        transaction.commit();
        return true;
    });
}

bool DeviceSQLite::modifyUserLightName(int64_t userLight, const QString& name)
{
    return guardedWrite(db, "modifyUserLightName", [&](SQLite::Database& connection) {
        SQLite::Statement update(connection, R"(UPDATE "t_userlightdata" SET "lightName" = ? WHERE "userlightId" = ?)");
        update.bind(1, name.toStdString());
        update.bind(2, userLight);
        update.exec();
    });
}

bool DeviceSQLite::queryKeyRGB(int profile, int64_t lightid, std::vector<RGBData>& dataArray) const
{
    return guarded(db, "queryKeyRGB", false, [&](SQLite::Database& connection) {
        SQLite::Statement query(connection, R"(SELECT "rgbId", "lightId", "profId", "keyvalue", "rgbvalue"
                                               FROM "t_keyrgbdata" WHERE "profId" = ? AND "lightId" = ?
                                               ORDER BY "rgbId")");
        query.bind(1, profile);
        query.bind(2, lightid);
        std::vector<RGBData> rows;
        while (query.executeStep())
            rows.push_back({query.getColumn(0).getInt64(), query.getColumn(1).getInt64(), query.getColumn(2).getInt(),
                            query.getColumn(3).getInt(), query.getColumn(4).getInt()});
        dataArray.insert(dataArray.end(), rows.begin(), rows.end());
        return true;
    });
}

void DeviceSQLite::insertKeyRGB(const RGBData& data)
{
    if (data.keyvalue == 0)
        return;
    guarded(db, "insertKeyRGB", false, [&](SQLite::Database& connection) {
        SQLite::Transaction transaction(connection);
        replaceKeyRGB(connection, data);
        transaction.commit();
        return true;
    });
}

bool DeviceSQLite::insertKeyRGBPass(const std::vector<RGBData>& pass)
{
    return guarded(db, "insertKeyRGBPass", false, [&](SQLite::Database& connection) {
        SQLite::Transaction transaction(connection);
        int done = 0;
        for (const RGBData& data : pass) {
            if (data.keyvalue == 0)
                continue;
            replaceKeyRGB(connection, data);
            StoreSupport::reachStep("light.pass." + std::to_string(++done));
        }
        transaction.commit();
        return true;
    });
}
