#pragma once
// What the SQLite stores share: opening a file safely, and a test seam for
// the operations of several statements.

#include "SQLite/StoreResult.h"

#include <SQLiteCpp/Database.h>

#include <QString>

#include <functional>
#include <memory>
#include <string_view>

namespace StoreSupport {

// How long an operation waits for another program's lock before it fails:
// a moment, as the window waits with it. A longer lock is said at once and
// the operation fails; the next ones try once without waiting until one
// gets through (StoreHealth::lockHeld).
inline int busyTimeoutMs = 20;

// Records the failures of operations on `db` in `health` from now on (see
// RecordStatements::guarded), until forgetFailures(); the store that owns
// both calls that before its connection closes.
void watchFailures(const std::unique_ptr<SQLite::Database>& db, StoreHealth& health);
void forgetFailures(const std::unique_ptr<SQLite::Database>& db);
// The health watching `db`, or none.
StoreHealth* watchingHealth(const SQLite::Database& db);
// An operation on `db` went through: a lock noted before is gone.
void noteSuccess(const SQLite::Database& db);

// Opens read-write and creates a missing file. A name that starts with
// "file:" is read as a URI, so a file chosen in a file dialog opens as it is
// given. Throws SQLite::Exception.
std::unique_ptr<SQLite::Database> openReadWrite(const QString& pathOrUri);

struct Opening {
    std::unique_ptr<SQLite::Database> db;  // empty when the file cannot be used at all
    StoreHealth health;
};

// Opens `fileName` in the database folder, which is created first with its
// parents. With `moveOldAside`, an existing file is renamed to
// "<name>.old-<yyyyMMdd-HHmmss>" first; if that fails, `db` stays empty. A
// file SQLite finds damaged at opening ("file is not a database", "database
// disk image is malformed", a failed quick check) is renamed to
// "<name>.damaged-<yyyyMMdd-HHmmss>" and a new file is opened in its place.
// A journal beside a moved file goes with it. A locked file is kept as it
// is, and a folder or file that may not be written is opened for reading;
// `health.opening` says so. Never throws; a failure prints
// "init: connect fail " and the error.
Opening openInDatabaseFolder(const QString& fileName, bool moveOldAside);

// Test seam. The stores call reachStep() at named points inside their
// transactions; a test sets `faultHook` to throw (the operation must roll
// back) or to end the process (the file must show the old or the new state
// on the next opening). The hook is empty in the application.
//
// Steps:
//   "local.seed.N"        after local settings seed row N (1 to 4)
//   "device.seed.N"       after settings seed row N (1 to 34)
//   "device.drop.TABLE"   after DROP TABLE of TABLE while wiping
//   "device.recreate"     after the tables are created again while wiping
//   "device.reset.delete" after the key assignments of the profile are deleted
//   "device.reset.KEY"    after KEY is set back while resetting a profile
//   "device.wipe.commit", "device.reset.commit"  just before the commit
//   "light.rgb.delete"    after a key's old colour row is deleted
//   "light.pass.N"        after key N (from 1) of a paint pass is stored
//   "device.read.config"  before a setting of a profile is read
using FaultHook = std::function<void(std::string_view step)>;
inline FaultHook faultHook;

inline void reachStep(std::string_view step)
{
    if (faultHook)
        faultHook(step);
}

}  // namespace StoreSupport
