#pragma once
// Snapshots: whole copies of a model's device database, made with SQLite's
// online backup before a change that takes settings away (a reset, an import,
// the delete of a macro or a light), and copied back the same way to undo it.
//
// They live in <data folder>/db/snapshots/ and are named
// "<model>-<yyyyMMdd-HHmmss>-<what>.sqlite3" ("61k-20261124-081502-reset-all"),
// with "-N" after the time when two fall in one second. After each new one a
// model keeps its ten newest, and beyond them the newest of each kind, so a
// run of deletes never pushes out the only copy from before a reset.
//
// Main thread. Each call opens and closes its own files; the live database
// is only read by take() and written, in one transaction, by restore().

#include <SQLiteCpp/Database.h>

#include <QDateTime>
#include <QString>

#include <optional>
#include <string>
#include <vector>

// What a snapshot was made before, as its name says it.
namespace SnapshotKind {
inline constexpr const char* kResetCurrent = "reset-current";
inline constexpr const char* kResetAll = "reset-all";
inline constexpr const char* kImportKeys = "import-keys";
inline constexpr const char* kImportLight = "import-light";
inline constexpr const char* kDeleteMacro = "delete-macro";
inline constexpr const char* kDeleteLight = "delete-light";
inline constexpr const char* kBeforeRestore = "before-restore";
}  // namespace SnapshotKind

namespace Snapshots {

inline constexpr int kKept = 10;

struct Snapshot {
    QString path;
    QString model;
    QDateTime taken;
    int sequence = 1;  // 2, 3... for later ones of the same second
    QString what;      // "reset-all", "delete-macro"...
};

// <data folder>/db/snapshots/, with a trailing slash.
QString folder();
// The model part of the names: "61k" or "68k", from the device file's name.
QString modelOfDatabase(const QString& deviceFileName);
// The parts of a snapshot's name; none for a name that is not one.
std::optional<Snapshot> parse(const QString& path);

struct Taken {
    QString path;         // the new snapshot
    std::string failure;  // why none was made; empty on success
    bool ok() const { return failure.empty(); }
};
// Copies `live` into a new snapshot of `model`, then prunes the model's
// older ones, all but `spare` (the one about to be restored). A copy that
// fails leaves no file behind.
Taken take(SQLite::Database& live, const QString& model, const QString& what,
           const QDateTime& now = QDateTime::currentDateTime(), const QString& spare = {});

// The model's snapshots, newest first.
std::vector<Snapshot> list(const QString& model);
// Removes what take() does not keep: beyond the `kept` newest, all but the
// newest of each kind, and never `spare`.
void prune(const QString& model, int kept = kKept, const QString& spare = {});

// What a snapshot holds, for its line in a list.
struct Contents {
    int profiles = 0;  // profiles with keys of their own
    int macros = 0;
    int lights = 0;  // user light modes
};
// Opens the snapshot read-only and counts; none, with `failure` set, when it
// is damaged or not a device database.
std::optional<Contents> inspect(const QString& path, std::string& failure);

// Replaces every table of `live` with the snapshot's, in one transaction:
// on failure `live` is as it was and `failure` says why. The snapshot is
// checked first as inspect() checks it.
bool restore(SQLite::Database& live, const QString& path, std::string& failure);

}  // namespace Snapshots
