// The key locks on the system page, end to end on a virtual keyboard.
#include "SQLite/DeviceSQLite.h"
#include "support/HexBytes.h"
#include "support/VirtualSession.h"

#include <QAbstractButton>
#include <QTest>
#include <gtest/gtest.h>

using namespace testing_support;

TEST(SystemPage, LockingAltF4InProfile2ReachesProfile2OnlyAndFollowsTheProfile)
{
    VirtualSession session;
    MainController& controller = *session.controller;
    const auto& keyboard = session.keyboard;
    auto follow = [&](int profile) {
        keyboard->setActiveProfile(profile);
        controller.pollKeyboardProfile();
        return waitUntil([&] { return controller.currentProfile == profile && !controller.hidcomm_busy(); });
    };
    ASSERT_TRUE(session.connected());
    auto block = [&](int profile) { return hexFromBytes(keyboard->firmware().systemSettings(profile)); };
    const std::string freeBlock = std::string(124, '0') + "aa55";
    EXPECT_EQ(block(1), freeBlock) << "the connection sends profile 1's locks";

    ASSERT_TRUE(follow(2));
    QAbstractButton* altF4 = controller.lockSwitches[2];
    controller.sysset_view->show();
    QTest::mouseClick(altF4, Qt::LeftButton, {}, QPoint(8, altF4->height() / 2));
    ASSERT_TRUE(waitUntil([&] { return !block(2).empty() && block(2) != freeBlock; }));
    EXPECT_EQ(block(2), "8400000000000000000000000000000000000000000000000000000000000000"
                        "000000000000000000000000000000000000000000000000000000000000aa55");
    EXPECT_EQ(block(1), freeBlock);
    EXPECT_EQ(controller.deviceDB->getConfigData(1, "disable_altf4"), "0");

    // The switch shows the lock of the profile in use only.
    ASSERT_TRUE(follow(1));
    EXPECT_FALSE(altF4->isChecked());
    ASSERT_TRUE(follow(2));
    EXPECT_TRUE(altF4->isChecked());
    EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();
}
