#include "support/StoreTestSupport.h"

#include "Common/DataPaths.h"

#include <SQLiteCpp/Statement.h>

#include <QDir>
#include <QFile>

#include <stdexcept>

#include <sys/stat.h>
#include <unistd.h>

namespace testing_support {

TempDataFolder::TempDataFolder()
{
    if (!dir_.isValid())
        throw std::runtime_error("no temporary folder");
    // Open to the ordinary user that ScopedReadOnlyFolder switches to.
    ::chmod(QFile::encodeName(dir_.path()).constData(), 0777);
    DataPaths::setDataFolderOverride(dir_.path());
}

TempDataFolder::~TempDataFolder() { DataPaths::setDataFolderOverride({}); }

std::string TempDataFolder::databasePath(const QString& fileName) const
{
    return (DataPaths::databaseFolder() + fileName).toStdString();
}

ScopedReadOnlyFolder::ScopedReadOnlyFolder(QString folder) : folder_(std::move(folder)), switched_(::geteuid() == 0)
{
    ::chmod(QFile::encodeName(folder_).constData(), 0555);
    if (switched_ && ::seteuid(65534) != 0)
        throw std::runtime_error("cannot drop root rights");
}

ScopedReadOnlyFolder::~ScopedReadOnlyFolder()
{
    if (switched_)
        (void)::seteuid(0);
    ::chmod(QFile::encodeName(folder_).constData(), 0755);
}

QStringList movedAside(const QString& fileName, const QString& tag)
{
    QStringList files = QDir(DataPaths::databaseFolder()).entryList({fileName + '.' + tag + "-*"}, QDir::Files, QDir::Name);
    files.removeIf([](const QString& name) { return name.endsWith("-journal"); });
    return files;
}

QByteArray readAll(const std::string& path)
{
    QFile f(QString::fromStdString(path));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void overwrite(const std::string& path, const QByteArray& bytes)
{
    QFile f(QString::fromStdString(path));
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + path);
}

void copyWithHotJournal(const std::string& source, const std::string& target)
{
    SQLite::Database db(source, SQLite::OPEN_READWRITE);
    db.exec("PRAGMA journal_mode = DELETE; PRAGMA cache_size = 10; BEGIN;"
            "CREATE TABLE \"t_spill\" (\"v\"); "
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 400) "
            "INSERT INTO \"t_spill\" SELECT randomblob(500) FROM n;");
    // More changed pages than the cache holds: some are already in the file.
    overwrite(target, readAll(source));
    overwrite(target + "-journal", readAll(source + "-journal"));
    db.exec("ROLLBACK");
}

ScopedFault::ScopedFault(std::string step)
{
    StoreSupport::faultHook = [step = std::move(step)](std::string_view reached) {
        if (reached == step)
            throw std::runtime_error("injected");
    };
}

Rows queryRows(SQLite::Database& db, const std::string& sql)
{
    Rows rows;
    SQLite::Statement query(db, sql);
    while (query.executeStep()) {
        auto& row = rows.emplace_back();
        for (int i = 0; i < query.getColumnCount(); ++i)
            row.push_back(query.getColumn(i).isNull() ? "NULL" : query.getColumn(i).getString());
    }
    return rows;
}

long long countRows(SQLite::Database& db, std::string_view table)
{
    return db.execAndGet("SELECT count(*) FROM \"" + std::string(table) + "\"").getInt64();
}

std::string dumpDatabase(SQLite::Database& db)
{
    std::string out;
    for (const auto& table : queryRows(db, "SELECT name, sql FROM sqlite_master WHERE type = 'table' ORDER BY name")) {
        out += table[1] + "\n";
        for (const auto& row : queryRows(db, "SELECT * FROM \"" + table[0] + "\" ORDER BY rowid")) {
            for (const auto& value : row)
                out += value + "|";
            out += "\n";
        }
    }
    return out;
}

std::string dumpDatabaseFile(const std::string& path)
{
    SQLite::Database db(path, SQLite::OPEN_READWRITE);
    return dumpDatabase(db);
}

}  // namespace testing_support
