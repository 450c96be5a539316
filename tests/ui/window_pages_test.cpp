// The pages and the model list with no keyboard plugged in: what the user
// can look at without one, and how the list turns.
#include "Common/Globals.h"
#include "SQLite/LocalSQLite.h"
#include "View/MainController.h"
#include "View/ModelList.h"
#include "View/control/ButtonView.h"
#include "View/control/FlippedRect.h"
#include "View/control/FuncButton.h"
#include "View/control/KeyboardView.h"
#include "support/StoreTestSupport.h"
#include "support/WaitUntil.h"

#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class WindowWithoutKeyboard : public testing::Test {
protected:
    void SetUp() override
    {
        G_Language = kLanguageEnglish;
        controller_.viewDidLoad();
        controller_.show();
    }

    // The page buttons that show selected, by object name.
    QStringList selectedButtons() const
    {
        QStringList names;
        for (const FuncButton* b : {controller_.func_keyset, controller_.func_light, controller_.func_set,
                                    controller_.func_store})
            if (b->isSelect)
                names << b->objectName();
        return names;
    }

    QRect slot(ModelList::Slot s) const
    {
        const QRect r = ModelList::slotFrame(s);
        return flippedRect(MainController::kWindowHeight, r.x(), r.y(), r.width(), r.height());
    }

    bool listAtRest(int centre) const
    {
        for (int model = 0; model < 3; ++model)
            if (controller_.modelListButton(model)->geometry() != slot(ModelList::slotOf(model, centre)))
                return false;
        return true;
    }

    testing_support::TempDataFolder data_;
    MainController controller_{MainController::Environment{[] { return std::unique_ptr<HidManager>(); }, {}, {}}};
};

}  // namespace

TEST_F(WindowWithoutKeyboard, PagesOpenButTheKeyboardMenusStayShutAndAReconnectionShowsTheKeyPage)
{
    QTest::mouseClick(controller_.func_light, Qt::LeftButton);
    controller_.action_userlightmode_tab();
    EXPECT_TRUE(controller_.userlight_view->isVisible());
    controller_.action_menu();
    controller_.action_switchprofile();
    EXPECT_EQ(controller_.menuPopover, nullptr);
    EXPECT_EQ(controller_.profilePopover, nullptr);
    EXPECT_EQ(controller_.imgbtn_menu->toolTip(), "Please connect the device!");

    controller_.refreshUI();
    EXPECT_EQ(controller_.viewType, 1);
    EXPECT_TRUE(controller_.macro_view->isVisible());
    EXPECT_FALSE(controller_.light_view->isVisible() || controller_.userlight_view->isVisible());
    EXPECT_FALSE(controller_.userlightmode_show);
    EXPECT_EQ(selectedButtons(), QStringList{"func_keyset"});
}

TEST_F(WindowWithoutKeyboard, ATurnDuringARunningOneEndsWhereTheNewestSays)
{
    QTest::mouseClick(controller_.device_select_up, Qt::LeftButton);
    QTest::mouseClick(controller_.imgbtn_dev_down, Qt::LeftButton);
    EXPECT_EQ(controller_.keyboardType, 2);
    EXPECT_TRUE(waitUntil([&] { return listAtRest(2); }, 3000));
    EXPECT_EQ(g_device_type, 1);  // the list shows a model, it does not connect one
}

TEST_F(WindowWithoutKeyboard, TheSlidePicturesFollowEachModelsStoredCaseColour)
{
    const QString owner = QString::fromLatin1(kLocalOwner);
    controller_.localDB->updateLocalData(owner, QStringLiteral("kb_61k"), QStringLiteral("3"));
    controller_.localDB->updateLocalData(owner, QStringLiteral("kb_61k_cnc"), QStringLiteral("4"));
    controller_.localDB->updateLocalData(owner, QStringLiteral("kb_68k"), QStringLiteral("2"));
    EXPECT_EQ(controller_.getOldAnimationImage(), "kb_61k");  // no blue 61-key: white
    EXPECT_EQ(controller_.getNewAnimationImage(2), "kb_61k_cnc_purple");
    EXPECT_EQ(controller_.getNewAnimationImage(0), "kb_68k_black");
}

TEST_F(WindowWithoutKeyboard, TheNoKeyboardStateCoversThePagesInEitherLanguageAndQtsDialogsFollow)
{
    auto* pane = controller_.findChild<QWidget*>("noKeyboardPane");
    ASSERT_TRUE(pane && pane->isVisible());
    EXPECT_EQ(controller_.findChild<QLabel*>("noKeyboardTitle")->text(), "Connect your keyboard");
    // What needs the keyboard or its database can't be used, on every page.
    EXPECT_FALSE(controller_.btn_macro_newmacro->isEnabled());
    QTest::mouseClick(controller_.func_light, Qt::LeftButton);
    EXPECT_FALSE(controller_.light_view->isEnabled() || controller_.userlight_view->isEnabled());
    EXPECT_TRUE(pane->isVisible() && pane->geometry().contains(controller_.light_view->geometry().center()));
    // On the system page it covers the key locks only: starting with the
    // desktop needs no keyboard.
    QTest::mouseClick(controller_.func_set, Qt::LeftButton);
    const QPoint autostart = controller_.switch_autostart->mapTo(&controller_, controller_.switch_autostart->rect().center());
    const QPoint lock = controller_.lockSwitches[0]->mapTo(&controller_, controller_.lockSwitches[0]->rect().center());
    EXPECT_TRUE(pane->geometry().contains(lock) && !controller_.lockSwitches[0]->isEnabled());
    EXPECT_FALSE(pane->geometry().contains(autostart));
    EXPECT_TRUE(controller_.switch_autostart->isEnabled());
    controller_.noteKeyboardUnreachable("/dev/hidraw3 is not yours to open");
    auto* why = controller_.findChild<QLabel*>("noKeyboardWhy");
    EXPECT_TRUE(why->isVisible() && why->text().contains("/dev/hidraw3"));

    controller_.switchLanguage(kLanguageChinese);
    EXPECT_EQ(controller_.findChild<QLabel*>("noKeyboardTitle")->text(), QString::fromUtf8("请连接您的键盘"));
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), QString::fromUtf8("取消"));
    controller_.switchLanguage(kLanguageEnglish);
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), "Cancel");
}
