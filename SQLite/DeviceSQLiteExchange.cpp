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
        const int64_t lightId = RecordStatements::insertUserLight(*db, name);
        for (const LEDData& led : leds)
            if (led.keyvalue != 0)
                RecordStatements::replaceKeyRGB(*db, {.lightId = lightId, .profile = kLightProfile,
                                                      .keyvalue = led.keyvalue, .rgbvalue = led.rgbvalue});
        transaction.commit();
        return lightId;
    } catch (const std::exception& e) {
        failed(e);
        RecordStatements::logFailure("addUserLightWithColours", e);
        return 0;
    }
}
