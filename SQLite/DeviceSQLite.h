#pragma once
// DeviceSQLite: the device database. One SQLite file per keyboard family
// holds everything the user configures for that family on this machine:
// settings per profile ("t_configdata"), key assignments, user light modes
// with their per-key colours, and macros with their steps.
//
// A new object is made on every keyboard connection and replaces the one
// before. Opening creates the database folder, the nine tables and the 34
// settings rows of a new file; an existing file keeps what it has. If
// opening fails, `db` stays empty and the object still answers every call
// with a neutral result: "" for a read, true for a write (nothing matched),
// nothing at all for the rest. No exception leaves the class; `health` keeps
// how the opening went (a damaged file moved aside, a locked or read-only
// file) and the reason of the latest failure, for the window's messages.
//
// Operations of several statements (seeding, wiping with reseeding,
// resetting a profile) each run in one transaction, so an error or a crash
// leaves them either done or not started, never half done.
//
// Sources by topic: DeviceSQLite.cpp (opening, schema, seeding, wiping,
// profile reset), DeviceSQLiteConfig.cpp (the settings rows).

#include "Common/AppProfileRules.h"
#include "Common/Records.h"
#include "SQLite/StoreResult.h"

#include <SQLiteCpp/Database.h>

#include <QString>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// The file of a keyboard family, by `g_device_type`: the 68-key model has a
// file of its own, every other value shares the 61-key file.
QString deviceDatabaseFileName(int deviceType);

// The layout version of the device database. Kept in the local settings
// under "version"; a change moves the device file aside and builds a new one
// on the next connection.
inline constexpr const char* kDeviceDatabaseVersion = "1.1";

enum class VersionAction {
    None,    // the stored version matches, or it could not be read
    Write,   // no version row: insert one
    Update,  // another version, or an empty one: overwrite it in place
};

struct VersionCheck {
    bool reset = false;  // move the device file aside and build a new one
    VersionAction action = VersionAction::None;
    bool operator==(const VersionCheck&) const = default;
};

// What to do for the "version" read from the local settings. A read that
// failed is not a missing version: the device file is then used as it is.
VersionCheck checkDeviceDatabaseVersion(const StoreRead& stored);

struct LEDData;

class DeviceSQLite {
public:
    // Opens `device` in the database folder; with `reset`, an existing file
    // is moved aside first. Then creates missing tables and seeds a new file.
    DeviceSQLite(const QString& device, bool reset);
    ~DeviceSQLite();
    DeviceSQLite(const DeviceSQLite&) = delete;
    DeviceSQLite& operator=(const DeviceSQLite&) = delete;

    // True when the file is open, writable and was created and seeded
    // without a failure.
    bool isReady() const;

    // Creates the missing tables, each in its own statement, then seeds.
    void createTable();
    // Inserts the 34 settings rows, all or none, unless "t_configdata"
    // already holds any row.
    void initDBdata();
    // Inserts the five settings rows of one profile, all or none.
    void writeConfigInfo(int profile);

    // Full wipe: drops all nine tables and creates and seeds them again, in
    // one transaction. A failure, also a missing table, leaves the file as it
    // was and prints "dropTable table failed " and the error. False then,
    // and without a connection.
    bool dropTable();
    // Deletes the profile's key assignments and sets its light mode and key
    // locks back to their defaults, in one transaction. "disable_gamemode",
    // light modes, macros and other profiles stay. False when nothing was
    // reset.
    bool resetProfile(int profile);

    // The value of a setting of one profile; "" when the profile has no such
    // row or the query fails. Keys are compared exactly, case included.
    QString getConfigData(int profile, const QString& keyValue) const;
    // The same read, saying whether it found the row (Ok), found none
    // (Missing) or failed: what is sent to the keyboard comes only from a
    // read that did not fail.
    StoreRead readConfigData(int profile, const QString& keyValue) const;
    // Sets an existing setting; never creates a row. False only when the
    // statement fails: a missing row changes nothing and answers true.
    bool updateConfigData(int profile, const QString& keyValue, const QString& newvalue);

    // ---- Key assignments and macros ----------------------------------------
    // Sources: DeviceSQLiteKeys.cpp (key assignments), MacroSQLite.cpp (the
    // macros), MacroMngSQLite.cpp (their steps and the whole save).
    // Neutral answers as above: 0 for an id or a count, false for a query,
    // true for a write that found no connection. A failure is logged under
    // lcOrvane and prints none of the given lines.

    // Replaces the assignment of one key in one profile: deletes its row and,
    // unless `macroValue` is 0 (back to the default), inserts the new one, in
    // one transaction, so a failure keeps the old assignment. The new row id,
    // or 0 when nothing was inserted. `keyValue` 0 changes nothing.
    int64_t addKeyProfile(const ProfileKey& data);
    // Appends the profile's assignments in the order they were made. False
    // when the query fails; the array is then left as it was.
    bool queryKeysProfile(int profile, std::vector<ProfileKey>& dataArray) const;

