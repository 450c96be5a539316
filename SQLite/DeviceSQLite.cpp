// Opening, schema, seeding, wiping and the profile reset of the device
// database.

#include "Common/OutputLine.h"
#include "SQLite/DeviceSQLite.h"

#include "Common/DeviceModel.h"

#include "SQLite/StoreSupport.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <array>
#include <string_view>

namespace {

struct TableSchema {
    std::string_view name;
    std::string_view create;
};

// In creation order. The first column of each is the row id, which inserts
// leave out so that SQLite numbers the rows.
constexpr std::array<TableSchema, 9> kTables{{
    {"t_profile",
     R"(CREATE TABLE IF NOT EXISTS "t_profile" ("profId" INTEGER PRIMARY KEY NOT NULL, "name" TEXT))"},
    {"t_configdata",
     R"(CREATE TABLE IF NOT EXISTS "t_configdata" ("keyId" INTEGER PRIMARY KEY NOT NULL, "key" TEXT NOT NULL, )"
     R"("profId" INTEGER NOT NULL, "value" TEXT NOT NULL))"},
    {"t_lightdata",
     R"(CREATE TABLE IF NOT EXISTS "t_lightdata" ("lightId" INTEGER PRIMARY KEY NOT NULL, "profId" INTEGER NOT NULL, )"
     R"("name" TEXT, "mode" INTEGER NOT NULL, "byte1" INTEGER NOT NULL, "byte2" INTEGER NOT NULL, )"
     R"("byte3" INTEGER NOT NULL, "byte4" INTEGER NOT NULL, "byte5" INTEGER NOT NULL, "byte6" INTEGER NOT NULL, )"
     R"("byte7" INTEGER NOT NULL, "byte8" INTEGER NOT NULL, "byte9" INTEGER NOT NULL, "byte10" INTEGER NOT NULL, )"
     R"("byte11" INTEGER NOT NULL, "status" INTEGER NOT NULL))"},
    {"t_userlightdata",
     R"(CREATE TABLE IF NOT EXISTS "t_userlightdata" ("userlightId" INTEGER PRIMARY KEY NOT NULL, )"
     R"("lightName" TEXT NOT NULL, "speed" INTEGER NOT NULL, "brightness" INTEGER NOT NULL))"},
    {"t_keyrgbdata",
     R"(CREATE TABLE IF NOT EXISTS "t_keyrgbdata" ("rgbId" INTEGER PRIMARY KEY NOT NULL, "lightId" INTEGER NOT NULL, )"
     R"("profId" INTEGER NOT NULL, "keyvalue" INTEGER NOT NULL, "rgbvalue" INTEGER NOT NULL))"},
    {"t_keyprofile",
     R"(CREATE TABLE IF NOT EXISTS "t_keyprofile" ("keyId" INTEGER PRIMARY KEY NOT NULL, "profId" INTEGER NOT NULL, )"
     R"("keyvalue" INTEGER NOT NULL, "macroType" INTEGER NOT NULL, "macroValue" INTEGER NOT NULL, )"
     R"("macro2Value" INTEGER NOT NULL, "macro3Value" INTEGER NOT NULL, "macroDesc" TEXT NOT NULL))"},
    {"t_macro_data",
     R"(CREATE TABLE IF NOT EXISTS "t_macro_data" ("macro_id" INTEGER PRIMARY KEY NOT NULL, )"
     R"("play_times" INTEGER NOT NULL, "delay_type" INTEGER NOT NULL, "delay_time" INTEGER NOT NULL, )"
     R"("macro_name" TEXT NOT NULL))"},
    {"t_macrorecord",
     R"(CREATE TABLE IF NOT EXISTS "t_macrorecord" ("record_id" INTEGER PRIMARY KEY NOT NULL, )"
     R"("macro_id" INTEGER NOT NULL, "record_type" INTEGER NOT NULL, "record_index" INTEGER NOT NULL, )"
     R"("record_desc" TEXT NOT NULL, "record_value" INTEGER NOT NULL))"},
    // Which profile follows which application in front; seeding leaves it
    // empty. A row with an empty "app" holds the profile for every other
    // application (0: leave the profile as it is).
    {"t_apprule",
     R"(CREATE TABLE IF NOT EXISTS "t_apprule" ("ruleId" INTEGER PRIMARY KEY NOT NULL, "app" TEXT NOT NULL, )"
     R"("profId" INTEGER NOT NULL))"},
}};

// The wipe has its own order, settings first: when several tables are
// missing, the first of them in this list is the one reported.
constexpr std::array<std::string_view, 9> kDropOrder{
    "t_configdata", "t_profile",    "t_lightdata",   "t_userlightdata", "t_keyrgbdata",
    "t_keyprofile", "t_macro_data", "t_macrorecord", "t_apprule",
};

struct Setting {
    std::string_view key;
    std::string_view value;
};

// Settings rows 1 to 9, all under profile 1.
constexpr std::array<Setting, 9> kSharedSettings{{
    {"currentProfile", "1"},
    {"currentUserLightMode", "1"},
    {"UserLight1", "0"},
    {"UserLight2", "0"},
    {"UserLight3", "0"},
    {"UserLight4", "0"},
    {"UserLight5", "0"},
    {"deviceType", "1"},
    {"keyboardColorMode", "1"},
}};

// The group every profile gets, rows 10 + 5(p-1) to 14 + 5(p-1).
constexpr std::array<Setting, 5> kProfileSettings{{
    {"currentLightMode", "1"},
    {"disable_gamemode", "0"},
    {"disable_win", "0"},
    {"disable_alttab", "0"},
    {"disable_altf4", "0"},
}};

constexpr int kSeededProfiles = 5;

// What a profile reset sets back; "disable_gamemode" is deliberately absent.
constexpr std::array<Setting, 4> kResetSettings{{
    {"currentLightMode", "1"},
    {"disable_win", "0"},
    {"disable_alttab", "0"},
    {"disable_altf4", "0"},
}};

void insertSetting(SQLite::Database& db, std::string_view key, int profile, std::string_view value)
{
    SQLite::Statement insert(db, R"(INSERT INTO "t_configdata" ("key", "profId", "value") VALUES (?, ?, ?))");
    insert.bind(1, std::string(key));
    insert.bind(2, profile);
    insert.bind(3, std::string(value));
    insert.exec();
}

void reachSeedRow(int row)
{
    StoreSupport::reachStep("device.seed." + std::to_string(row));
}

}  // namespace

