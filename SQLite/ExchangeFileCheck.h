#pragma once
// The checks an exchange file passes before an import changes anything.
//
// A file opened read-only is read whole: it must be a healthy SQLite
// database with the tables and columns its kind names, numbers where numbers
// belong, and something to import. Rows naming keys the connected model does
// not have are left out and counted. The result is either the rows to write
// (exactly those the import writes) or the one problem that refuses the
// file, with a message for the user. Nothing here writes.

#include "Common/Records.h"
#include "SQLite/LightSQLite.h"

#include <QString>

#include <functional>
#include <vector>

class keyProfileSQLite;

namespace ExchangeFileCheck {

enum class Problem {
    None,
    CannotOpen,     // missing, unreadable, locked; `detail`: SQLite's reason
    NotADatabase,   // not SQLite at all
    Damaged,        // SQLite, but its pages do not hold together
    MissingTable,   // `detail`: the table
    MissingColumn,  // `detail`: "table"."column"
    NotANumber,     // `detail`: "table"."column"; a value that is no whole number in range
    NoProfileRows,  // a ".key" file without rows under profile 1
    NoLightMode,    // a ".light" file without a header row
    NoKnownKeys,    // every row names a key the model does not have
};

// Whether the connected model has the key with this code.
using KeyFilter = std::function<bool(int keyCode)>;

struct Inspection {
    Problem problem = Problem::None;
    QString detail;
    QString value;    // NotANumber: the value found
    int dropped = 0;  // rows left out: their keys are not on this model
    bool ok() const { return problem == Problem::None; }
};

struct KeyFileInspection : Inspection {
    std::vector<ProfileKey> rows;  // the rows under profile 1, in file order
};

struct LightFileInspection : Inspection {
    QString name;               // of the first header row
    std::vector<LEDData> leds;  // in file order
};

KeyFileInspection inspectKeyFile(const keyProfileSQLite& file, const KeyFilter& modelHasKey);
LightFileInspection inspectLightFile(const LightSQLite& file, const KeyFilter& modelHasKey);
// The same for the file at `dbUri`, opened read-only for the check and
// closed before the answer.
KeyFileInspection inspectKeyFile(const QString& dbUri, const KeyFilter& modelHasKey);
LightFileInspection inspectLightFile(const QString& dbUri, const KeyFilter& modelHasKey);

// What the window says of a refused file, named `fileName`: what is wrong
// and what to do, and that nothing was changed.
QString refusalMessage(const Inspection& inspection, const QString& fileName);

}  // namespace ExchangeFileCheck
