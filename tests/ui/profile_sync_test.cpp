// Profiles kept in step with a virtual keyboard: a profile's key table, the
// keyboard choosing a profile, the profile and main menus, the two resets.
#include "SQLite/DeviceSQLite.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/control/ButtonView.h"
#include "View/control/KeyboardView.h"
#include "View/control/MenuItemView.h"
#include "View/popover/MenuPopoverViewController.h"
#include "View/popover/PofilePopoverViewController.h"
#include "support/HexBytes.h"
#include "support/VirtualSession.h"

#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

using namespace testing_support;
using Kind = LightModeState::Kind;

namespace {

constexpr int kEscape = 41;  // slot 1 on every model
const std::string kEmptyTable = std::string(2 * 574, '0') + "aa55";
const std::string kNoLocks = std::string(124, '0') + "aa55";

class ProfileSync : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(session.connected());
    }
    void TearDown() override
    {
        EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();
    }

    void settle() { ASSERT_TRUE(controller->transport().waitForIdle(std::chrono::seconds(10))); }

    // Profile p: Escape plays Mute, the Windows key is locked, effect 3 + p
    // runs; all stored and sent.
    void configure(int p)
    {
        DeviceSQLite& db = *controller->deviceDB;
        db.addKeyProfile({.profId = p, .keyValue = kEscape, .macroType = 11, .macroValue = 127, .macroDesc = "Mute"});
        db.updateConfigData(p, "disable_win", "1");
        db.updateConfigData(p, "currentLightMode", QString::number(3 + p));
        controller->swicthProfile(p);
        controller->setKeyMacroData(p);
        settle();
    }

    // When the latest report arrived; the trace keeps only recent records.
    FirmwareModel::Time now() const { return keyboard->recentTrace().back().t; }

    // The headers of the uploads after `from`, as "command:target", data
    // reports left out.
    std::vector<std::string> uploads(FirmwareModel::Time from) const
    {
        std::vector<std::string> out;
        int dataLeft = 0;
        for (const TraceRecord& r : keyboard->recentTrace()) {
            const auto& d = r.data;
            if (r.t <= from || r.op != TraceRecord::Op::Set || dataLeft-- > 0)
                continue;
            if (d[1] == 0x11 || d[1] == 0x13 || d[1] == 0x17 || d[1] == 0x23) {
                out.push_back(hexFromBytes({d[1]}) + ":" + std::to_string(d[2]));
                dataLeft = d[8];
            }
        }
        return out;
    }

    std::string block(const FirmwareBlock& b) const { return hexFromBytes(b); }
    QString legendOf(int keyCode) const
    {
        const auto& keys = controller->orvane_keyboardctrl->kbKeyArraySelect;
        return keys[std::size_t(*picturePosition(keyCode, int(keys.size())))].keyMacro;
    }

    VirtualSession session;
    const std::shared_ptr<VirtualBus>& bus = session.bus;
    const std::shared_ptr<VirtualKeyboard>& keyboard = session.keyboard;
    const std::unique_ptr<MainController>& controller = session.controller;
};

}  // namespace

TEST_F(ProfileSync, ResetAllClearsProfiles1To4OnTheKeyboardAndLeavesProfile5AndTheOtherEffects)
{
    for (int p = 1; p <= 5; ++p)
        configure(p);
    const FirmwareModel before = keyboard->firmware();
    ASSERT_EQ(before.state().keyAt(5, 1), (KeyEntry{3, 0xE2, 0, 0}));
    ASSERT_TRUE(before.state().locksOf(5).windowsKey);
    const auto mark = now();

    controller->resetAllData();
    settle();
    const FirmwareModel after = keyboard->firmware();
    EXPECT_EQ(uploads(mark), (std::vector<std::string>{"13:1", "17:1", "11:1", "11:2", "11:3", "11:4", "17:1", "17:2",
                                                      "17:3", "17:4", "23:129", "23:130", "23:131", "23:132",
                                                      "23:133", "23:134"}));
    // The custom light slots end blank: no colour, the marker only.
    for (int slot = 1; slot <= 6; ++slot)
        EXPECT_EQ(block(after.userLight(slot)), kEmptyTable) << "slot " << slot;
    for (int p = 1; p <= 4; ++p) {
        EXPECT_EQ(block(after.keyTable(p)), kEmptyTable) << "profile " << p;
        EXPECT_EQ(block(after.systemSettings(p)), kNoLocks) << "profile " << p;
    }
    EXPECT_EQ(after.lightModeState(1), (LightModeState{Kind::BuiltIn, 1, true}));
    for (int p = 2; p <= 5; ++p)
        EXPECT_EQ(block(after.lightMode(p)), block(before.lightMode(p))) << "profile " << p;
    EXPECT_EQ(block(after.keyTable(5)), block(before.keyTable(5)));
    EXPECT_EQ(block(after.systemSettings(5)), block(before.systemSettings(5)));
    EXPECT_EQ(controller->currentProfile, 1);
    EXPECT_EQ(legendOf(kEscape), keyCodeRecord(kEscape)->full_name);
    EXPECT_EQ(controller->deviceDB->getConfigData(5, "disable_win"), "0") << "the store is seeded anew";
    // No macros are left: the keyboard gets the empty store, and a line says it is done.
    EXPECT_EQ(testing_support::hexFromBytes(after.macroStore()), std::string(2 * 510, '0') + "aa55");
    EXPECT_EQ(controller->label_exchange->text(),
              "Everything is reset: profiles, macros and light modes are back to the defaults.");
}

