#include "SQLite/KeyProfileSQLite.h"

#include "SQLite/RecordStatements.h"

#include <SQLiteCpp/Transaction.h>

keyProfileSQLite::keyProfileSQLite(const QString& dbPath, ExchangeAccess access)
{
    db = ExchangeFile::open(dbPath, access, failure);
    if (db && access == ExchangeAccess::Export)
        createTable();
}

void keyProfileSQLite::createTable()
{
    if (!db)
        return;
    ExchangeFile::createTables(
        *db,
        {R"(CREATE TABLE IF NOT EXISTS "t_keyprofile" ("keyId" INTEGER PRIMARY KEY NOT NULL, "profId" INTEGER NOT NULL, )"
         R"("keyvalue" INTEGER NOT NULL, "macroType" INTEGER NOT NULL, "macroValue" INTEGER NOT NULL, )"
         R"("macro2Value" INTEGER NOT NULL, "macro3Value" INTEGER NOT NULL, "macroDesc" TEXT NOT NULL))"},
        failure);
}

int64_t keyProfileSQLite::addKeyProfile(const ProfileKey& data)
{
    return RecordStatements::guarded(db, "keyProfileSQLite::addKeyProfile", int64_t{0},
                                     [&](SQLite::Database& connection) { return RecordStatements::insertKeyAssignment(connection, data); });
}

bool keyProfileSQLite::addKeyProfiles(const std::vector<ProfileKey>& data)
{
    if (!db)
        return false;
    try {
        SQLite::Transaction transaction(*db);
        for (ProfileKey row : data) {
            row.profId = 1;
            RecordStatements::insertKeyAssignment(*db, row);
        }
        transaction.commit();
        return true;
    } catch (const std::exception& e) {
        failure = e.what();
        RecordStatements::logFailure("keyProfileSQLite::addKeyProfiles", e);
        return false;
    }
}

bool keyProfileSQLite::queryKeysProfile(int profile, std::vector<ProfileKey>& dataArray) const
{
    return RecordStatements::guarded(db, "keyProfileSQLite::queryKeysProfile", false, [&](SQLite::Database& connection) {
        // No ordering clause: the rows come as the file holds them, which for
        // an exported file is the order they were written.
        SQLite::Statement query(connection, R"(SELECT "keyId", "profId", "keyvalue", "macroType", "macroValue",
                                               "macro2Value", "macro3Value", "macroDesc" FROM "t_keyprofile"
                                               WHERE "profId" = ?)");
        query.bind(1, profile);
        const std::vector<ProfileKey> rows = RecordStatements::keyAssignmentRows(query);
        dataArray.insert(dataArray.end(), rows.begin(), rows.end());
        return true;
    });
}
