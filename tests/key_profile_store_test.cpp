// Key assignments in the device database: one row per key and profile, a
// value of 0 taking the key back to its default, the replace all or nothing.
#include "SQLite/DeviceSQLite.h"
#include "support/StoreTestSupport.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

class KeyProfileStoreTest : public testing::Test {
protected:
    TempDataFolder folder;
    DeviceSQLite store{"orvane_61k_device.sqlite3", false};

    Rows rows() { return queryRows(*store.db, R"(SELECT * FROM "t_keyprofile" ORDER BY rowid)"); }
};

ProfileKey key(int profile, int code, int type, int value) { return {0, 0, profile, code, type, value, 0, 0, "d"}; }

}  // namespace

TEST_F(KeyProfileStoreTest, AKeyHasOneRowPerProfileAndAReassignedKeyMovesToTheEnd)
{
    EXPECT_EQ(store.addKeyProfile({55, 0, 1, 41, 16, 1, 0, 0, "Fn"}), 1);
    EXPECT_EQ(store.addKeyProfile({0, 7, 1, 4, 11, 127, 0, 0, "Mute"}), 2);
    EXPECT_EQ(store.addKeyProfile(key(2, 41, 18, 1)), 3);
    EXPECT_EQ(store.addKeyProfile({0, 0, 1, 41, 14, 6, 227, 9, "C"}), 4);
    EXPECT_EQ(rows(), (Rows{{"2", "1", "4", "11", "127", "0", "0", "Mute"},
                            {"3", "2", "41", "18", "1", "0", "0", "d"},
                            {"4", "1", "41", "14", "6", "227", "9", "C"}}));

    // Appended to what the array held; the layer reads back as 0.
    std::vector<ProfileKey> found{key(9, 9, 9, 9)};
    ASSERT_TRUE(store.queryKeysProfile(1, found));
    EXPECT_EQ(found, (std::vector<ProfileKey>{key(9, 9, 9, 9), {2, 0, 1, 4, 11, 127, 0, 0, "Mute"},
                                              {4, 0, 1, 41, 14, 6, 227, 9, "C"}}));
    std::vector<ProfileKey> none;
    EXPECT_TRUE(store.queryKeysProfile(3, none) && none.empty());
}

TEST_F(KeyProfileStoreTest, ValueZeroRemovesTheRowKeyZeroChangesNothingAFailureKeepsTheOldRow)
{
    store.addKeyProfile(key(1, 41, 16, 1));
    store.addKeyProfile(key(2, 41, 16, 1));
    EXPECT_EQ(store.addKeyProfile(key(1, 0, 11, 127)) + store.addKeyProfile(key(1, 30, 17, 0)), 0);
    const Rows before = rows();
    EXPECT_EQ(before.size(), 2u);
    {
        ScopedFault fault("keys.add.delete");
        EXPECT_EQ(store.addKeyProfile(key(1, 41, 11, 127)) + store.addKeyProfile(key(1, 41, 17, 0)), 0);
    }
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(store.addKeyProfile(key(1, 41, 17, 0)), 0);
    EXPECT_EQ(rows(), (Rows{{"2", "2", "41", "16", "1", "0", "0", "d"}}));

    // A failed read is told from an empty profile, and the array kept.
    std::vector<ProfileKey> found{key(1, 4, 11, 127)};
    store.db->exec(R"(DROP TABLE "t_keyprofile")");
    EXPECT_FALSE(store.queryKeysProfile(1, found));
    store.db.reset();
    EXPECT_FALSE(store.queryKeysProfile(1, found));
    EXPECT_EQ(found.size(), 1u);
}
