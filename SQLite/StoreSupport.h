#pragma once
// What the SQLite stores share: opening a file, and a test seam for the
// operations of several statements.

#include <SQLiteCpp/Database.h>

#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace StoreSupport {

// Opens read-write and creates a missing file. A name that starts with
// "file:" is read as a URI, so a file chosen in a file dialog opens as it is
// given. Throws SQLite::Exception.
std::unique_ptr<SQLite::Database> openReadWrite(const QString& pathOrUri);

// Opens `fileName` in the database folder, which is created first with its
// parents. With `removeExisting`, an existing file is deleted before; if it
// cannot be deleted, the opening fails rather than continue on stale data.
// On failure prints "init: connect fail " and the error and returns an empty
// pointer. Never throws.
std::unique_ptr<SQLite::Database> connectInDatabaseFolder(const QString& fileName, bool removeExisting);

// Test seam. The stores call reachStep() at named points inside their
// transactions; a test sets `faultHook` to throw (the operation must roll
// back) or to end the process (the file must show the old state on the next
// opening). The hook is empty in the application.
//
// Steps:
//   "local.seed.N"        after local settings seed row N (1 to 4)
//   "device.seed.N"       after settings seed row N (1 to 34)
//   "device.drop.TABLE"   after DROP TABLE of TABLE while wiping
//   "device.recreate"     after the tables are created again while wiping
//   "device.reset.delete" after the key assignments of the profile are deleted
//   "device.reset.KEY"    after KEY is set back while resetting a profile
using FaultHook = std::function<void(std::string_view step)>;
inline FaultHook faultHook;

inline void reachStep(std::string_view step)
{
    if (faultHook)
        faultHook(step);
}

}  // namespace StoreSupport
