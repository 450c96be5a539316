// The steps of the macros ("t_macrorecord") and the save of a whole macro.
// The only link between a macro and its steps is the value of "macro_id".

#include "SQLite/DeviceSQLite.h"

#include "SQLite/RecordStatements.h"
#include "SQLite/StoreSupport.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

using namespace RecordStatements;

bool DeviceSQLite::deleteMacroRecord(int64_t macorId)
{
    return guardedWrite(db, "deleteMacroRecord",
                        [&](SQLite::Database& connection) { deleteSteps(connection, macorId); });
}

int64_t DeviceSQLite::addMacroRecord(const RecordInfo& info)
{
    return guarded(db, "addMacroRecord", int64_t{0},
                   [&](SQLite::Database& connection) { return insertStep(connection, info); });
}

int DeviceSQLite::queryMacroRecord(int64_t macorId, std::vector<RecordInfo>& dataArray) const
{
    return readMacroSteps(macorId, dataArray) ? int(dataArray.size()) : 0;
}

bool DeviceSQLite::readMacroSteps(int64_t macroId, std::vector<RecordInfo>& steps) const
{
    return guarded(db, "queryMacroRecord", false, [&](SQLite::Database& connection) {
        SQLite::Statement query(connection, R"(SELECT "record_id", "macro_id", "record_type", "record_index",
                                               "record_value", "record_desc" FROM "t_macrorecord"
                                               WHERE "macro_id" = ? ORDER BY "record_id")");
        query.bind(1, macroId);
        StoreSupport::reachStep("macro.read.steps");
        std::vector<RecordInfo> read;
        while (query.executeStep())
            read.push_back({query.getColumn(0).getInt64(), query.getColumn(1).getInt64(),
                            query.getColumn(2).getInt64(), query.getColumn(3).getInt64(),
                            query.getColumn(4).getInt64(), QString::fromStdString(query.getColumn(5).getString())});
        steps.insert(steps.end(), read.begin(), read.end());
        return true;
    });
}

int64_t DeviceSQLite::getRecordCount() const
{
    return guarded(db, "getRecordCount", int64_t{0},
                   [](SQLite::Database& connection) { return countRows(connection, "t_macrorecord"); });
}

int64_t DeviceSQLite::saveMacro(const MacroInfo& info, const std::vector<RecordInfo>& steps)
{
    return guarded(db, "saveMacro", int64_t{0}, [&](SQLite::Database& connection) {
        // All or nothing: a half-written macro would play only part of what
        // the user recorded, and a new macro must not outlive a failed save.
        SQLite::Transaction transaction(connection);
        MacroInfo saved = info;
        if (saved.macroId < 1)
            saved.macroId = insertMacro(connection, info.macroName);
        // A macro deleted meanwhile is not brought back as stray steps.
        if (setMacroInfo(connection, saved) == 0)
            return int64_t{0};
        setMacroName(connection, saved.macroId, info.macroName);
        StoreSupport::reachStep("macro.save.info");
        deleteSteps(connection, saved.macroId);
        StoreSupport::reachStep("macro.save.steps");
        for (std::size_t index = 0; index < steps.size(); ++index) {
            RecordInfo step = steps[index];
            step.macroId = saved.macroId;
            step.recordIndex = int64_t(index);
            insertStep(connection, step);
            StoreSupport::reachStep("macro.save.step." + std::to_string(index + 1));
        }
        transaction.commit();
        return saved.macroId;
    });
}
