#include "SQLite/RecordStatements.h"

#include "Common/OutputLine.h"
#include "SQLite/StoreSupport.h"

#include <SQLiteCpp/Statement.h>

#include <algorithm>
#include <string>

namespace RecordStatements {

int64_t storedPlayTimes(int64_t playTimes)
{
    return std::clamp(playTimes, kMinPlayTimes, kMaxPlayTimes);
}

namespace {
constexpr int kModeSpeed = 10;
constexpr int kModeBrightness = 10;
}  // namespace

int64_t insertUserLight(SQLite::Database& db, const QString& name)
{
    SQLite::Statement insert(db, R"(INSERT INTO "t_userlightdata" ("lightName", "speed", "brightness")
                                    VALUES (?, ?, ?))");
    insert.bind(1, name.toStdString());
    insert.bind(2, kModeSpeed);
    insert.bind(3, kModeBrightness);
    insert.exec();
    return db.getLastInsertRowid();
}

void replaceKeyRGB(SQLite::Database& db, const RGBData& data)
{
    SQLite::Statement remove(db, R"(DELETE FROM "t_keyrgbdata" WHERE "lightId" = ? AND "keyvalue" = ?)");
    remove.bind(1, data.lightId);
    remove.bind(2, data.keyvalue);
    remove.exec();
    StoreSupport::reachStep("light.rgb.delete");
    if (data.rgbvalue == 0)
        return;
    SQLite::Statement insert(db, R"(INSERT INTO "t_keyrgbdata" ("lightId", "profId", "keyvalue", "rgbvalue")
                                    VALUES (?, ?, ?, ?))");
    insert.bind(1, data.lightId);
    insert.bind(2, data.profile);
    insert.bind(3, data.keyvalue);
    insert.bind(4, data.rgbvalue);
    insert.exec();
}

int64_t replaceKeyAssignment(SQLite::Database& db, const ProfileKey& data)
{
    if (data.keyValue == 0)
        return 0;
    SQLite::Statement remove(db, R"(DELETE FROM "t_keyprofile" WHERE "profId" = ? AND "keyvalue" = ?)");
    remove.bind(1, data.profId);
    remove.bind(2, data.keyValue);
    remove.exec();
    StoreSupport::reachStep("keys.add.delete");
    // No row is how a key goes back to its default function.
    if (data.macroValue == 0)
        return 0;
    return insertKeyAssignment(db, data);
}

int64_t insertKeyAssignment(SQLite::Database& db, const ProfileKey& data)
{
    SQLite::Statement insert(db, R"(INSERT INTO "t_keyprofile" ("profId", "keyvalue", "macroType", "macroValue",
                                    "macro2Value", "macro3Value", "macroDesc") VALUES (?, ?, ?, ?, ?, ?, ?))");
    insert.bind(1, data.profId);
    insert.bind(2, data.keyValue);
    insert.bind(3, data.macroType);
    insert.bind(4, data.macroValue);
    insert.bind(5, data.macro2Value);
    insert.bind(6, data.macro3Value);
    insert.bind(7, data.macroDesc.toStdString());
    insert.exec();
    return db.getLastInsertRowid();
}

std::vector<ProfileKey> keyAssignmentRows(SQLite::Statement& query)
{
    std::vector<ProfileKey> rows;
    while (query.executeStep()) {
        ProfileKey key;
        key.keyId = query.getColumn(0).getInt64();
        key.profId = query.getColumn(1).getInt();
        key.keyValue = query.getColumn(2).getInt();
        key.macroType = query.getColumn(3).getInt();
        key.macroValue = query.getColumn(4).getInt();
        key.macro2Value = query.getColumn(5).getInt();
        key.macro3Value = query.getColumn(6).getInt();
        key.macroDesc = QString::fromStdString(query.getColumn(7).getString());
        rows.push_back(std::move(key));
    }
    return rows;
}

int64_t insertMacro(SQLite::Database& db, const QString& name)
{
    SQLite::Statement insert(db, R"(INSERT INTO "t_macro_data" ("play_times", "delay_type", "delay_time", "macro_name")
                                    VALUES (1, 0, 0, ?))");
    insert.bind(1, name.toStdString());
    insert.exec();
    return db.getLastInsertRowid();
}

int setMacroInfo(SQLite::Database& db, const MacroInfo& info)
{
    SQLite::Statement update(db, R"(UPDATE "t_macro_data" SET "play_times" = ?, "delay_type" = ?, "delay_time" = ?
                                    WHERE "macro_id" = ?)");
    update.bind(1, storedPlayTimes(info.playTimes));
    update.bind(2, info.delayType);
    update.bind(3, info.delayTime);
    update.bind(4, info.macroId);
    return update.exec();
}

void setMacroName(SQLite::Database& db, int64_t macroId, const QString& name)
{
    SQLite::Statement update(db, R"(UPDATE "t_macro_data" SET "macro_name" = ? WHERE "macro_id" = ?)");
    update.bind(1, name.toStdString());
    update.bind(2, macroId);
    update.exec();
}

void deleteMacro(SQLite::Database& db, int64_t macroId)
{
    SQLite::Statement remove(db, R"(DELETE FROM "t_macro_data" WHERE "macro_id" = ?)");
    remove.bind(1, macroId);
    remove.exec();
}

void deleteSteps(SQLite::Database& db, int64_t macroId)
{
    SQLite::Statement remove(db, R"(DELETE FROM "t_macrorecord" WHERE "macro_id" = ?)");
    remove.bind(1, macroId);
    remove.exec();
}

int64_t insertStep(SQLite::Database& db, const RecordInfo& info)
{
    SQLite::Statement insert(db, R"(INSERT INTO "t_macrorecord" ("macro_id", "record_type", "record_index",
                                    "record_desc", "record_value") VALUES (?, ?, ?, ?, ?))");
    insert.bind(1, info.macroId);
    insert.bind(2, info.recordType);
    insert.bind(3, info.recordIndex);
    insert.bind(4, info.recordDesc.toStdString());
    insert.bind(5, info.recordValue);
    insert.exec();
    return db.getLastInsertRowid();
}

int64_t countRows(SQLite::Database& db, std::string_view table)
{
    SQLite::Statement count(db, "SELECT COUNT(*) FROM \"" + std::string(table) + "\"");
    count.executeStep();
    return count.getColumn(0).getInt64();
}

void logFailure(std::string_view operation, const std::exception& error)
{
    qCWarning(lcOrvane).noquote() << QString::fromUtf8(operation.data(), qsizetype(operation.size()))
                                  << "failed:" << error.what();
}

void noteFailure(const SQLite::Database& db, const std::exception& error)
{
    if (StoreHealth* health = StoreSupport::watchingHealth(db))
        health->noteFailure(error);
}

void noteSuccess(const SQLite::Database& db)
{
    StoreSupport::noteSuccess(db);
}

}  // namespace RecordStatements
