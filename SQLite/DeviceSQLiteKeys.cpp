// The key assignments of the device database ("t_keyprofile"): at most one
// row per key and profile, and none for a key at its default.

#include "SQLite/DeviceSQLite.h"

#include "SQLite/RecordStatements.h"
#include "SQLite/StoreSupport.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

using RecordStatements::guarded;

int64_t DeviceSQLite::addKeyProfile(const ProfileKey& data)
{
    if (data.keyValue == 0)
        return 0;
    return guarded(db, "addKeyProfile", int64_t{0}, [&](SQLite::Database& connection) -> int64_t {
        SQLite::Transaction transaction(connection);
        const int64_t id = RecordStatements::replaceKeyAssignment(connection, data);
        transaction.commit();
        return id;
    });
}

bool DeviceSQLite::queryKeysProfile(int profile, std::vector<ProfileKey>& dataArray) const
{
    return guarded(db, "queryKeysProfile", false, [&](SQLite::Database& connection) {
        SQLite::Statement query(connection, R"(SELECT "keyId", "profId", "keyvalue", "macroType", "macroValue",
                                               "macro2Value", "macro3Value", "macroDesc" FROM "t_keyprofile"
                                               WHERE "profId" = ? ORDER BY "keyId")");
        query.bind(1, profile);
        // Collected apart, so that a failure half way leaves the caller's
        // array as it was rather than looking like fewer assignments.
        const std::vector<ProfileKey> rows = RecordStatements::keyAssignmentRows(query);
        dataArray.insert(dataArray.end(), rows.begin(), rows.end());
        return true;
    });
}
