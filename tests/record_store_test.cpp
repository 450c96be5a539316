// Settings, key assignments and macros in the device database: settings
// rows exist only under their profile and key, one assignment row per key
// and profile, a value of 0 taking a key back to its default, macros with
// their numbered steps, and every replace, delete and save all or nothing.
#include "support/CapturedLines.h"
#include "SQLite/DeviceSQLite.h"
#include "support/StoreTestSupport.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

class RecordStoreTest : public testing::Test {
protected:
    TempDataFolder folder;
    DeviceSQLite store{"orvane_61k_device.sqlite3", false};

    Rows rows(const std::string& t) { return queryRows(*store.db, "SELECT * FROM \"" + t + "\" ORDER BY rowid"); }
};

ProfileKey key(int profile, int code, int type, int value) { return {0, 0, profile, code, type, value, 0, 0, "d"}; }
RecordInfo step(int64_t macroId, int64_t type, int64_t index) { return {0, macroId, type, index, 4, "a"}; }

}  // namespace

TEST_F(RecordStoreTest, ValuesExistOnlyUnderTheirProfilesAndExactKeysAndAnUpdateNeverCreatesOne)
{
    for (const auto& [profile, name, value] :
         {std::tuple{1, "currentProfile", "1"}, {5, "currentLightMode", "1"}, {2, "currentProfile", ""},
          {6, "currentLightMode", ""}, {1, "CurrentProfile", ""}, {1, "currentprofile", ""}})
        EXPECT_EQ(store.getConfigData(profile, name), value) << profile << name;

    const std::string seeded = dumpDatabase(*store.db);
    EXPECT_TRUE(store.updateConfigData(6, "disable_win", "1") && store.updateConfigData(2, "Disable_win", "1"));
    EXPECT_EQ(dumpDatabase(*store.db), seeded);
    EXPECT_TRUE(store.updateConfigData(2, "disable_win", "1"));
    EXPECT_EQ(store.getConfigData(2, "disable_win"), "1");
    EXPECT_EQ(store.getConfigData(1, "disable_win") + store.getConfigData(3, "disable_win"), "00");
    EXPECT_EQ(countRows(*store.db, "t_configdata"), 34);

    store.db->exec(R"(DROP TABLE "t_configdata")");
    EXPECT_EQ(store.getConfigData(1, "currentProfile"), "");
    EXPECT_FALSE(store.updateConfigData(1, "currentProfile", "2"));
}

TEST_F(RecordStoreTest, ProfileResetTouchesOnlyThatProfilesAssignmentsLightAndLocks)
{
    for (const ProfileKey& k : {key(1, 4, 1, 5), key(2, 5, 1, 6), key(2, 6, 1, 7)})
        store.addKeyProfile(k);
    for (int profile : {1, 2})
        for (const char* name :
             {"currentLightMode", "disable_gamemode", "disable_win", "disable_alttab", "disable_altf4"})
            store.updateConfigData(profile, name, "7");

    captureLines();
    store.resetProfile(2);
    EXPECT_EQ(capturedLines(), "");
    EXPECT_EQ(queryRows(*store.db, R"(SELECT "profId", "keyvalue" FROM "t_keyprofile")"), (Rows{{"1", "4"}}));
    EXPECT_EQ(queryRows(*store.db, R"(SELECT "key", "value" FROM "t_configdata" WHERE "profId" = 2 ORDER BY rowid)"),
              (Rows{{"currentLightMode", "1"}, {"disable_gamemode", "7"}, {"disable_win", "0"},
                    {"disable_alttab", "0"}, {"disable_altf4", "0"}}));
    EXPECT_EQ(store.getConfigData(1, "currentLightMode") + store.getConfigData(1, "disable_win"), "77");
}