TEST_F(ProfileSync, AStoredAssignmentGoesOutWithItsTableAndShowsWhenTheKeyboardPicksItsProfile)
{
    // Escape plays Mute in profile 3; F1 (58), which the 61-key model lacks,
    // must not land anywhere.
    DeviceSQLite& db = *controller->deviceDB;
    db.addKeyProfile({.profId = 3, .keyValue = kEscape, .macroType = 11, .macroValue = 127, .macroDesc = "Mute"});
    db.addKeyProfile({.profId = 3, .keyValue = 58, .macroType = 16, .macroValue = 1, .macroDesc = "Fn"});
    db.updateConfigData(3, "disable_win", "1");
    db.updateConfigData(3, "currentLightMode", "6");
    settle();
    EXPECT_TRUE(keyboard->firmware().keyTable(3).empty()) << "storing alone sends nothing";
    controller->setKeyMacroData(3);
    settle();
    EXPECT_EQ(block(keyboard->firmware().keyTable(3)), "00000000" "03e20000" + kEmptyTable.substr(16));
    for (int other : {1, 2, 4, 5})
        EXPECT_TRUE(keyboard->firmware().keyTable(other).empty()) << "profile " << other;

    // The keyboard picks profile 3 itself: one poll later the window shows it.
    keyboard->setActiveProfile(3);
    const auto mark = now();
    controller->pollKeyboardProfile();
    settle();
    EXPECT_EQ(controller->currentProfile, 3);
    EXPECT_EQ(controller->imgbtn_profile->text(), "Profile C");
    EXPECT_EQ(legendOf(kEscape), "Mute");
    EXPECT_EQ(legendOf(43), keyCodeRecord(43)->full_name) << "a key without a row keeps its name";
    EXPECT_TRUE(controller->lockSwitches[0]->isChecked());
    EXPECT_EQ(uploads(mark), (std::vector<std::string>{"13:3", "17:3"}));
    EXPECT_EQ(keyboard->firmware().lightModeState(3), (LightModeState{Kind::BuiltIn, 6, true}));
}

TEST_F(ProfileSync, TheProfileMenuSwitchesAndClosesAndFollowsTheLanguage)
{
    QTest::mouseClick(controller->imgbtn_profile, Qt::LeftButton);
    PofilePopoverViewController* menu = controller->profilePopover;
    ASSERT_TRUE(menu && menu->isVisible());
    QTest::mouseClick(menu->profileB, Qt::LeftButton);
    settle();
    EXPECT_FALSE(menu->isVisible());
    EXPECT_EQ(controller->currentProfile, 2);
    EXPECT_EQ(controller->deviceDB->getConfigData(1, "currentProfile"), "2");
    EXPECT_EQ(controller->imgbtn_profile->text(), "Profile B");

    controller->switchLanguage(kLanguageChinese);
    EXPECT_EQ(controller->imgbtn_profile->text(), "模式 B");
    controller->action_menu();
    EXPECT_EQ(controller->menuPopover->exportItem->textView->text(), "导入配置");
    controller->closePopovers();

    // Without a keyboard neither menu opens.
    bus->unplug(keyboard);
    ASSERT_TRUE(waitUntil([&] { return !controller->deviceState; }));
    controller->action_switchprofile();
    controller->action_menu();
    EXPECT_FALSE(menu->isVisible());
    EXPECT_FALSE(controller->menuPopover->isVisible());
}

