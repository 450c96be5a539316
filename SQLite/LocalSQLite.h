#pragma once
// LocalSQLite: the settings that belong to this machine rather than to a
// keyboard family (interface language, device database version, casing
// colour of each keyboard picture), as text rows of owner, key and value in
// "orvane_local.sqlite3" in the database folder.
//
// Opened once at start-up and kept for the life of the application. A new
// file gets the table and four seed rows. If opening fails, `db` stays empty
// and the store still answers: "" for a read, true for a write. No exception
// leaves the class; `health` keeps how the opening went and the reason of
// the latest failure, for the window's messages.

#include "SQLite/StoreResult.h"

#include <SQLiteCpp/Database.h>

#include <QString>

#include <memory>

inline constexpr const char* kLocalDatabaseFile = "orvane_local.sqlite3";
// The owner name of every row this application writes.
inline constexpr const char* kLocalOwner = "orvane";

class LocalSQLite {
public:
    // Opens (creating folder and file as needed), creates the table and
    // seeds an empty one.
    explicit LocalSQLite(const QString& device);
    ~LocalSQLite();
    LocalSQLite(const LocalSQLite&) = delete;
    LocalSQLite& operator=(const LocalSQLite&) = delete;

    // Creates "t_localdata" if missing, then seeds it.
    void createTable();
    // Inserts the four seed rows into a table without any row.
    void initDBdata();

    // The value of the first row with this owner and key; "" when there is
    // none or the query fails.
    QString getLocalData(const QString& dev_name, const QString& keyValue) const;
    // The same read, telling a missing row from a failed read.
    StoreRead readLocalData(const QString& dev_name, const QString& keyValue) const;
    // True when the file opened as it was, is writable and every operation
    // so far succeeded: only then is a missing value really missing.
    bool isClean() const;
    // Sets the value of every matching row. False only when the statement
    // fails; a key without a row changes nothing and answers true.
    bool updateLocalData(const QString& dev_name, const QString& keyValue, const QString& newvalue);
    // Always inserts a new row, even beside one with the same key. False only
    // when the statement fails.
    bool writeLocalData(const QString& dev_name, const QString& keyValue, const QString& newvalue);

    // Empty when opening failed.
    std::unique_ptr<SQLite::Database> db;
    mutable StoreHealth health;

private:
    bool failed(const std::exception& error) const;
};
