#include "support/CapturedLines.h"
#include "Common/DataPaths.h"
#include "Common/Globals.h"
#include "Language/LanguageTag.h"
#include "SQLite/LocalSQLite.h"
#include "support/StoreTestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

using namespace testing_support;

namespace {

class LocalStoreTest : public testing::Test {
protected:
    TempDataFolder folder;
    std::string file = folder.databasePath(kLocalDatabaseFile);
};

const Rows kSeedRows{
    {"orvane", "autorun", "0"},
    {"orvane", "kb_61k", "1"},
    {"orvane", "kb_61k_cnc", "1"},
    {"orvane", "kb_68k", "1"},
};

Rows allRows(LocalSQLite& store)
{
    return queryRows(*store.db, R"(SELECT "device_name", "key", "value" FROM "t_localdata" ORDER BY rowid)");
}

}  // namespace

TEST_F(LocalStoreTest, NewFileIsSeededOnceWithTheFourMachineSettings)
{
    captureLines();
    { LocalSQLite first(kLocalDatabaseFile); }
    EXPECT_EQ(capturedLines(), "createTable success\ninit: connect success\n");

    LocalSQLite reopened(kLocalDatabaseFile);
    ASSERT_TRUE(reopened.db);
    EXPECT_EQ(allRows(reopened), kSeedRows);
}

TEST_F(LocalStoreTest, ATableHoldingAnyRowIsNotSeeded)
{
    QDir().mkpath(DataPaths::databaseFolder());
    {
        SQLite::Database raw(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        raw.exec(R"(CREATE TABLE "t_localdata" ("device_name" TEXT NOT NULL, "key" TEXT NOT NULL, "value" TEXT NOT NULL))");
        raw.exec(R"(INSERT INTO "t_localdata" VALUES ('someone', 'x', 'y'))");
    }
    LocalSQLite store(kLocalDatabaseFile);
    EXPECT_EQ(allRows(store), (Rows{{"someone", "x", "y"}}));
}

TEST_F(LocalStoreTest, ReadsAndUpdatesMatchOwnerAndKeyExactly)
{
    LocalSQLite store(kLocalDatabaseFile);
    EXPECT_EQ(store.getLocalData("orvane", "language"), "");
    EXPECT_TRUE(store.updateLocalData("orvane", "language", "en-US"));
    EXPECT_EQ(allRows(store), kSeedRows);

    EXPECT_EQ(store.getLocalData("orvane", "kb_68k"), "1");
    EXPECT_EQ(store.getLocalData("orvane", "KB_68k"), "");
    EXPECT_EQ(store.getLocalData("Orvane", "kb_68k"), "");

    // The writer always inserts; a read takes the first row, an update all.
    EXPECT_TRUE(store.writeLocalData("orvane", "language", "zh-Hans-CN"));
    EXPECT_TRUE(store.writeLocalData("orvane", "language", "en-US"));
    EXPECT_EQ(store.getLocalData("orvane", "language"), "zh-Hans-CN");
    EXPECT_TRUE(store.updateLocalData("orvane", "language", "fr-FR"));
    EXPECT_EQ(queryRows(*store.db, R"(SELECT "value" FROM "t_localdata" WHERE "key" = 'language')"),
              (Rows{{"fr-FR"}, {"fr-FR"}}));

    // Inside, a missing row and a failed read stay apart; outside both are "".
    EXPECT_EQ(store.readLocalData("orvane", "version").result, StoreResult::Missing);
    store.db->exec(R"(DROP TABLE "t_localdata")");
    EXPECT_EQ(store.readLocalData("orvane", "kb_68k").result, StoreResult::Failed);
    EXPECT_EQ(store.getLocalData("orvane", "kb_68k"), "");
    EXPECT_FALSE(store.updateLocalData("orvane", "kb_68k", "2"));
    EXPECT_FALSE(store.writeLocalData("orvane", "kb_68k", "2"));
    EXPECT_NE(store.health.lastFailure.reason.find("no such table"), std::string::npos);
}

TEST_F(LocalStoreTest, FailedSeedingLeavesNoRowAndTheNextOpeningSeeds)
{
    captureLines();
    {
        ScopedFault fault("local.seed.3");
        LocalSQLite store(kLocalDatabaseFile);
        EXPECT_TRUE(allRows(store).empty());
    }
    EXPECT_EQ(capturedLines(), "insertRow fail injected\ncreateTable success\ninit: connect success\n");

    LocalSQLite reopened(kLocalDatabaseFile);
    EXPECT_EQ(allRows(reopened), kSeedRows);
}

TEST_F(LocalStoreTest, UnopenableFolderGivesAUsableStoreWithNeutralAnswers)
{
    // The data folder is a regular file, so the database folder cannot exist.
    const QString blocker = folder.path() + "/blocker";
    QFile(blocker).open(QIODevice::WriteOnly);
    DataPaths::setDataFolderOverride(blocker);

    captureLines();
    LocalSQLite store(kLocalDatabaseFile);
    EXPECT_TRUE(capturedLines().starts_with("init: connect fail "));
    EXPECT_FALSE(store.db);
    EXPECT_EQ(store.getLocalData("orvane", "kb_68k"), "");
    EXPECT_TRUE(store.updateLocalData("orvane", "kb_68k", "2"));
    EXPECT_TRUE(store.writeLocalData("orvane", "language", "en-US"));
}

TEST(LanguageRule, ADesktopTagWithARegionGainsItsScriptAndOnlyZhHansCNIsChinese)
{
    const std::vector<std::tuple<const char*, const char*, int>> cases{
        {"zh-CN", "zh-Hans-CN", kLanguageChinese}, {"zh_CN", "zh-Hans-CN", kLanguageChinese},
        {"zh-Hans-CN", "zh-Hans-CN", kLanguageChinese}, {"zh", "zh", kLanguageEnglish},
        {"zh-Hans", "zh-Hans", kLanguageEnglish}, {"zh-TW", "zh-Hant-TW", kLanguageEnglish},
        {"en-US", "en-US", kLanguageEnglish}, {"de-DE", "de-DE", kLanguageEnglish},
        {"C", "en-US", kLanguageEnglish},
    };
    for (const auto& [desktop, tag, language] : cases) {
        EXPECT_EQ(languageTagFor(desktop), tag) << desktop;
        EXPECT_EQ(languageIdForTag(tag), language) << tag;
    }
    for (const char* stored : {"zh-hans-cn", "zh-Hant-TW", ""})
        EXPECT_EQ(languageIdForTag(stored), kLanguageEnglish) << stored;
}
