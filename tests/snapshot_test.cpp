// Restore points on disk: their names, and which of them a new one prunes.
#include "SQLite/Snapshot.h"
#include "support/StoreTestSupport.h"

#include <QFileInfo>
#include <gtest/gtest.h>

using namespace testing_support;

TEST(Snapshots, BeyondTheNewestTenOnlyTheNewestOfEachKindStaysAndOtherModelsAreLeftAlone)
{
    TempDataFolder data;
    SQLite::Database live(":memory:", SQLite::OPEN_READWRITE);
    live.exec("CREATE TABLE t (v INTEGER)");
    const QDateTime start(QDate(2026, 11, 24), QTime(8, 0, 0));
    ASSERT_TRUE(Snapshots::take(live, "68k", "reset-all", start).ok());
    ASSERT_TRUE(Snapshots::take(live, "61k", "reset-all", start).ok());
    ASSERT_TRUE(Snapshots::take(live, "61k", "import-keys", start.addSecs(1)).ok());
    // Twelve deletes, two in each second.
    for (int i = 0; i < 12; ++i)
        ASSERT_TRUE(Snapshots::take(live, "61k", "delete-macro", start.addSecs(10 + i / 2)).ok());

    QStringList names;
    for (const Snapshots::Snapshot& s : Snapshots::list("61k"))
        names << QFileInfo(s.path).fileName();
    EXPECT_EQ(names, (QStringList{"61k-20261124-080015-2-delete-macro.sqlite3", "61k-20261124-080015-delete-macro.sqlite3",
                                  "61k-20261124-080014-2-delete-macro.sqlite3", "61k-20261124-080014-delete-macro.sqlite3",
                                  "61k-20261124-080013-2-delete-macro.sqlite3", "61k-20261124-080013-delete-macro.sqlite3",
                                  "61k-20261124-080012-2-delete-macro.sqlite3", "61k-20261124-080012-delete-macro.sqlite3",
                                  "61k-20261124-080011-2-delete-macro.sqlite3", "61k-20261124-080011-delete-macro.sqlite3",
                                  "61k-20261124-080001-import-keys.sqlite3", "61k-20261124-080000-reset-all.sqlite3"}));
    EXPECT_EQ(Snapshots::list("68k").size(), 1u);
    // A copy that is not a device database is never restored.
    std::string failure;
    EXPECT_FALSE(Snapshots::restore(live, Snapshots::list("68k")[0].path, failure));
    EXPECT_EQ(failure, "the file holds no table t_configdata");
}
