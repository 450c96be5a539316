#pragma once
// keyProfileSQLite: one ".key" exchange file, for the length of one import
// or export. The file is a small SQLite database whose table "t_keyprofile"
// has the columns of the device database's table of that name; an exported
// file holds its rows under profile 1, whichever profile they came from.
//
// Opened for export, the file is created when missing and gets its table;
// opened for import, it is only read (see ExchangeFile). With a failed
// opening `db` is empty and every call answers neutrally; `failure` keeps why.

#include "Common/Records.h"
#include "SQLite/ExchangeFile.h"

#include <SQLiteCpp/Database.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class keyProfileSQLite {
public:
    explicit keyProfileSQLite(const QString& dbPath, ExchangeAccess access = ExchangeAccess::Export);

    // "CREATE TABLE IF NOT EXISTS": a file that has the table keeps its rows.
    void createTable();
    // One insert, nothing deleted and no test for zero values: the new row
    // id, 0 on failure.
    int64_t addKeyProfile(const ProfileKey& data);
    // The rows of `data` under profile 1, in order, in one transaction: all
    // are written or none. False on failure, with `failure` set.
    bool addKeyProfiles(const std::vector<ProfileKey>& data);
    // Appends the rows of `profile` in row id order, `layerId` 0. False when
    // the query fails; the array is then left as it was.
    bool queryKeysProfile(int profile, std::vector<ProfileKey>& dataArray) const;

    std::unique_ptr<SQLite::Database> db;
    mutable std::string failure;
};