QString deviceDatabaseFileName(int deviceType)
{
    return deviceType == DeviceModel::kDeviceType68k ? QStringLiteral("orvane_68k_device.sqlite3") : QStringLiteral("orvane_61k_device.sqlite3");
}

VersionCheck checkDeviceDatabaseVersion(const StoreRead& stored)
{
    if (stored.result == StoreResult::Missing)
        return {true, VersionAction::Write};
    if (stored.result != StoreResult::Ok || stored.value == QLatin1String(kDeviceDatabaseVersion))
        return {false, VersionAction::None};
    return {true, VersionAction::Update};
}

DeviceSQLite::DeviceSQLite(const QString& device, bool reset)
{
    auto opening = StoreSupport::openInDatabaseFolder(device, reset);
    db = std::move(opening.db);
    health = std::move(opening.health);
    StoreSupport::watchFailures(db, health);
    // A file another program holds is left alone: each wait costs seconds.
    if (!db || health.opening.result == StoreResult::Busy)
        return;
    createTable();
    OutputLine::print("init: connect success");
}

DeviceSQLite::~DeviceSQLite()
{
    StoreSupport::forgetFailures(db);
}

bool DeviceSQLite::isReady() const
{
    return db && health.opening.ok() && health.lastFailure.ok();
}

void DeviceSQLite::failed(const std::exception& error) const
{
    health.noteFailure(error);
}

void DeviceSQLite::createAllTables()
{
    for (const auto& table : kTables)
        db->exec(std::string(table.create));
}

void DeviceSQLite::createTable()
{
    if (!db)
        return;
    try {
        // Each table commits by itself: tables created before a failure stay
        // and the next opening adds the rest.
        createAllTables();
    } catch (const std::exception& e) {
        failed(e);
        OutputLine::print(std::string("createTable fail ") + e.what());
        return;
    }
    initDBdata();
    OutputLine::print("createTable success");
}

void DeviceSQLite::seedConfigRows()
{
    // Any row at all means that the table is seeded.
    if (SQLite::Statement(*db, R"(SELECT * FROM "t_configdata" LIMIT 1)").executeStep())
        return;
    int row = 0;
    for (const auto& setting : kSharedSettings) {
        insertSetting(*db, setting.key, 1, setting.value);
        reachSeedRow(++row);
    }
    for (int profile = 1; profile <= kSeededProfiles; ++profile)
        insertProfileSettings(profile);
}

void DeviceSQLite::insertProfileSettings(int profile)
{
    int row = int(kSharedSettings.size()) + int(kProfileSettings.size()) * (profile - 1);
    for (const auto& setting : kProfileSettings) {
        insertSetting(*db, setting.key, profile, setting.value);
        reachSeedRow(++row);
    }
}

void DeviceSQLite::initDBdata()
{
    if (!db)
        return;
    try {
        SQLite::Transaction transaction(*db);
        seedConfigRows();
        transaction.commit();
    } catch (const std::exception& e) {
        failed(e);
        OutputLine::print(std::string("insertRow  fail ") + e.what());
    }
}

void DeviceSQLite::writeConfigInfo(int profile)
{
    if (!db)
        return;
    try {
        SQLite::Transaction transaction(*db);
        insertProfileSettings(profile);
        transaction.commit();
    } catch (const std::exception& e) {
        // No line on standard output for the per-profile rows.
        failed(e);
    }
}

bool DeviceSQLite::dropTable()
{
    if (!db)
        return false;
    try {
        // Dropping and reseeding together: the file is never left without
        // tables, and the next opening finds it seeded and adds nothing.
        SQLite::Transaction transaction(*db);
        for (const auto table : kDropOrder) {
            db->exec("DROP TABLE \"" + std::string(table) + "\"");
            StoreSupport::reachStep("device.drop." + std::string(table));
        }
        createAllTables();
        StoreSupport::reachStep("device.recreate");
        seedConfigRows();
        StoreSupport::reachStep("device.wipe.commit");
        transaction.commit();
    } catch (const std::exception& e) {
        failed(e);
        OutputLine::print(std::string("dropTable table failed ") + e.what());
        return false;
    }
    OutputLine::print("dropTable  success");
    return true;
}

bool DeviceSQLite::resetProfile(int profile)
{
    if (!db)
        return false;
    try {
        SQLite::Transaction transaction(*db);
        SQLite::Statement remove(*db, R"(DELETE FROM "t_keyprofile" WHERE "profId" = ?)");
        remove.bind(1, profile);
        remove.exec();
        StoreSupport::reachStep("device.reset.delete");
        for (const auto& setting : kResetSettings) {
            setConfigValue(profile, std::string(setting.key), std::string(setting.value));
            StoreSupport::reachStep("device.reset." + std::string(setting.key));
        }
        StoreSupport::reachStep("device.reset.commit");
        transaction.commit();
        return true;
    } catch (const std::exception& e) {
        failed(e);
        OutputLine::print(std::string("resetProfile  fail ") + e.what());
        return false;
    }
}
