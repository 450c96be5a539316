#include "support/CapturedLines.h"
#include "Common/DataPaths.h"
#include "Common/Globals.h"
#include "Language/LanguageTag.h"
#include "SQLite/LocalSQLite.h"
#include "support/StoreTestSupport.h"

#include <gtest/gtest.h>

#include <QFile>

using namespace testing_support;

namespace {

class LocalStoreTest : public testing::Test {
protected:
    TempDataFolder folder;
};

const Rows kSeedRows{{"orvane", "autorun", "0"}, {"orvane", "kb_61k", "1"}, {"orvane", "kb_61k_cnc", "1"},
                     {"orvane", "kb_68k", "1"}};

Rows allRows(LocalSQLite& store)
{
    return queryRows(*store.db, R"(SELECT "device_name", "key", "value" FROM "t_localdata" ORDER BY rowid)");
}

}  // namespace

// Seeding runs in one transaction, and only into a table without any row.
TEST_F(LocalStoreTest, FailedSeedingLeavesNoRowTheNextOpeningSeedsAndAnyRowStopsSeeding)
{
    captureLines();
    {
        ScopedFault fault("local.seed.3");
        LocalSQLite store(kLocalDatabaseFile);
        EXPECT_TRUE(allRows(store).empty());
    }
    EXPECT_EQ(capturedLines(), "insertRow fail injected\ncreateTable success\ninit: connect success\n");
    { LocalSQLite seeded(kLocalDatabaseFile); }
    LocalSQLite reopened(kLocalDatabaseFile);
    EXPECT_EQ(allRows(reopened), kSeedRows);

    reopened.db->exec(R"(DELETE FROM "t_localdata"; INSERT INTO "t_localdata" VALUES ('someone', 'x', 'y'))");
    LocalSQLite again(kLocalDatabaseFile);
    EXPECT_EQ(allRows(again), (Rows{{"someone", "x", "y"}}));
}

TEST_F(LocalStoreTest, ReadsAndUpdatesMatchOwnerAndKeyExactly)
{
    LocalSQLite store(kLocalDatabaseFile);
    EXPECT_EQ(store.getLocalData("orvane", "language"), "");
    EXPECT_TRUE(store.updateLocalData("orvane", "language", "en-US"));
    EXPECT_EQ(allRows(store), kSeedRows);
    EXPECT_EQ(store.getLocalData("orvane", "kb_68k"), "1");
    EXPECT_EQ(store.getLocalData("orvane", "KB_68k") + store.getLocalData("Orvane", "kb_68k"), "");

    // The writer always inserts; a read takes the first row, an update all.
    for (const char* tag : {"zh-Hans-CN", "en-US"})
        EXPECT_TRUE(store.writeLocalData("orvane", "language", tag));
    EXPECT_EQ(store.getLocalData("orvane", "language"), "zh-Hans-CN");
    EXPECT_TRUE(store.updateLocalData("orvane", "language", "fr-FR"));
    EXPECT_EQ(queryRows(*store.db, R"(SELECT "value" FROM "t_localdata" WHERE "key" = 'language')"),
              (Rows{{"fr-FR"}, {"fr-FR"}}));

    // Inside, a missing row and a failed read stay apart; outside both are "".
    EXPECT_EQ(store.readLocalData("orvane", "version").result, StoreResult::Missing);
    store.db->exec(R"(DROP TABLE "t_localdata")");
    EXPECT_EQ(store.readLocalData("orvane", "kb_68k").result, StoreResult::Failed);
    EXPECT_EQ(store.getLocalData("orvane", "kb_68k"), "");
    EXPECT_FALSE(store.updateLocalData("orvane", "kb_68k", "2") || store.writeLocalData("orvane", "kb_68k", "2"));
    EXPECT_NE(store.health.lastFailure.reason.find("no such table"), std::string::npos);
}

TEST_F(LocalStoreTest, UnopenableFolderGivesAUsableStoreWithNeutralAnswers)
{
    // The data folder is a regular file, so the database folder cannot exist.
    QFile(folder.path() + "/blocker").open(QIODevice::WriteOnly);
    DataPaths::setDataFolderOverride(folder.path() + "/blocker");
    captureLines();
    LocalSQLite store(kLocalDatabaseFile);
    EXPECT_TRUE(capturedLines().starts_with("init: connect fail ") && !store.db);
    EXPECT_EQ(store.getLocalData("orvane", "kb_68k"), "");
    EXPECT_TRUE(store.updateLocalData("orvane", "kb_68k", "2"));
    EXPECT_TRUE(store.writeLocalData("orvane", "language", "en-US"));
}

TEST(LanguageRule, ADesktopTagWithARegionGainsItsScriptAndOnlyZhHansCNIsChinese)
{
    const int zh = kLanguageChinese, en = kLanguageEnglish;
    for (const auto& [desktop, tag, language] :
         {std::tuple{"zh-CN", "zh-Hans-CN", zh}, {"zh_CN", "zh-Hans-CN", zh}, {"zh-Hans-CN", "zh-Hans-CN", zh},
          {"zh", "zh", en}, {"zh-Hans", "zh-Hans", en}, {"zh-TW", "zh-Hant-TW", en}, {"en-US", "en-US", en},
          {"de-DE", "de-DE", en}, {"C", "en-US", en}}) {
        EXPECT_EQ(languageTagFor(desktop), tag) << desktop;
        EXPECT_EQ(languageIdForTag(tag), language) << tag;
    }
    for (const char* stored : {"zh-hans-cn", "zh-Hant-TW", ""})
        EXPECT_EQ(languageIdForTag(stored), kLanguageEnglish) << stored;
}
