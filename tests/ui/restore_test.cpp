// Restore points end to end: a full reset undone gives back every row and
// sends the keyboard everything, and that Undo can be undone in turn.
#include "SQLite/DeviceSQLite.h"
#include "SQLite/LightSQLite.h"
#include "support/TraceFrames.h"
#include "support/VirtualSession.h"

#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include <map>

using namespace testing_support;

namespace {

using Tables = std::map<std::string, Rows>;

Tables tablesOf(SQLite::Database& db)
{
    Tables out;
    for (const auto& name : queryRows(db, "SELECT name FROM sqlite_master WHERE type = 'table'"))
        out[name[0]] = queryRows(db, "SELECT * FROM \"" + name[0] + "\" ORDER BY rowid");
    return out;
}

std::string frame(std::initializer_list<uint8_t> leading) { return hexFromBytes(report(leading)); }

// The frames of one upload: the given command frames around the block's reports.
std::vector<std::string> upload(std::vector<std::string> head, const FirmwareModel::Block& block,
                                const std::vector<std::string>& tail)
{
    for (std::size_t at = 0; at < block.size(); at += 64)
        head.push_back(hexFromBytes({block.begin() + long(at), block.begin() + long(at + 64)}));
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

}  // namespace

TEST(RestorePoints, UndoOfResetAllGivesBackEveryRowAndFrameAndIsItselfUndone)
{
    VirtualSession session;
    ASSERT_TRUE(session.connected());
    MainController& c = *session.controller;
    VirtualKeyboard& keyboard = *session.keyboard;
    const auto settle = [&] { ASSERT_TRUE(c.transport().waitForIdle(std::chrono::seconds(10))); };
    const auto undo = [&] {
        auto* button = c.label_exchange->findChild<QPushButton*>("label_exchange_undo");
        ASSERT_TRUE(button && button->isVisible());
        QTest::mouseClick(button, Qt::LeftButton);
        settle();
    };
    // A macro on Escape in profile 1, Mute in profile 5, the Windows key
    // locked in profile 3, and a light saved to custom slot 2: all sent.
    DeviceSQLite& db = *c.deviceDB;
    const int64_t macro = db.saveMacro({0, 2, 1, 20, "Hi"}, {{0, 0, 2, 0, 4, "a"}, {0, 0, 3, 1, 4, "a"}});
    db.addKeyProfile({.profId = 1, .keyValue = 41, .macroType = 12, .macroValue = int(macro), .macroDesc = "Hi"});
    db.addKeyProfile({.profId = 5, .keyValue = 41, .macroType = 11, .macroValue = 127, .macroDesc = "Mute"});
    db.updateConfigData(3, "disable_win", "1");
    const int64_t light = db.addUserLightWithColours("Glow", {{0, 41, 0xff0000}});
    c.loadMacroData();
    c.loadUserlightData();
    c.loadUserLightData(light);
    c.UserLightTableMenuMsg(168);
    c.SaveMacroToKeyboard();
    for (int p = 1; p <= 5; ++p)
        c.setKeyMacroData(p);
    c.setHFDSystemSetData(3);
    settle();
    const Tables configured = tablesOf(*db.db);
    const FirmwareModel kept = keyboard.firmware();

    c.resetAllData();
    settle();
    const Tables reset = tablesOf(*c.deviceDB->db);
    const FirmwareModel blank = keyboard.firmware();
    ASSERT_NE(reset, configured);

    auto mark = lastFrameTime(keyboard);
    undo();
    const Tables undone = tablesOf(*c.deviceDB->db);
    for (const auto& [table, rows] : configured)
        EXPECT_EQ(undone.at(table), rows) << table;
    // The profile's light mode and locks, the macros, every key table, the
    // other profiles' locks, then the saved slot's colours.
    std::vector<std::vector<std::string>> uploads{
        upload({frame({4, 0x18}), frame({4, 0x13, 1, 0, 0, 0, 0, 0, 1})}, blank.lightMode(1),
               {frame({4, 0x02, 1}), frame({4, 0xf0, 1})}),
        upload({frame({4, 0x18}), frame({4, 0x17, 1, 0, 0, 0, 0, 0, 1})}, kept.systemSettings(1), {frame({4, 0x02})}),
        upload({frame({4, 0x19}), frame({4, 0x15, 0, 0, 0, 0, 0, 0, uint8_t(kept.macroStore().size() / 64)})},
               kept.macroStore(), {frame({4, 0x02})})};
    for (uint8_t p = 1; p <= 5; ++p)
        uploads.push_back(upload({frame({4, 0x18}), frame({4, 0x11, p, 0, 0, 0, 0, 0, 9})}, kept.keyTable(p),
                                 {frame({4, 0x02, p})}));
    for (uint8_t p = 2; p <= 5; ++p)
        uploads.push_back(upload({frame({4, 0x18}), frame({4, 0x17, p, 0, 0, 0, 0, 0, 1})},
                                 kept.systemSettings(p == 3 ? 3 : 1), {frame({4, 0x02})}));
    uploads.push_back(upload({frame({4, 0x18}), frame({4, 0x23, 0x82, 0, 0, 0, 0, 0, 9})}, kept.userLight(2),
                             {frame({4, 0x02}), frame({4, 0xf0})}));
    std::vector<std::string> expected;
    for (const auto& frames : uploads)
        expected.insert(expected.end(), frames.begin(), frames.end());
    EXPECT_EQ(framesSince(keyboard, mark), expected);
    EXPECT_TRUE(c.label_exchange->text().startsWith("Restored the settings of "));

    // Undoing the Undo returns to the reset state, on the keyboard too.
    undo();
    const Tables redone = tablesOf(*c.deviceDB->db);
    for (const auto& [table, rows] : reset)
        EXPECT_EQ(redone.at(table), rows) << table;
    const FirmwareModel now = keyboard.firmware();
    for (int p = 1; p <= 5; ++p)
        EXPECT_EQ(now.keyTable(p), blank.keyTable(1)) << "profile " << p;
    EXPECT_EQ(now.userLight(2), blank.userLight(2));
    EXPECT_EQ(now.macroStore(), blank.macroStore());
    EXPECT_TRUE(keyboard.protocolErrors().isEmpty()) << keyboard.protocolErrors().join("\n").toStdString();
}
