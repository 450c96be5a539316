#pragma once
// What the two exchange file classes (keyProfileSQLite for ".key" files,
// LightSQLite for ".light" files) share: how a file is opened, and how a
// file name is made from a name the user gave.
//
// Files are named by file: URLs, as a file dialog gives them. An export
// opens read-write, creating a missing file, and creates the file's tables;
// a file of the same name keeps its rows and the new rows go behind them. An
// import opens read-only and immutable, and writes nothing to the file nor
// beside it: not a table, not a journal, "-wal" or "-shm" file; a journal or
// "-wal" file left beside it by a crash is not read.

#include <SQLiteCpp/Database.h>

#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <string>

enum class ExchangeAccess { Export, Import };

namespace ExchangeFile {

// Opens `dbUri` for `access`; empty when it cannot be opened, with `failure`
// set and "init: connect fail " and the error printed. Never throws.
std::unique_ptr<SQLite::Database> open(const QString& dbUri, ExchangeAccess access, std::string& failure);

// `dbUri` with the URI parameters that open it read-only and immutable.
QString readOnlyUri(const QString& dbUri);

// Runs the "CREATE TABLE IF NOT EXISTS" statements in order and prints
// "createTable success"; the first failure prints "createTable fail " and the
// error, sets `failure` and ends it.
void createTables(SQLite::Database& db, std::initializer_list<const char*> statements, std::string& failure);

// `name` made fit to be one file name: each character that means something
// in a path or a URL ("/", "\", "?", "#", "%", ":", "*", quotes, "<", ">",
// "|", control characters) becomes "_", and an empty name becomes "_".
QString safeFileName(const QString& name);

// The file's name for messages ("Profile A.key").
QString displayName(const QString& dbUri);

// Writes the file `dbUri` whole or not at all: `write` fills a new file
// beside it (given as a file: URL), which then takes the place of any file
// of that name in one rename. An existing file is kept as it was when
// `write` fails (answering false with `failure` set) or the rename does.
bool writeWhole(const QString& dbUri, const std::function<bool(const QString& tempUri)>& write, std::string& failure);

}  // namespace ExchangeFile
