// What an import of an exchange file writes into the device database.

#include "SQLite/DeviceSQLite.h"

#include "SQLite/LightSQLite.h"
#include "SQLite/RecordStatements.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

namespace {

// Imported colours are stored as painted ones are, which are always under
// profile 1.
constexpr int kLightProfile = 1;

void replaceKeyColour(SQLite::Database& db, int64_t lightId, const LEDData& led)
{
    if (led.keyvalue == 0)
        return;
    SQLite::Statement remove(db, R"(DELETE FROM "t_keyrgbdata" WHERE "lightId" = ? AND "keyvalue" = ?)");
    remove.bind(1, lightId);
    remove.bind(2, led.keyvalue);
    remove.exec();
    // No row is how a key has no colour.
    if (led.rgbvalue == 0)
        return;
    SQLite::Statement insert(db, R"(INSERT INTO "t_keyrgbdata" ("lightId", "profId", "keyvalue", "rgbvalue")
                                    VALUES (?, ?, ?, ?))");
    insert.bind(1, lightId);
    insert.bind(2, kLightProfile);
    insert.bind(3, led.keyvalue);
    insert.bind(4, led.rgbvalue);
    insert.exec();
}

}  // namespace

bool DeviceSQLite::addKeyProfiles(const std::vector<ProfileKey>& rows)
{
    if (!db)
        return false;
    try {
        SQLite::Transaction transaction(*db);
        for (const ProfileKey& row : rows)
            RecordStatements::replaceKeyAssignment(*db, row);
        transaction.commit();
        return true;
    } catch (const std::exception& e) {
        failed(e);
        RecordStatements::logFailure("addKeyProfiles", e);
        return false;
    }
}

int64_t DeviceSQLite::addUserLightWithColours(const QString& name, const std::vector<LEDData>& leds)
{
    if (!db)
        return 0;
    try {
        SQLite::Transaction transaction(*db);
        SQLite::Statement insert(*db, R"(INSERT INTO "t_userlightdata" ("lightName", "speed", "brightness")
                                         VALUES (?, 10, 10))");
        insert.bind(1, name.toStdString());
        insert.exec();
        const int64_t lightId = db->getLastInsertRowid();
        for (const LEDData& led : leds)
            replaceKeyColour(*db, lightId, led);
        transaction.commit();
        return lightId;
    } catch (const std::exception& e) {
        failed(e);
        RecordStatements::logFailure("addUserLightWithColours", e);
        return 0;
    }
}
