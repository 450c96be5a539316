// A stored key assignment, sent as its profile's key table to a virtual
// keyboard and shown on the key of the picture.
#include "SQLite/DeviceSQLite.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/control/KeyboardView.h"
#include "support/HexBytes.h"
#include "support/VirtualSession.h"

#include <gtest/gtest.h>

using namespace testing_support;

TEST(KeyTableUpload, AStoredAssignmentReachesItsSlotInItsProfileAndBecomesTheKeysText)
{
    VirtualSession session;
    MainController& controller = *session.controller;
    const auto& keyboard = session.keyboard;
    ASSERT_TRUE(session.connected());

    // Escape (code 41, slot 1) plays Mute in profile 3; a code the 61-key
    // model lacks (F1, 58) is stored too and must not land anywhere.
    constexpr int kEscape = 41;
    ProfileKey mute{.profId = 3, .keyValue = kEscape, .macroType = 11, .macroValue = 127, .macroDesc = "Mute"};
    ASSERT_GT(controller.deviceDB->addKeyProfile(mute), 0);
    ProfileKey foreign{.profId = 3, .keyValue = 58, .macroType = 16, .macroValue = 1, .macroDesc = "Fn"};
    ASSERT_GT(controller.deviceDB->addKeyProfile(foreign), 0);
    EXPECT_TRUE(keyboard->firmware().keyTable(3).empty()) << "storing alone sends nothing";

    controller.setKeyMacroData(3);
    ASSERT_TRUE(waitUntil([&] { return !keyboard->firmware().keyTable(3).empty() && !controller.hidcomm_busy(); }));
    EXPECT_EQ(hexFromBytes(keyboard->firmware().keyTable(3)),
              "00000000" "03e20000" + std::string(2 * (574 - 8), '0') + "aa55");
    EXPECT_EQ(keyboard->firmware().state().profile(3).keys.at(1), (KeyEntry{3, 0xE2, 0, 0}));
    for (int other : {1, 2, 4, 5})
        EXPECT_TRUE(keyboard->firmware().keyTable(other).empty()) << "profile " << other;

    controller.currentProfile = 3;
    controller.loadKeyMacro();
    const auto& keys = controller.orvane_keyboardctrl->kbKeyArraySelect;
    const auto escape = picturePosition(kEscape, int(keys.size()));
    ASSERT_TRUE(escape);
    EXPECT_EQ(keys[std::size_t(*escape)].keyMacro, "Mute");
    const auto tab = picturePosition(43, int(keys.size()));
    ASSERT_TRUE(tab);
    EXPECT_EQ(keys[std::size_t(*tab)].keyMacro, keyCodeRecord(43)->full_name) << "a key without a row keeps its name";

    // Back in a profile without rows, the key shows its own name again.
    controller.currentProfile = 1;
    controller.loadKeyMacro();
    EXPECT_EQ(keys[std::size_t(*escape)].keyMacro, keyCodeRecord(kEscape)->full_name);
    EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();
}
