// The macros of the device database ("t_macro_data"), shared by all
// profiles. A key names a macro by its id; the key table names it by its
// place in the list that queryAllMacroData gives.

#include "SQLite/DeviceSQLite.h"

#include "SQLite/RecordStatements.h"
#include "SQLite/StoreSupport.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

using namespace RecordStatements;

namespace {

MacroInfo macroFromRow(SQLite::Statement& row)
{
    return {row.getColumn(0).getInt64(), row.getColumn(1).getInt64(), row.getColumn(2).getInt64(),
            row.getColumn(3).getInt64(), QString::fromStdString(row.getColumn(4).getString())};
}

constexpr const char* kSelectMacros =
    R"(SELECT "macro_id", "play_times", "delay_type", "delay_time", "macro_name" FROM "t_macro_data")";

}  // namespace

int64_t DeviceSQLite::addMacroProfile(const QString& macro_name)
{
    return guarded(db, "addMacroProfile", int64_t{0},
                   [&](SQLite::Database& connection) { return insertMacro(connection, macro_name); });
}

bool DeviceSQLite::deleteMacroProfile(int64_t macorId)
{
    return guardedWrite(db, "deleteMacroProfile", [&](SQLite::Database& connection) {
        SQLite::Transaction transaction(connection);
        deleteMacro(connection, macorId);
        StoreSupport::reachStep("macro.delete.info");
        deleteSteps(connection, macorId);
        transaction.commit();
    });
}

bool DeviceSQLite::updateMacroProfileName(int64_t macorId, const QString& macro_name)
{
    return guardedWrite(db, "updateMacroProfileName",
                        [&](SQLite::Database& connection) { setMacroName(connection, macorId, macro_name); });
}

bool DeviceSQLite::modifyMacroInfo(const MacroInfo& info)
{
    return guardedWrite(db, "modifyMacroInfo", [&](SQLite::Database& connection) { setMacroInfo(connection, info); });
}

bool DeviceSQLite::queryMacroInfo(int64_t macorId, MacroInfo& info) const
{
    return guarded(db, "queryMacroInfo", false, [&](SQLite::Database& connection) {
        SQLite::Statement query(connection, std::string(kSelectMacros) + R"( WHERE "macro_id" = ?)");
        query.bind(1, macorId);
        if (!query.executeStep())
            return false;
        info = macroFromRow(query);
        return true;
    });
}

int DeviceSQLite::queryAllMacroData(std::vector<MacroInfo>& dataArray) const
{
    return guarded(db, "queryAllMacroData", 0, [&](SQLite::Database& connection) {
        // Row id order is the list order, the order of the macro store too.
        SQLite::Statement query(connection, std::string(kSelectMacros) + R"( ORDER BY "macro_id")");
        std::vector<MacroInfo> macros;
        while (query.executeStep())
            macros.push_back(macroFromRow(query));
        dataArray.insert(dataArray.end(), macros.begin(), macros.end());
        return int(dataArray.size());
    });
}

int64_t DeviceSQLite::getMacroCount() const
{
    return guarded(db, "getMacroCount", int64_t{0},
                   [](SQLite::Database& connection) { return countRows(connection, "t_macro_data"); });
}
