#include "SQLite/LightSQLite.h"

#include "SQLite/RecordStatements.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

using RecordStatements::guarded;

namespace {
void insertHeader(SQLite::Database& db, const QString& name, const QString& value1, const QString& value2)
{
    SQLite::Statement insert(db, R"(INSERT INTO "t_lightdata" ("light_name", "value1", "value2") VALUES (?, ?, ?))");
    insert.bind(1, name.toStdString());
    insert.bind(2, value1.toStdString());
    insert.bind(3, value2.toStdString());
    insert.exec();
}

void insertLed(SQLite::Database& db, const LEDData& data)
{
    SQLite::Statement insert(db, R"(INSERT INTO "t_lightleddata" ("keyvalue", "rgbvalue") VALUES (?, ?))");
    insert.bind(1, data.keyvalue);
    insert.bind(2, data.rgbvalue);
    insert.exec();
}
}  // namespace

LightSQLite::LightSQLite(const QString& dbPath, ExchangeAccess access)
{
    db = ExchangeFile::open(dbPath, access, failure);
    if (db && access == ExchangeAccess::Export)
        createTable();
}

void LightSQLite::createTable()
{
    if (!db)
        return;
    ExchangeFile::createTables(
        *db,
        {R"(CREATE TABLE IF NOT EXISTS "t_lightdata" ("light_name" TEXT NOT NULL, "value1" TEXT NOT NULL, )"
         R"("value2" TEXT NOT NULL))",
         R"(CREATE TABLE IF NOT EXISTS "t_lightleddata" ("ledId" INTEGER PRIMARY KEY NOT NULL, )"
         R"("keyvalue" INTEGER NOT NULL, "rgbvalue" INTEGER NOT NULL))"},
        failure);
}

void LightSQLite::addLightData(const QString& name, const QString& value1, const QString& value2)
{
    guarded(db, "LightSQLite::addLightData", false, [&](SQLite::Database& connection) {
        insertHeader(connection, name, value1, value2);
        return true;
    });
}

void LightSQLite::readLightData(QString& name, QString& value1, QString& value2) const
{
    guarded(db, "LightSQLite::readLightData", false, [&](SQLite::Database& connection) {
        SQLite::Statement query(connection, R"(SELECT "light_name", "value1", "value2" FROM "t_lightdata")");
        if (!query.executeStep())
            return false;
        name = QString::fromStdString(query.getColumn(0).getString());
        value1 = QString::fromStdString(query.getColumn(1).getString());
        value2 = QString::fromStdString(query.getColumn(2).getString());
        return true;
    });
}

void LightSQLite::addLightLedData(const LEDData& data)
{
    guarded(db, "LightSQLite::addLightLedData", false, [&](SQLite::Database& connection) {
        insertLed(connection, data);
        return true;
    });
}

int LightSQLite::getlightLedData(std::vector<LEDData>& dataArray) const
{
    return guarded(db, "LightSQLite::getlightLedData", 0, [&](SQLite::Database& connection) {
        SQLite::Statement query(connection, R"(SELECT "ledId", "keyvalue", "rgbvalue" FROM "t_lightleddata")");
        std::vector<LEDData> rows;
        while (query.executeStep())
            rows.push_back({query.getColumn(0).getInt(), query.getColumn(1).getInt(), query.getColumn(2).getInt()});
        dataArray.insert(dataArray.end(), rows.begin(), rows.end());
        return static_cast<int>(dataArray.size());
    });
}

bool LightSQLite::addLightMode(const QString& name, const std::vector<LEDData>& leds)
{
    if (!db)
        return false;
    try {
        SQLite::Transaction transaction(*db);
        insertHeader(*db, name, QStringLiteral("666"), QStringLiteral("888"));
        for (const LEDData& led : leds)
            insertLed(*db, led);
        transaction.commit();
        return true;
    } catch (const std::exception& e) {
        failure = e.what();
        RecordStatements::logFailure("LightSQLite::addLightMode", e);
        return false;
    }
}
