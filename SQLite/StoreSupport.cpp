#include "Common/OutputLine.h"
#include "SQLite/StoreSupport.h"

#include "Common/DataPaths.h"

#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <climits>
#include <map>
#include <mutex>

#include <unistd.h>

namespace {

bool isDamage(int code)
{
    return code == SQLITE_NOTADB || code == SQLITE_CORRUPT;
}

bool folderWritable(const QString& folder)
{
    return ::access(QFile::encodeName(folder).constData(), W_OK) == 0;
}

// Renames `file` (and a journal beside it) to "<file>.<tag>-<stamp>", adding
// "-2", "-3" ... when that name is taken: nothing is ever overwritten.
bool moveAside(const QString& file, const QString& tag, QString& movedTo, std::string& reason)
{
    const QString base = file + '.' + tag + '-' + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString target = base;
    for (int n = 2; QFileInfo::exists(target) || QFileInfo::exists(target + "-journal"); ++n)
        target = base + '-' + QString::number(n);
    QFile source(file);
    if (!source.rename(target)) {
        reason = "cannot move " + file.toStdString() + " aside: " + source.errorString().toStdString();
        return false;
    }
    // A hot journal must stay with the file it belongs to: left behind, it
    // would be rolled back into the new file.
    for (const char* suffix : {"-journal", "-wal", "-shm"})
        if (QFileInfo::exists(file + suffix))
            QFile::rename(file + suffix, target + suffix);
    movedTo = target;
    return true;
}

// SQLite's busy handler for the stores' connections: waits up to
// busyTimeoutMs in steps of a millisecond, as sqlite3_busy_timeout would,
// but not at all while the store knows that another program holds the file.
int waitForLock(void* connection, int attempts)
{
    const StoreHealth* health = StoreSupport::watchingHealth(*static_cast<const SQLite::Database*>(connection));
    if ((health && health->lockHeld) || attempts >= StoreSupport::busyTimeoutMs)
        return 0;
    ::usleep(1000);
    return 1;
}

// Opens the file into `db` and checks it. Throws SQLite::Exception; a
// damaged file throws with SQLITE_CORRUPT when the quick check finds fault.
void openChecked(const QString& file, std::unique_ptr<SQLite::Database>& db)
{
    db = StoreSupport::openReadWrite(file);
    sqlite3_busy_handler(db->getHandle(), waitForLock, db.get());
    const std::string check = db->execAndGet("PRAGMA quick_check").getString();
    if (check != "ok")
        throw SQLite::Exception("quick check: " + check, SQLITE_CORRUPT);
}

// True when another program holds a lock on the file past the busy timeout:
// it may be writing, so the file is not moved from under it.
bool heldByAnother(const QString& file, std::string& reason)
{
    try {
        SQLite::Database probe(file.toStdString(), SQLite::OPEN_READWRITE);
        probe.setBusyTimeout(StoreSupport::busyTimeoutMs);
        probe.exec("BEGIN EXCLUSIVE");
        probe.exec("ROLLBACK");
    } catch (const SQLite::Exception& e) {
        if (e.getErrorCode() != SQLITE_BUSY && e.getErrorCode() != SQLITE_LOCKED)
            return false;
        reason = e.what();
        return true;
    }
    return false;
}

// Why the database folder cannot be made: a part of its path that is a file
// or a device, a path longer than the system takes, or no right to write.
StoreResult folderProblem(const QString& folder)
{
    const QByteArray path = QFile::encodeName(folder);
    const QList<QByteArray> parts = path.split('/');
    if (path.size() >= PATH_MAX
        || std::any_of(parts.begin(), parts.end(), [](const QByteArray& part) { return part.size() > NAME_MAX; }))
        return StoreResult::PathTooLong;
    QString prefix;
    for (const QString& part : folder.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        prefix += QLatin1Char('/') + part;
        const QFileInfo info(prefix);
        if (!info.exists())
            break;
        if (!info.isDir())
            return StoreResult::NotAFolder;
    }
    return StoreResult::ReadOnly;
}

StoreStatus failure(StoreResult result, std::string reason)
{
    OutputLine::print("init: connect fail " + reason);
    return {result, std::move(reason)};
}

}  // namespace

