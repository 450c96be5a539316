#pragma once
// Why a store operation failed. The stores answer their callers with neutral
// values (an empty string, true for a write that changed nothing), but they
// keep the reason of their latest failure, so the window can tell the user
// what happened and what to do.

#include <QString>

#include <exception>
#include <functional>
#include <string>

enum class StoreResult {
    Ok,
    Missing,     // a read found no row: an answer, not a failure
    Busy,        // another program held the file for longer than the busy timeout
    ReadOnly,    // the folder or the file may not be written
    DiskFull,    // the disk (or the user's quota) has no room left
    NotAFolder,  // a part of the data folder's path is a file or a device
    PathTooLong, // the data folder's path is longer than the system takes
    Damaged,     // SQLite says the file is not a healthy database
    MoveFailed,  // an old or damaged file could not be moved aside
    Failed,      // anything else
};

struct StoreStatus {
    StoreResult result = StoreResult::Ok;
    std::string reason;
    bool ok() const { return result == StoreResult::Ok; }
};

// A value read from a store, with what the read found.
struct StoreRead {
    StoreResult result = StoreResult::Missing;
    QString value;
    std::string reason;
    // Neither a value nor a sure "no such row".
    bool failed() const { return result != StoreResult::Ok && result != StoreResult::Missing; }
};

// Sorts a caught exception by its SQLite error code.
StoreStatus storeStatusOf(const std::exception& error);

// What a store knows about its file: where it is, how its opening went, what
// became of a file that had to make room, and its latest failure.
struct StoreHealth {
    QString file;        // full path
    StoreStatus opening;  // Ok, or why the store is not fully usable
    QString movedAside;  // where an old or damaged file went; empty if none
    bool movedBecauseDamaged = false;
    StoreStatus lastFailure;
    // Who holds a locked file, as far as the system tells ("another copy of
    // Orvane Keyboard Studio, process 4711"); empty when it does not.
    QString holder;
    // The latest operation found the file locked, and none has succeeded
    // since: the next ones fail at once instead of waiting for the lock on
    // the window's thread. The first that gets through clears it.
    bool lockHeld = false;
    // Told of every failure after the opening, on the thread that ran the
    // operation (the window's): the window says it and shows what is stored.
    std::function<void(const StoreStatus&)> onFailure;

    // Records a failure of an operation: its reason, the lock's holder, and
    // tells `onFailure`.
    void noteFailure(const std::exception& error);
};

// Who holds a POSIX lock on `file` according to /proc/locks: "another copy
// of Orvane Keyboard Studio (process N)", "process N (name)", or empty.
QString lockHolder(const QString& file);

// The window's message for a store's trouble, in plain words with the fix;
// empty when there is nothing to tell. `what` names the file's contents for
// the user and opens the message ("Your keyboard's settings").
QString storeProblemMessage(const StoreHealth& health, const QString& what);
