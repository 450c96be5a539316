#pragma once
// The throwing building blocks of the key assignment and macro operations of
// DeviceSQLite, shared by its topic files. Each runs one statement; the
// callers choose the transaction and catch at the store boundary.
//
// Test fault points (StoreSupport::reachStep) inside those transactions:
//   "keys.add.delete"       after the old row of the key is deleted
//   "macro.delete.info"     after the macro's row is deleted
//   "macro.save.info"       after the macro's play count, delays and name are set
//   "macro.save.steps"      after the macro's old steps are deleted
//   "macro.save.step.N"     after step N (from 1) is inserted
//   "light.rgb.delete"      after a key's old colour in a mode is deleted
//   "macro.read.steps"      before a macro's steps are read

#include "Common/Records.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <string_view>
#include <vector>

namespace RecordStatements {

// Play counts travel in one byte of the key table, and a macro plays at
// least once.
inline constexpr int64_t kMinPlayTimes = 1;
inline constexpr int64_t kMaxPlayTimes = 255;
int64_t storedPlayTimes(int64_t playTimes);

// Deletes the key's row in the profile and, unless `macroValue` is 0 (back
// to the default), inserts `data`: the new row id, or 0 when none was
// inserted. `keyValue` 0 runs nothing.
int64_t replaceKeyAssignment(SQLite::Database& db, const ProfileKey& data);
// One insert into "t_keyprofile", nothing deleted: the new row id.
int64_t insertKeyAssignment(SQLite::Database& db, const ProfileKey& data);
// A new user light mode named `name`, with the speed and brightness every
// new mode starts with: its id.
int64_t insertUserLight(SQLite::Database& db, const QString& name);
// Deletes the key's colour in the mode, whatever its profile, and inserts
// the new one unless it is 0: no row is how a key loses its colour.
void replaceKeyRGB(SQLite::Database& db, const RGBData& data);
// The rows of a query of "keyId", "profId", "keyvalue", "macroType",
// "macroValue", "macro2Value", "macro3Value", "macroDesc", `layerId` 0.
std::vector<ProfileKey> keyAssignmentRows(SQLite::Statement& query);
int64_t insertMacro(SQLite::Database& db, const QString& name);
// The number of rows changed: 0 when there is no such macro.
int setMacroInfo(SQLite::Database& db, const MacroInfo& info);
void setMacroName(SQLite::Database& db, int64_t macroId, const QString& name);
void deleteMacro(SQLite::Database& db, int64_t macroId);
void deleteSteps(SQLite::Database& db, int64_t macroId);
int64_t insertStep(SQLite::Database& db, const RecordInfo& info);
int64_t countRows(SQLite::Database& db, std::string_view table);

// The answer outward is neutral; the log keeps why, and a store's health
// (StoreSupport::watchFailures) records it for the window.
void logFailure(std::string_view operation, const std::exception& error);
void noteFailure(const SQLite::Database& db, const std::exception& error);
void noteSuccess(const SQLite::Database& db);

// Runs `work` on the connection at the store boundary: its result, or
// `neutral` when there is no connection or a statement throws.
template <typename T, typename Work>
T guarded(const std::unique_ptr<SQLite::Database>& db, std::string_view operation, T neutral, Work&& work)
{
    if (!db)
        return neutral;
    try {
        T result = work(*db);
        noteSuccess(*db);
        return result;
    } catch (const std::exception& e) {
        logFailure(operation, e);
        noteFailure(*db, e);
        return neutral;
    }
}

// A write whose statement may match nothing: true unless it throws, and true
// with no connection, where there is nothing to match.
template <typename Work>
bool guardedWrite(const std::unique_ptr<SQLite::Database>& db, std::string_view operation, Work&& work)
{
    if (!db)
        return true;
    return guarded(db, operation, false, [&](SQLite::Database& connection) {
        work(connection);
        return true;
    });
}

}  // namespace RecordStatements