StoreStatus storeStatusOf(const std::exception& error)
{
    const auto* sqlite = dynamic_cast<const SQLite::Exception*>(&error);
    const int code = sqlite ? sqlite->getErrorCode() : -1;
    StoreResult result = StoreResult::Failed;
    if (code == SQLITE_BUSY || code == SQLITE_LOCKED)
        result = StoreResult::Busy;
    else if (code == SQLITE_READONLY || code == SQLITE_PERM || code == SQLITE_CANTOPEN)
        result = StoreResult::ReadOnly;
    else if (isDamage(code))
        result = StoreResult::Damaged;
    else if (code == SQLITE_FULL)
        result = StoreResult::DiskFull;
    return {result, error.what()};
}

std::unique_ptr<SQLite::Database> StoreSupport::openReadWrite(const QString& pathOrUri)
{
    return std::make_unique<SQLite::Database>(pathOrUri.toStdString(),
                                              SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_URI);
}

namespace {
// Connections and the health of their store. Exchange files are read on
// another thread, so the map is guarded, though they are never in it.
std::mutex watchedMutex;
std::map<const SQLite::Database*, StoreHealth*> watched;
}  // namespace

void StoreSupport::watchFailures(const std::unique_ptr<SQLite::Database>& db, StoreHealth& health)
{
    if (!db)
        return;
    const std::lock_guard lock(watchedMutex);
    watched[db.get()] = &health;
}

void StoreSupport::forgetFailures(const std::unique_ptr<SQLite::Database>& db)
{
    const std::lock_guard lock(watchedMutex);
    watched.erase(db.get());
}

StoreHealth* StoreSupport::watchingHealth(const SQLite::Database& db)
{
    const std::lock_guard lock(watchedMutex);
    const auto found = watched.find(&db);
    return found == watched.end() ? nullptr : found->second;
}

void StoreSupport::noteSuccess(const SQLite::Database& db)
{
    if (StoreHealth* health = watchingHealth(db))
        health->lockHeld = false;
}

StoreSupport::Opening StoreSupport::openInDatabaseFolder(const QString& fileName, bool moveOldAside)
{
    Opening opening;
    StoreHealth& health = opening.health;
    const QString folder = DataPaths::databaseFolder();
    health.file = folder + fileName;
    if (!QDir().mkpath(folder)) {
        health.opening = failure(folderProblem(folder), "cannot create the database folder " + folder.toStdString());
        return opening;
    }
    std::string lockReason;
    const bool held = moveOldAside && QFileInfo::exists(health.file) && heldByAnother(health.file, lockReason);
    if (moveOldAside && !held && QFileInfo::exists(health.file)
        && !moveAside(health.file, QStringLiteral("old"), health.movedAside, health.opening.reason)) {
        health.opening = failure(StoreResult::MoveFailed, health.opening.reason);
        return opening;
    }
    try {
        try {
            openChecked(health.file, opening.db);
        } catch (const SQLite::Exception& e) {
            if (!isDamage(e.getErrorCode()))
                throw;
            opening.db.reset();
            std::string reason;
            if (!moveAside(health.file, QStringLiteral("damaged"), health.movedAside, reason)) {
                health.opening = failure(StoreResult::MoveFailed, std::string(e.what()) + "; " + reason);
                return opening;
            }
            health.movedBecauseDamaged = true;
            openChecked(health.file, opening.db);
        }
    } catch (const std::exception& e) {
        health.opening = storeStatusOf(e);
        // A locked file is kept open, and never taken for damaged: each
        // later operation tries it once until one gets through.
        health.lockHeld = health.opening.result == StoreResult::Busy;
        if (!health.lockHeld)
            opening.db.reset();
        if (!folderWritable(folder) && health.opening.result != StoreResult::Busy)
            health.opening.result = StoreResult::ReadOnly;
        OutputLine::print(std::string("init: connect fail ") + e.what());
        return opening;
    }
    if (held) {
        health.opening = failure(StoreResult::Busy, lockReason);
        health.lockHeld = true;
    }
    else if (!folderWritable(folder) || sqlite3_db_readonly(opening.db->getHandle(), "main") == 1)
        health.opening = {StoreResult::ReadOnly, "the folder or the file may not be written"};
    return opening;
}