    // A new macro with one play and no delay; its id, 0 on failure.
    int64_t addMacroProfile(const QString& macro_name);
    // The macro and its steps, in one transaction. Assignments that name the
    // macro stay: they fall back to the key's own function when sent.
    bool deleteMacroProfile(int64_t macorId);
    bool deleteMacroRecord(int64_t macorId);
    bool updateMacroProfileName(int64_t macorId, const QString& macro_name);
    // Play count (kept within 1 to 255), delay type and delay; not the name.
    bool modifyMacroInfo(const MacroInfo& info);
    // Overwrites `info` only when the macro exists.
    bool queryMacroInfo(int64_t macorId, MacroInfo& info) const;
    // Appends every macro in list order; the array's size afterwards, 0 on
    // failure with the array left as it was.
    int queryAllMacroData(std::vector<MacroInfo>& dataArray) const;
    int64_t getMacroCount() const;
    // One step; `recordId` is ignored. The new id, 0 on failure.
    int64_t addMacroRecord(const RecordInfo& info);
    // Appends the macro's steps in the order they were saved; size and
    // failure as queryAllMacroData.
    int queryMacroRecord(int64_t macorId, std::vector<RecordInfo>& dataArray) const;
    // The same read, false when it failed: no steps is then no answer, and
    // what goes to the keyboard must not take it for an empty macro.
    bool readMacroSteps(int64_t macroId, std::vector<RecordInfo>& steps) const;
    int64_t getRecordCount() const;
    // Saves a macro whole, in one transaction: creates it when `info.macroId`
    // is below 1, sets its play count, delays and name (`info.macroName`),
    // and replaces its steps with `steps`, numbered from 0 in list order.
    // The macro's id, or 0 when nothing was changed (also for an id that
    // names no macro).
    int64_t saveMacro(const MacroInfo& info, const std::vector<RecordInfo>& steps);

    // ---- User light modes (DeviceLightSQLite.cpp) --------------------------
    // Modes belong to the file, not to a profile. Queries append in row
    // order and answer false on failure with the array left as it was.
    bool queryUserLightList(std::vector<userLightData>& dataArray) const;
    // The new mode's id (speed and brightness 10), 0 on failure.
    int64_t addUserLight(const QString& name);
    // The mode's row only: its colours stay under its id.
    bool deleteUserLight(int64_t userLight);
    // The mode's row and its colours, in one transaction, so that a mode
    // added later under the same id starts without colours.
    bool deleteUserLightWithColours(int64_t userLight);
    bool modifyUserLightName(int64_t userLight, const QString& name);
    bool queryKeyRGB(int profile, int64_t lightid, std::vector<RGBData>& dataArray) const;
    // Sets or, with `rgbvalue` 0, clears one key's colour in a mode: deletes
    // the key's row (of any profile) and inserts the new one, in one
    // transaction, so a failure keeps the old colour. `keyvalue` 0 changes
    // nothing.
    void insertKeyRGB(const RGBData& data);
    // insertKeyRGB for every entry, all in one transaction: a paint pass is
    // stored whole or not at all. False when it was rolled back.
    bool insertKeyRGBPass(const std::vector<RGBData>& pass);

    // ---- Exchange files ------------------------------------------------------
    // Source: DeviceSQLiteExchange.cpp. What an import writes, each in one
    // transaction: on failure the database stays as it was, `health` keeps
    // why.

    // Each row as addKeyProfile writes it, in order: a later row of a key
    // wins, `macroValue` 0 removes the key's row, `keyValue` 0 is skipped.
    bool addKeyProfiles(const std::vector<ProfileKey>& rows);
    // A new user light mode named `name` ("speed" and "brightness" 10) with
    // the colours, stored under profile 1 as painting stores them: one row
    // per key, the later colour of a key wins, colour 0 and key 0 store
    // nothing. The new mode's id; 0 when nothing was stored.
    int64_t addUserLightWithColours(const QString& name, const std::vector<LEDData>& leds);

    // ---- Profiles that follow the application in front ----------------------
    // Source: DeviceSQLiteAppRules.cpp. The rules live beside the profiles of
    // this model, in "t_apprule": a full wipe clears them, a profile reset
    // keeps them, no exchange file carries them. False when the read fails;
    // `rules` is then left as it was.
    bool queryAppRules(AppRuleSet& rules) const;
    // Replaces every rule, in one transaction. False when nothing changed.
    bool saveAppRules(const AppRuleSet& rules);

    // Empty when opening failed.
    std::unique_ptr<SQLite::Database> db;
    mutable StoreHealth health;

private:
    void failed(const std::exception& error) const;
    // The throwing building blocks of the transactions above.
    void createAllTables();
    void seedConfigRows();
    void insertProfileSettings(int profile);
    void setConfigValue(int profile, const std::string& key, const std::string& value);
};
