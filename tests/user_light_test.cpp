// User light modes in the device database and the colour block a slot gets:
// one row per key and mode, 0 clearing a key, ids given out again, every
// replace and paint pass all or nothing, and the block's cells and marker.
#include "Protocol/UserLightColorBlock.h"
#include "SQLite/DeviceSQLite.h"
#include "support/HexBytes.h"
#include "support/StoreTestSupport.h"

#include <gtest/gtest.h>

using namespace testing_support;
using Protocol::LedColour;

namespace {

class UserLightStoreTest : public testing::Test {
protected:
    TempDataFolder folder;
    DeviceSQLite store{"orvane_61k_device.sqlite3", false};

    Rows colours() { return queryRows(*store.db, R"(SELECT * FROM "t_keyrgbdata" ORDER BY "rgbId")"); }
    std::vector<RGBData> query(int profile, int64_t mode)
    {
        std::vector<RGBData> rows;
        EXPECT_TRUE(store.queryKeyRGB(profile, mode, rows));
        return rows;
    }
};

std::string zeros(std::size_t bytes) { return std::string(2 * bytes, '0'); }

}  // namespace

TEST(UserLightColorBlock, CellsCarryTheLedNumberAndColourAndTheMarkerEndsTheBlock)
{
    const std::vector<LedColour> leds{{1, 0xFF0000}, {14, 0x00FF80}, {121, 0x123456}, {14, 0x0000FF},
                                      {144, 0xFFFFFF}, {-1, 0xFFFFFF}};
    const auto block = Protocol::userLightColorBlock(leds);
    // Cell 1 at byte 4, cell 14 at byte 56 (the later entry wins), cell 121
    // at byte 484; LEDs outside the block are left out.
    EXPECT_EQ(hexFromBytes({block.begin(), block.end()}),
              zeros(4) + "01ff0000" + zeros(48) + "0e0000ff" + zeros(424) + "79123456" + zeros(86) + "aa55");
    const auto blank = Protocol::userLightColorBlock({});
    EXPECT_EQ(hexFromBytes({blank.begin(), blank.end()}), zeros(574) + "aa55");
}

TEST_F(UserLightStoreTest, ModesAndTheirColoursKeepOneRowPerKeyAndIdsComeBackWithTheirColours)
{
    std::vector<userLightData> list;
    EXPECT_TRUE(store.queryUserLightList(list));
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(store.addUserLight("Light 1"), 1);
    EXPECT_EQ(store.addUserLight("Light 2"), 2);
    EXPECT_TRUE(store.modifyUserLightName(2, "Sunset") && store.modifyUserLightName(9, "None"));
    EXPECT_TRUE(store.queryUserLightList(list));
    EXPECT_EQ(list, (std::vector<userLightData>{{1, "Light 1", 10, 10}, {2, "Sunset", 10, 10}}));

    store.insertKeyRGB({0, 1, 1, 20, 0x112233});
    store.insertKeyRGB({0, 2, 1, 20, 0x445566});
    store.insertKeyRGB({0, 1, 1, 20, 0xABCDEF});  // painted again: one row, a new id
    store.insertKeyRGB({0, 1, 1, 21, 0});         // unpainted and cleared: nothing
    store.insertKeyRGB({0, 1, 1, 0, 0x111111});   // no key: nothing
    EXPECT_EQ(colours(), (Rows{{"2", "2", "1", "20", "4478310"}, {"3", "1", "1", "20", "11259375"}}));
    EXPECT_TRUE(query(2, 1).empty());
    store.insertKeyRGB({0, 2, 1, 20, 0});
    EXPECT_TRUE(query(1, 2).empty());

    // The colours outlive their mode and come back with its id.
    EXPECT_TRUE(store.deleteUserLight(2) && store.deleteUserLight(1));
    store.insertKeyRGB({0, 2, 1, 30, 0x010203});
    EXPECT_EQ(store.addUserLight("Light 1"), 1);
    EXPECT_EQ(query(1, 1), (std::vector<RGBData>{{3, 1, 1, 20, 0xABCDEF}}));
}

TEST_F(UserLightStoreTest, AFailedReplaceKeepsTheOldColourAndAFailedPassChangesNoKey)
{
    store.insertKeyRGB({0, 1, 1, 20, 0x112233});
    store.insertKeyRGB({0, 1, 1, 21, 0x445566});
    const Rows before = colours();
    const std::vector<RGBData> pass{{0, 1, 1, 20, 0}, {0, 1, 1, 21, 0x00FF00}, {0, 1, 1, 22, 0x00FF00}};
    {
        ScopedFault fault("light.rgb.delete");
        store.insertKeyRGB({0, 1, 1, 20, 0x999999});
        EXPECT_EQ(colours(), before);
    }
    {
        ScopedFault fault("light.pass.3");
        EXPECT_FALSE(store.insertKeyRGBPass(pass));
        EXPECT_EQ(colours(), before);
    }
    EXPECT_TRUE(store.insertKeyRGBPass(pass));
    EXPECT_EQ(colours(), (Rows{{"1", "1", "1", "21", "65280"}, {"2", "1", "1", "22", "65280"}}));

    std::vector<RGBData> kept{{7, 7, 7, 7, 7}};
    store.db->exec(R"(DROP TABLE "t_keyrgbdata")");
    EXPECT_FALSE(store.queryKeyRGB(1, 1, kept));
    EXPECT_EQ(kept.size(), 1u);
    EXPECT_FALSE(store.insertKeyRGBPass(pass));
}
