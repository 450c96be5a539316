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
        SQLite::Statement remove(connection, R"(DELETE FROM "t_keyprofile" WHERE "profId" = ? AND "keyvalue" = ?)");
        remove.bind(1, data.profId);
        remove.bind(2, data.keyValue);
        remove.exec();
        StoreSupport::reachStep("keys.add.delete");
        if (data.macroValue == 0) {
            // No row is how a key goes back to its default function.
            transaction.commit();
            return 0;
        }
        SQLite::Statement insert(connection, R"(INSERT INTO "t_keyprofile" ("profId", "keyvalue", "macroType",
                                                "macroValue", "macro2Value", "macro3Value", "macroDesc")
                                                VALUES (?, ?, ?, ?, ?, ?, ?))");
        insert.bind(1, data.profId);
        insert.bind(2, data.keyValue);
        insert.bind(3, data.macroType);
        insert.bind(4, data.macroValue);
        insert.bind(5, data.macro2Value);
        insert.bind(6, data.macro3Value);
        insert.bind(7, data.macroDesc.toStdString());
        insert.exec();
        const int64_t id = connection.getLastInsertRowid();
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
        std::vector<ProfileKey> rows;
        while (query.executeStep()) {
            ProfileKey key;
            key.keyId = query.getColumn(0).getInt64();
            key.profId = query.getColumn(1).getInt();
            key.keyValue = query.getColumn(2).getInt();
            key.macroType = query.getColumn(3).getInt();
            key.macroValue = query.getColumn(4).getInt();
            key.macro2Value = query.getColumn(5).getInt();
            key.macro3Value = query.getColumn(6).getInt();
            key.macroDesc = QString::fromStdString(query.getColumn(7).getString());
            rows.push_back(std::move(key));
        }
        dataArray.insert(dataArray.end(), rows.begin(), rows.end());
        return true;
    });
}
