#include "SQLite/Snapshot.h"

#include "Common/DataPaths.h"
#include "SQLite/ExchangeFile.h"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/Statement.h>

#include <sqlite3.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>
#include <set>

namespace {

const QString kSuffix = QStringLiteral(".sqlite3");
const QString kTimeFormat = QStringLiteral("yyyyMMdd-HHmmss");

// The tables a restore needs; a file without them is not a device database.
constexpr const char* kNeededTables[] = {"t_configdata", "t_keyprofile", "t_macro_data",
                                         "t_macrorecord", "t_userlightdata", "t_keyrgbdata"};

QString nameOf(const QString& model, const QDateTime& taken, int sequence, const QString& what)
{
    QString name = model + '-' + taken.toString(kTimeFormat);
    if (sequence > 1)
        name += '-' + QString::number(sequence);
    return name + '-' + what + kSuffix;
}

bool newerFirst(const Snapshots::Snapshot& a, const Snapshots::Snapshot& b)
{
    return a.taken != b.taken ? a.taken > b.taken : a.sequence > b.sequence;
}

// One whole copy in a single backup step: the destination is written in one
// transaction, so it ends as the source was at one moment.
void copyDatabase(SQLite::Database& to, SQLite::Database& from)
{
    SQLite::Backup backup(to, from);
    const int status = backup.executeStep(-1);
    if (status != SQLITE_DONE)
        throw SQLite::Exception(status == SQLITE_BUSY || status == SQLITE_LOCKED
                                    ? "the database is in use by another program"
                                    : "the copy stopped before its end",
                                status);
}

void checkDeviceDatabase(SQLite::Database& db)
{
    const std::string check = db.execAndGet("PRAGMA quick_check").getString();
    if (check != "ok")
        throw SQLite::Exception("the file is damaged (" + check + ")", SQLITE_CORRUPT);
    for (const char* table : kNeededTables)
        if (!db.tableExists(table))
            throw SQLite::Exception(std::string("the file holds no table ") + table, SQLITE_ERROR);
}

int countOf(SQLite::Database& db, const char* query)
{
    return db.execAndGet(query).getInt();
}

}  // namespace

namespace Snapshots {

QString folder()
{
    return DataPaths::databaseFolder() + QStringLiteral("snapshots/");
}

QString modelOfDatabase(const QString& deviceFileName)
{
    static const QRegularExpression family(QStringLiteral("^orvane_(.+)_device\\.sqlite3$"));
    const auto match = family.match(deviceFileName);
    return match.hasMatch() ? match.captured(1) : QFileInfo(deviceFileName).completeBaseName();
}

std::optional<Snapshot> parse(const QString& path)
{
    static const QRegularExpression name(
        QStringLiteral("^([^-]+)-(\\d{8}-\\d{6})(?:-(\\d+))?-([a-z][a-z-]*)\\.sqlite3$"));
    const auto match = name.match(QFileInfo(path).fileName());
    if (!match.hasMatch())
        return std::nullopt;
    Snapshot snapshot{path, match.captured(1), QDateTime::fromString(match.captured(2), kTimeFormat),
                      match.captured(3).isEmpty() ? 1 : match.captured(3).toInt(), match.captured(4)};
    if (!snapshot.taken.isValid())
        return std::nullopt;
    return snapshot;
}

Taken take(SQLite::Database& live, const QString& model, const QString& what, const QDateTime& now,
           const QString& spare)
{
    Taken taken;
    if (!QDir().mkpath(folder())) {
        taken.failure = "cannot create the folder " + folder().toStdString();
        return taken;
    }
    const QDateTime second = now.addMSecs(-now.time().msec());
    int sequence = 1;
    while (QFileInfo::exists(folder() + nameOf(model, second, sequence, what)))
        ++sequence;
    const QString path = folder() + nameOf(model, second, sequence, what);
    // Written under another name and renamed when whole, so a list never
    // shows a half-made copy.
    const bool written = ExchangeFile::writeWhole(
        QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded),
        [&](const QString& tempUri) {
            try {
                SQLite::Database copy(tempUri.toStdString(),
                                      SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_URI);
                copyDatabase(copy, live);
                return true;
            } catch (const std::exception& e) {
                taken.failure = e.what();
                return false;
            }
        },
        taken.failure);
    if (!written)
        return taken;
    taken.path = path;
    prune(model, kKept, spare);
    return taken;
}

std::vector<Snapshot> list(const QString& model)
{
    std::vector<Snapshot> found;
    const QStringList names = QDir(folder()).entryList({model + QStringLiteral("-*") + kSuffix}, QDir::Files);
    for (const QString& name : names)
        if (auto snapshot = parse(folder() + name); snapshot && snapshot->model == model)
            found.push_back(*snapshot);
    std::sort(found.begin(), found.end(), newerFirst);
    return found;
}

void prune(const QString& model, int kept, const QString& spare)
{
    std::set<QString> kindsKept;
    int index = 0;
    for (const Snapshot& snapshot : list(model)) {
        const bool newestOfKind = kindsKept.insert(snapshot.what).second;
        if (index++ >= kept && !newestOfKind && snapshot.path != spare)
            QFile::remove(snapshot.path);
    }
}

std::optional<Contents> inspect(const QString& path, std::string& failure)
{
    try {
        SQLite::Database db(path.toStdString(), SQLite::OPEN_READONLY);
        checkDeviceDatabase(db);
        return Contents{countOf(db, R"(SELECT COUNT(DISTINCT "profId") FROM "t_keyprofile")"),
                        countOf(db, R"(SELECT COUNT(*) FROM "t_macro_data")"),
                        countOf(db, R"(SELECT COUNT(*) FROM "t_userlightdata")")};
    } catch (const std::exception& e) {
        failure = e.what();
        return std::nullopt;
    }
}

bool restore(SQLite::Database& live, const QString& path, std::string& failure)
{
    try {
        SQLite::Database snapshot(path.toStdString(), SQLite::OPEN_READONLY);
        checkDeviceDatabase(snapshot);
        copyDatabase(live, snapshot);
        return true;
    } catch (const std::exception& e) {
        failure = e.what();
        return false;
    }
}

}  // namespace Snapshots