TEST_F(RecordStoreTest, AKeyHasOneRowPerProfileAndAReassignedKeyMovesToTheEnd)
{
    EXPECT_EQ(store.addKeyProfile({55, 0, 1, 41, 16, 1, 0, 0, "Fn"}), 1);
    EXPECT_EQ(store.addKeyProfile({0, 7, 1, 4, 11, 127, 0, 0, "Mute"}), 2);
    EXPECT_EQ(store.addKeyProfile(key(2, 41, 18, 1)), 3);
    EXPECT_EQ(store.addKeyProfile({0, 0, 1, 41, 14, 6, 227, 9, "C"}), 4);
    EXPECT_EQ(rows("t_keyprofile"), (Rows{{"2", "1", "4", "11", "127", "0", "0", "Mute"},
              {"3", "2", "41", "18", "1", "0", "0", "d"}, {"4", "1", "41", "14", "6", "227", "9", "C"}}));

    // Appended to what the array held; the layer reads back as 0.
    std::vector<ProfileKey> found{key(9, 9, 9, 9)};
    ASSERT_TRUE(store.queryKeysProfile(1, found));
    EXPECT_EQ(found, (std::vector<ProfileKey>{key(9, 9, 9, 9), {2, 0, 1, 4, 11, 127, 0, 0, "Mute"},
                                              {4, 0, 1, 41, 14, 6, 227, 9, "C"}}));
    std::vector<ProfileKey> none;
    EXPECT_TRUE(store.queryKeysProfile(3, none) && none.empty());
}

TEST_F(RecordStoreTest, ValueZeroRemovesTheRowKeyZeroChangesNothingAFailureKeepsTheOldRow)
{
    for (int profile : {1, 2})
        store.addKeyProfile(key(profile, 41, 16, 1));
    EXPECT_EQ(store.addKeyProfile(key(1, 0, 11, 127)) + store.addKeyProfile(key(1, 30, 17, 0)), 0);
    const Rows before = rows("t_keyprofile");
    EXPECT_EQ(before.size(), 2u);
    {
        ScopedFault fault("keys.add.delete");
        EXPECT_EQ(store.addKeyProfile(key(1, 41, 11, 127)) + store.addKeyProfile(key(1, 41, 17, 0)), 0);
    }
    EXPECT_EQ(rows("t_keyprofile"), before);
    EXPECT_EQ(store.addKeyProfile(key(1, 41, 17, 0)), 0);
    EXPECT_EQ(rows("t_keyprofile"), (Rows{{"2", "2", "41", "16", "1", "0", "0", "d"}}));

    // A failed read is told from an empty profile, and the array kept.
    std::vector<ProfileKey> found{key(1, 4, 11, 127)};
    store.db->exec(R"(DROP TABLE "t_keyprofile")");
    EXPECT_FALSE(store.queryKeysProfile(1, found));
    store.db.reset();
    EXPECT_FALSE(store.queryKeysProfile(1, found));
    EXPECT_EQ(found.size(), 1u);
}

TEST_F(RecordStoreTest, ANewMacroPlaysOnceAndOnlyTheRightCallsChangeIt)
{
    EXPECT_EQ(store.addMacroProfile("Hello"), 1);
    EXPECT_EQ(store.addMacroProfile(""), 2);
    // The name changes only through its own call; unknown ids match nothing.
    EXPECT_TRUE(store.modifyMacroInfo({1, 7, 1, 40, "Ignored"}) && store.updateMacroProfileName(2, "World"));
    EXPECT_TRUE(store.modifyMacroInfo({9, 3, 1, 1, ""}) && store.updateMacroProfileName(9, "Nobody"));
    EXPECT_EQ(rows("t_macro_data"), (Rows{{"1", "7", "1", "40", "Hello"}, {"2", "1", "0", "0", "World"}}));
    // Play counts are stored within 1 to 255.
    for (const auto& [given, stored] : {std::pair{0, "1"}, {-3, "1"}, {255, "255"}, {256, "255"}}) {
        store.modifyMacroInfo({1, given, 1, 40, ""});
        EXPECT_EQ(rows("t_macro_data")[0][1], stored) << given;
    }

    MacroInfo info{5, 5, 5, 5, "untouched"};
    EXPECT_FALSE(store.queryMacroInfo(9, info));
    EXPECT_EQ(info, (MacroInfo{5, 5, 5, 5, "untouched"}));
    EXPECT_TRUE(store.queryMacroInfo(2, info));
    std::vector<MacroInfo> all{info};
    EXPECT_EQ(store.queryAllMacroData(all), 3);
    EXPECT_EQ(all, (std::vector<MacroInfo>{{2, 1, 0, 0, "World"}, {1, 255, 1, 40, "Hello"}, {2, 1, 0, 0, "World"}}));
    EXPECT_EQ(store.getMacroCount(), 2);
}