TEST_F(ProfileSync, ResetCurrentAsksFirstAndOnlyOKResetsTheProfileInUse)
{
    configure(2);
    configure(3);
    const auto mark = now();
    auto chooseResetCurrent = [&](const char* button) {
        controller->timetickcount = 0;  // a second ago, as far as the debounce knows
        controller->action_menu();
        QTest::mouseClick(controller->menuPopover->resetCurItem, Qt::LeftButton);
        EXPECT_FALSE(controller->menuPopover->isVisible());
        QPointer<QMessageBox> alert = controller->resetAlert;
        ASSERT_TRUE(alert && alert->isVisible());
        EXPECT_EQ(alert->windowModality(), Qt::WindowModal);
        // Cancel first, and the default.
        EXPECT_EQ(alert->buttons(), (QList<QAbstractButton*>{alert->defaultButton(), alert->findChild<QPushButton*>("resetAlertOK")}));
        // It names the profile and what goes back; the reset button says so too.
        EXPECT_EQ(alert->text(), "Reset Profile C?");
        EXPECT_TRUE(alert->informativeText().startsWith("Its key assignments, light mode and key locks go back to the defaults."));
        EXPECT_EQ(alert->findChild<QPushButton*>("resetAlertOK")->text(), "Reset Profile C");
        QTest::mouseClick(alert->findChild<QPushButton*>(button), Qt::LeftButton);
        settle();
    };
    chooseResetCurrent("resetAlertCancel");
    EXPECT_TRUE(uploads(mark).empty());
    EXPECT_EQ(controller->deviceDB->getConfigData(3, "currentLightMode"), "6");

    chooseResetCurrent("resetAlertOK");
    EXPECT_EQ(controller->label_exchange->text(), "Profile C is back to its defaults.");
    // The settings go out with the switch and once more after the table.
    EXPECT_EQ(uploads(mark), (std::vector<std::string>{"13:3", "17:3", "11:3", "17:3"}));
    EXPECT_EQ(block(keyboard->firmware().keyTable(3)), kEmptyTable);
    EXPECT_EQ(keyboard->firmware().state().locksOf(3), LockSettings{});
    EXPECT_EQ(keyboard->firmware().lightModeState(3), (LightModeState{Kind::BuiltIn, 1, true}));
    EXPECT_EQ(keyboard->firmware().state().keyAt(2, 1), (KeyEntry{3, 0xE2, 0, 0}));
    EXPECT_EQ(controller->deviceDB->getConfigData(2, "currentLightMode"), "5");
}

// Every text of the system page, the two menus and the reset question fits
// its place in both languages. With ORVANE_SCREENSHOT_DIR set, the screens
// are also written there as PNGs, one set per language.
TEST_F(ProfileSync, TheSystemPageMenusAndQuestionFitTheirTextsInBothLanguages)
{
    const QString folder = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR");
    controller->light_view->hide();
    controller->userlight_view->hide();
    controller->sysset_view->show();
    auto clipped = [](QWidget* root) {
        QStringList out;
        for (QLabel* label : root->findChildren<QLabel*>())
            if (label->isVisibleTo(root) && !label->wordWrap()
                && label->fontMetrics().horizontalAdvance(label->text()) > label->contentsRect().width())
                out << label->text();
        return out.join(", ").toStdString();
    };
    // The window with `popup` drawn where it stands on screen.
    auto shot = [&](QWidget* popup, const QString& name) {
        QPixmap pixmap = controller->grab();
        if (QPainter painter(&pixmap); popup)
            painter.drawPixmap(popup->pos() - controller->mapToGlobal(QPoint()), popup->grab());
        if (!folder.isEmpty())
            pixmap.save(folder + '/' + name + ".png");
    };
    for (int language : {kLanguageEnglish, kLanguageChinese}) {
        controller->switchLanguage(language);
        const QString tag = language == kLanguageChinese ? "-zh" : "-en";
        EXPECT_EQ(clipped(controller->sysset_view), "");
        shot(nullptr, "system-page" + tag);
        auto check = [&](QWidget* popup, const QString& name) {
            ASSERT_TRUE(popup && popup->isVisible());
            EXPECT_EQ(clipped(popup), "") << name.toStdString();
            shot(popup, name + tag);
            popup->close();
        };
        controller->action_switchprofile();
        check(controller->profilePopover, "profile-menu");
        controller->action_menu();
        check(controller->menuPopover, "main-menu");
        controller->askToReset(1003);
        check(controller->resetAlert, "reset-all-question");
    }
}
