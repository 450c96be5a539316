#pragma once
// Helpers for store tests: a temporary data folder that the application uses
// for the test's lifetime, a scoped fault in the stores' transactions, and
// direct reads of a database file that bypass the store under test.

#include <SQLiteCpp/Database.h>

#include "SQLite/StoreSupport.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace testing_support {

class TempDataFolder {
public:
    TempDataFolder();
    ~TempDataFolder();

    QString path() const { return dir_.path(); }
    // The full path of a store file in the database folder.
    std::string databasePath(const QString& fileName) const;

private:
    QTemporaryDir dir_;
};

// While alive, `folder` may be read but not written, and the test has the
// rights of an ordinary user, so that this holds also where tests run as root.
class ScopedReadOnlyFolder {
public:
    explicit ScopedReadOnlyFolder(QString folder);
    ~ScopedReadOnlyFolder();

private:
    QString folder_;
    bool switched_;
};

// The files beside `fileName` in the database folder whose names start with
// "<fileName>.<tag>-" (moved aside as old or damaged).
QStringList movedAside(const QString& fileName, const QString& tag);

// While alive, stores opened wait `ms` for another program's lock.
class ScopedBusyTimeout {
public:
    explicit ScopedBusyTimeout(int ms) : previous_(std::exchange(StoreSupport::busyTimeoutMs, ms)) {}
    ~ScopedBusyTimeout() { StoreSupport::busyTimeoutMs = previous_; }

private:
    int previous_;
};

QByteArray readAll(const std::string& path);
// Replaces the whole contents of the file at `path` with `bytes`.
void overwrite(const std::string& path, const QByteArray& bytes);

// Copies the database `source` to `target` in the middle of a write
// transaction that has already written changed pages into the file, with
// its "-journal", then rolls the source back: `target` is left with a hot
// journal, and opening it rolls it back to what `source` holds.
void copyWithHotJournal(const std::string& source, const std::string& target);

// While alive, the stores throw std::runtime_error("injected") when they
// reach `step`.
class ScopedFault {
public:
    explicit ScopedFault(std::string step);
    ~ScopedFault() { StoreSupport::faultHook = {}; }
};

using Rows = std::vector<std::vector<std::string>>;

// Every column as text, NULL as "NULL".
Rows queryRows(SQLite::Database& db, const std::string& sql);
long long countRows(SQLite::Database& db, std::string_view table);
// The schema and every row of every table, in a stable order: equal dumps
// mean equal contents.
std::string dumpDatabase(SQLite::Database& db);
std::string dumpDatabaseFile(const std::string& path);

}  // namespace testing_support
