#pragma once
// The checks an exchange file passes before an import changes anything.
//
// Only a regular file of a plausible size is opened, read-only and
// immutable, so that nothing is written beside it (no journal, "-wal" or
// "-shm"), and the checks and the rows are read in one read transaction. It
// must be a healthy SQLite database with the tables and columns its kind
// names, and every value must be one the keyboard can hold: key codes and
// modifiers within a byte, assignment kinds the key table knows, colours
// within 24 bits, names no longer than the window shows, and no more rows
// than the model has keys. Rows naming keys the connected model does not
// have are left out and counted. The result is either the rows to write
// (exactly those the import writes) or the one problem that refuses the
// file, with the row and value named, and a message for the user.
//
// Nothing here writes, and nothing reads a shared map: the model's keys come
// as a copy, so the check may run on any thread.

#include "Common/Records.h"
#include "SQLite/LightSQLite.h"

#include <QString>

#include <cstdint>
#include <set>
#include <vector>

class keyProfileSQLite;

namespace ExchangeFileCheck {

enum class Problem {
    None,
    CannotOpen,     // missing, unreadable; `detail`: the system's or SQLite's reason
    NotAFile,       // `detail`: what it is: "folder", "pipe", "device", "socket" or "special"
    TooLarge,       // `value`: its size in bytes; `limit`: the largest accepted
    NotADatabase,   // not SQLite at all
    Damaged,        // SQLite, but its pages do not hold together
    MissingTable,   // `detail`: the table
    MissingColumn,  // `detail`: "table"."column"
    TooManyRows,    // `detail`: the table; `value`: its rows; `limit`: the model's keys
    NotANumber,     // `row`, `detail` "table"."column", `value`: no whole number (text, NULL, 4.5)
    OutOfRange,     // `row`, `detail`, `value`: a whole number the keyboard cannot hold; `limit`: the range
    UnknownKind,    // `row`, `value`: an assignment kind the key table does not know
    NameTooLong,    // `row`, `detail`; `value`: its length; `limit`: the longest shown
    NoProfileRows,  // a ".key" file without rows under profile 1
    NoLightMode,    // a ".light" file without a header row
    NoKnownKeys,    // every row names a key the model does not have
};

// The largest file taken for an exchange file: far above any file of a
// model's keys, far below what would keep a check busy.
inline constexpr qint64 kLargestFile = 4 * 1024 * 1024;
// The longest name (a mode's name, a key's description) the window shows.
inline constexpr int kLongestName = 64;

// The key codes of the connected model.
struct ModelKeys {
    std::set<int> codes;
    bool has(int code) const { return codes.count(code) != 0; }
    int count() const { return static_cast<int>(codes.size()); }
};

struct Inspection {
    Problem problem = Problem::None;
    QString detail;
    QString value;     // the value found, as text
    QString limit;     // what is accepted
    qint64 row = 0;    // the refused row, by its row id
    int dropped = 0;   // rows left out: their keys are not on this model
    bool ok() const { return problem == Problem::None; }
};

struct KeyFileInspection : Inspection {
    std::vector<ProfileKey> rows;  // the rows under profile 1, in file order
};

struct LightFileInspection : Inspection {
    QString name;               // of the first header row
    std::vector<LEDData> leds;  // in file order
};

// The file at `dbUri` (a file: URL), checked as described above and closed
// before the answer.
KeyFileInspection inspectKeyFile(const QString& dbUri, const ModelKeys& keys);
LightFileInspection inspectLightFile(const QString& dbUri, const ModelKeys& keys);

// What the window says of a refused file, named `fileName`: what is wrong
// and what to do, and that nothing was changed.
QString refusalMessage(const Inspection& inspection, const QString& fileName);

}  // namespace ExchangeFileCheck