TEST_F(RecordStoreTest, StepsGoWithTheirMacroAndAFreedHighestIdIsGivenOutAgain)
{
    for (const char* name : {"A", "B", "C"})
        store.addMacroProfile(name);
    for (int i = 0; i < 3; ++i)
        store.addMacroRecord(step(2, 2 + i % 2, i));
    EXPECT_EQ(store.addMacroRecord(step(3, 1, 0)), 4);
    store.addKeyProfile({0, 0, 1, 41, 12, 2, 0, 0, "B"});

    std::vector<RecordInfo> found(2);
    EXPECT_EQ(store.queryMacroRecord(2, found), 5);
    EXPECT_EQ(found[4], (RecordInfo{3, 2, 2, 2, 4, "a"}));
    EXPECT_EQ(store.getRecordCount(), 4);
    // The key keeps naming the deleted macro, and then the next new one.
    EXPECT_TRUE(store.deleteMacroProfile(2) && store.deleteMacroProfile(3));
    EXPECT_EQ(rows("t_macrorecord"), Rows{});
    EXPECT_EQ(countRows(*store.db, "t_keyprofile"), 1);
    EXPECT_EQ(store.addMacroProfile("D"), 2);
}

TEST_F(RecordStoreTest, ASaveWritesInfoNameAndNumberedStepsAllOrNothing)
{
    const std::vector<RecordInfo> recorded{step(0, 2, 7), {0, 0, 1, 7, 50, "50 ms"}, step(0, 3, 7)};
    EXPECT_EQ(store.saveMacro({0, 3, 1, 20, "Typing"}, recorded), 1);
    EXPECT_EQ(rows("t_macrorecord"), (Rows{{"1", "1", "2", "0", "a", "4"}, {"2", "1", "1", "1", "50 ms", "50"},
                             {"3", "1", "3", "2", "a", "4"}}));
    EXPECT_EQ(store.saveMacro({1, 0, 1, 30, "Typed"}, {recorded[1]}), 1);
    EXPECT_EQ(rows("t_macro_data"), (Rows{{"1", "1", "1", "30", "Typed"}}));
    EXPECT_EQ(rows("t_macrorecord"), (Rows{{"1", "1", "1", "0", "50 ms", "50"}}));

    const std::string before = dumpDatabase(*store.db);
    // A macro deleted meanwhile is not brought back as stray steps.
    EXPECT_EQ(store.saveMacro({8, 9, 1, 1, "Gone"}, recorded), 0);
    for (const char* fault : {"macro.save.info", "macro.save.steps", "macro.save.step.3"}) {
        ScopedFault scoped(fault);
        EXPECT_EQ(store.saveMacro({1, 9, 1, 1, "Lost"}, recorded) + store.saveMacro({0, 9, 1, 1, "New"}, recorded), 0);
    }
    ScopedFault scoped("macro.delete.info");
    EXPECT_FALSE(store.deleteMacroProfile(1));
    EXPECT_EQ(dumpDatabase(*store.db), before);
}

TEST_F(RecordStoreTest, AFailedStatementSaysSoButAMissingDatabaseMatchesNothing)
{
    std::vector<MacroInfo> macroList(1);
    store.db->exec(R"(DROP TABLE "t_macro_data"; DROP TABLE "t_macrorecord")");
    EXPECT_EQ(store.queryAllMacroData(macroList) + store.addMacroProfile("A") + store.getRecordCount(), 0);
    EXPECT_EQ(macroList.size(), 1u);
    EXPECT_FALSE(store.deleteMacroProfile(1) || store.deleteMacroRecord(1) || store.modifyMacroInfo({1, 1, 1, 1, ""}));
    store.db.reset();
    EXPECT_TRUE(store.deleteMacroProfile(1) && store.deleteMacroRecord(1) && store.modifyMacroInfo({1, 1, 1, 1, ""}));
}
