#include "support/CapturedLines.h"
#include "SQLite/DeviceSQLite.h"
#include "support/StoreTestSupport.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

class ConfigRecordsTest : public testing::Test {
protected:
    TempDataFolder folder;
    DeviceSQLite store{"orvane_61k_device.sqlite3", false};

    Rows keyAssignments()
    {
        return queryRows(*store.db, R"(SELECT "profId", "keyvalue" FROM "t_keyprofile" ORDER BY rowid)");
    }
};

}  // namespace

TEST_F(ConfigRecordsTest, ValuesExistOnlyUnderTheirProfilesAndExactKeys)
{
    EXPECT_EQ(store.getConfigData(1, "currentProfile"), "1");
    EXPECT_EQ(store.getConfigData(2, "currentProfile"), "");
    EXPECT_EQ(store.getConfigData(5, "currentLightMode"), "1");
    EXPECT_EQ(store.getConfigData(6, "currentLightMode"), "");
    EXPECT_EQ(store.getConfigData(1, "CurrentProfile"), "");
    EXPECT_EQ(store.getConfigData(1, "currentprofile"), "");
}

TEST_F(ConfigRecordsTest, UpdateChangesOneRowAndNeverCreatesOne)
{
    const std::string seeded = dumpDatabase(*store.db);
    EXPECT_TRUE(store.updateConfigData(6, "disable_win", "1"));
    EXPECT_TRUE(store.updateConfigData(2, "Disable_win", "1"));
    EXPECT_EQ(dumpDatabase(*store.db), seeded);

    EXPECT_TRUE(store.updateConfigData(2, "disable_win", "1"));
    EXPECT_EQ(store.getConfigData(2, "disable_win"), "1");
    EXPECT_EQ(store.getConfigData(1, "disable_win"), "0");
    EXPECT_EQ(store.getConfigData(3, "disable_win"), "0");
    EXPECT_EQ(countRows(*store.db, "t_configdata"), 34);
}

TEST_F(ConfigRecordsTest, FailingStatementsAnswerEmptyAndFalse)
{
    store.db->exec(R"(DROP TABLE "t_configdata")");
    EXPECT_EQ(store.getConfigData(1, "currentProfile"), "");
    EXPECT_FALSE(store.updateConfigData(1, "currentProfile", "2"));
}

TEST_F(ConfigRecordsTest, ProfileResetTouchesOnlyThatProfilesAssignmentsLightAndLocks)
{
    store.db->exec(R"(INSERT INTO "t_keyprofile" ("profId", "keyvalue", "macroType", "macroValue", "macro2Value",
                      "macro3Value", "macroDesc") VALUES (1, 4, 1, 5, 0, 0, 'A'), (2, 5, 1, 6, 0, 0, 'B'),
                      (2, 6, 1, 7, 0, 0, 'C'))");
    for (int profile : {1, 2})
        for (const char* key : {"currentLightMode", "disable_gamemode", "disable_win", "disable_alttab", "disable_altf4"})
            store.updateConfigData(profile, key, "7");

    captureLines();
    store.resetProfile(2);
    EXPECT_EQ(capturedLines(), "");

    EXPECT_EQ(keyAssignments(), (Rows{{"1", "4"}}));
    EXPECT_EQ(queryRows(*store.db, R"(SELECT "key", "value" FROM "t_configdata" WHERE "profId" = 2 ORDER BY rowid)"),
              (Rows{{"currentLightMode", "1"},
                    {"disable_gamemode", "7"},
                    {"disable_win", "0"},
                    {"disable_alttab", "0"},
                    {"disable_altf4", "0"}}));
    EXPECT_EQ(store.getConfigData(1, "currentLightMode"), "7");
    EXPECT_EQ(store.getConfigData(1, "disable_win"), "7");
}
