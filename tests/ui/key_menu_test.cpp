// From a click on a key of the picture to a function on the keyboard: the
// key menu at the pointer, its second levels opened by hovering, a choice
// stored for the key, shown on it and sent as the profile's key table; the
// light menu for a selection of several keys; the key tool tip.
#include "Common/Globals.h"
#include "Common/NotificationCenter.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "SQLite/DeviceSQLite.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/CustomMenu/KeyMenuViewController.h"
#include "View/CustomMenu/KeySubMenuKeyFuncViewController.h"
#include "View/CustomMenu/KeySubMenuLightViewController.h"
#include "View/CustomMenu/KeySubMenuMacroViewController.h"
#include "View/CustomWindow/KBToolTipsViewController.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/MainController.h"
#include "View/control/ButtonView.h"
#include "View/control/KeyCapsView.h"
#include "View/control/KeyboardView.h"
#include "View/control/MenuItemView.h"
#include "View/control/NamedImageView.h"
#include "View/control/SelectKeyView.h"
#include "support/FakeKeySource.h"
#include "support/HexBytes.h"
#include "support/StoreTestSupport.h"
#include "support/VirtualSession.h"
#include "support/WaitUntil.h"

#include <QColorDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

using namespace testing_support;

namespace {

constexpr int kEscape = 0;  // picture index of Escape: code 41, key table slot 1

class KeyMenu : public ::testing::Test, protected VirtualSession {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QTest::qWaitForWindowExposed(controller.get()));
        ASSERT_TRUE(connected());
        view = controller->orvane_keyboardctrl;
    }
    void TearDown() override { G_Language = kLanguageEnglish; }

    // The cursor only moves when it goes somewhere new, so it steps there.
    static void pointTo(QWidget* w, QPoint p)
    {
        QTest::mouseMove(w, p + QPoint(1, 0));
        QTest::mouseMove(w, p);
    }
    QPoint centre(int key) { return view->keyGeometry(key).center().toPoint(); }
    void clickKey(int key)
    {
        pointTo(view, centre(key));
        QTest::mouseClick(view, Qt::LeftButton, {}, centre(key));
    }
    // Moves within one window go through its window, so that the rows
    // under the pointer change as they do on a desktop.
    static void hover(QWidget* item)
    {
        pointTo(item, item->rect().center());
        QWindow* window = item->window()->windowHandle();
        const QPoint at = item->mapTo(item->window(), item->rect().center());
        QTest::mouseMove(window, at + QPoint(0, 1));
        QTest::mouseMove(window, at);
    }
    // An assignment waits for a status poll's reply that is owed: so does the test.
    void click(QWidget* item)
    {
        hover(item);
        QTest::mouseClick(item, Qt::LeftButton, {}, item->rect().center());
        waitUntil([&] { return !controller->pollReplyOwed(); });
    }
    // Opens the key menu on Escape and the second level of `entry`.
    KeySubMenuViewController* openSecondLevel(int entry)
    {
        clickKey(kEscape);
        hover(controller->keyboardKeyMenu->item(entry));
        return controller->keyboardKeySubMenu;
    }
    ProfileKey storedRow(int keyCode)
    {
        std::vector<ProfileKey> rows;
        controller->deviceDB->queryKeysProfile(controller->currentProfile, rows);
        for (const ProfileKey& row : rows)
            if (row.keyValue == keyCode)
                return row;
        return {};
    }
    // The profile's key table on the keyboard once an upload has ended.
    std::string keyTableAfterUpload()
    {
        waitUntil([&] { return !keyboard->firmware().keyTable(controller->currentProfile).empty()
                               && !controller->hidcomm_busy(); });
        return hexFromBytes(keyboard->firmware().keyTable(controller->currentProfile));
    }
    bool anyFloatingWindowShown() const
    {
        for (QWidget* w : std::initializer_list<QWidget*>{controller->keyboardKeyMenu, controller->keyboardKeySubMenu,
                                                          controller->kbKeyMacroSubMenu, controller->kbKeyLightSubMenu,
                                                          controller->keyboardToolTips})
            if (w && w->isVisible())
                return true;
        return false;
    }
    static void screenshot(QWidget* w, const QString& name)
    {
        if (const QString dir = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR"); !dir.isEmpty())
            w->grab().save(dir + "/" + name + (G_Language == kLanguageChinese ? "-zh.png" : "-en.png"));
    }

    KeyboardView* view = nullptr;
};

// The whole table with one entry in slot 1 (Escape).
std::string tableWithEscape(const std::string& entry)
{
    return "00000000" + entry + std::string(2 * (574 - 8), '0') + "aa55";
}

}  // namespace

TEST_F(KeyMenu, MuteFromTheMultimediaLevelReachesTheKeyTheStoreAndTheKeyboard)
{
    ASSERT_EQ(keyNameRecord(view->kbKeyArraySelect[kEscape].keyname)->key_code, 41);
    clickKey(kEscape);
    KeyMenuViewController* menu = controller->keyboardKeyMenu;
    ASSERT_TRUE(menu && menu->isVisible());
    EXPECT_EQ(controller->currentKeyValue, 41);
    // Opened at the pointer, eight entries 40 apart from the top.
    EXPECT_EQ(menu->pos(), view->mapToGlobal(centre(kEscape)));
    const int ids[] = {10, 11, 12, 13, 14, 16, 18, 17};
    for (int row = 0; row < 8; ++row)
        EXPECT_EQ(menu->item(ids[row])->geometry(), QRect(1, 3 + 40 * row, 158, 40)) << ids[row];

    hover(menu->menuitem_mediafuc);
    KeySubMenuViewController* sub = controller->keyboardKeySubMenu;
    ASSERT_TRUE(sub && sub->isVisible());
    // Beside the menu, 2 to the right, its top 3 + 40 below the menu's top.
    EXPECT_EQ(sub->geometry(), QRect(menu->x() + 160 + 2, menu->y() + 3 + 40, 160, 286));
    screenshot(menu, "key-menu");
    screenshot(sub, "key-submenu-media");

    click(sub->item(127));
    EXPECT_EQ(storedRow(41), (ProfileKey{.keyId = storedRow(41).keyId, .profId = controller->currentProfile,
                                         .keyValue = 41, .macroType = 11, .macroValue = 127, .macroDesc = "Mute"}));
    EXPECT_EQ(view->kbKeyArraySelect[kEscape].keyMacro, "Mute");
    EXPECT_FALSE(anyFloatingWindowShown());
    EXPECT_EQ(keyTableAfterUpload(), tableWithEscape("03e20000"));
    EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();
}

TEST_F(KeyMenu, EachSecondLevelSetAndTheDirectEntriesAssignWhatTheyName)
{
    struct Road { int entry, item; const char* title; ProfileKey row; const char* slot; };
    const Road roads[] = {
        {10, 105, "Copy", {.macroType = 10, .macroValue = 105, .macroDesc = "Copy"}, "02080600"},
        {13, 132, "Right Button", {.macroType = 13, .macroValue = 132, .macroDesc = "Right Button"}, "01010200"},
    };
    for (const Road& road : roads) {
        KeySubMenuViewController* sub = openSecondLevel(road.entry);
        screenshot(sub, QStringLiteral("key-submenu-%1").arg(road.entry == 10 ? "system" : "mouse"));
        MenuItem* item = sub->item(road.item);
        ASSERT_TRUE(item) << road.title;
        EXPECT_EQ(item->textView->text(), road.title);
        click(item);
        ProfileKey expected = road.row;
        expected.keyId = storedRow(41).keyId, expected.profId = controller->currentProfile, expected.keyValue = 41;
        EXPECT_EQ(storedRow(41), expected) << road.title;
        EXPECT_EQ(keyTableAfterUpload(), tableWithEscape(road.slot)) << road.title;
    }
    // The mouse set is shorter; its middle row sits one unit lower.
    EXPECT_EQ(controller->keyboardKeySubMenu->size(), QSize(160, 206));

    // "Default" takes the row away, and the key shows its own name again.
    clickKey(kEscape);
    click(controller->keyboardKeyMenu->menuitem_default);
    EXPECT_EQ(storedRow(41), ProfileKey{});
    EXPECT_EQ(view->kbKeyArraySelect[kEscape].keyMacro, keyCodeRecord(41)->full_name);
    EXPECT_EQ(keyTableAfterUpload(), tableWithEscape("00000000"));
}

TEST_F(KeyMenu, KeyCommandsOpensTheCaptureDialogWhosePressedKeyIsAssigned)
{
    FakeKeySource::keylogger();
    clickKey(kEscape);
    hover(controller->keyboardKeyMenu->menuitem_keyfunc);
    ASSERT_TRUE(kbKeyFuncSubMenu && kbKeyFuncSubMenu->isVisible());
    EXPECT_FALSE(controller->keyboardKeySubMenu && controller->keyboardKeySubMenu->isVisible());

    sendKey(kbKeyFuncSubMenu, QEvent::KeyPress, 30 + 8);  // A
    sendKey(kbKeyFuncSubMenu, QEvent::KeyRelease, 30 + 8);
    kbKeyFuncSubMenu->btn_okfunc->click();
    ProfileKey expected{.macroType = 14, .macroValue = 4, .macroDesc = "A"};
    expected.keyId = storedRow(41).keyId, expected.profId = controller->currentProfile, expected.keyValue = 41;
    EXPECT_EQ(storedRow(41), expected);
    EXPECT_EQ(keyTableAfterUpload(), tableWithEscape("02000400"));
    EXPECT_FALSE(kbKeyFuncSubMenu->isVisible());
    EXPECT_FALSE(anyFloatingWindowShown());
    delete kbKeyFuncSubMenu;
}

TEST_F(KeyMenu, AClickOnAnEntryWithASecondLevelClosesEverythingAndAssignsNothing)
{
    // Mouse Function after Macro: the macro list goes, the mouse set shows
    // 120 below the menu's top.
    openSecondLevel(12);
    ASSERT_TRUE(controller->kbKeyMacroSubMenu->isVisible());
    hover(controller->keyboardKeyMenu->menuitem_mouse);
    const QPoint menuTop = controller->keyboardKeyMenu->pos();
    EXPECT_FALSE(controller->kbKeyMacroSubMenu->isVisible());
    EXPECT_EQ(controller->keyboardKeySubMenu->geometry(), QRect(menuTop + QPoint(162, 3 + 120), QSize(160, 206)));
    hover(controller->keyboardKeyMenu->menuitem_mediafuc);
    click(controller->keyboardKeyMenu->menuitem_mediafuc);
    EXPECT_FALSE(anyFloatingWindowShown());
    EXPECT_EQ(storedRow(41), ProfileKey{});
}

TEST_F(KeyMenu, TheMacroListFollowsTheStoreAndItsButtonAsksForANewMacro)
{
    for (int i = 1; i <= 7; ++i)
        controller->deviceDB->addMacroProfile(QStringLiteral("Macro %1").arg(i));
    clickKey(kEscape);
    hover(controller->keyboardKeyMenu->menuitem_macro);
    KeySubMenuMacroViewController* macros = controller->kbKeyMacroSubMenu;
    ASSERT_TRUE(macros && macros->isVisible());
    EXPECT_EQ(std::pair(macros->size(), macros->macro_tableview->count()), std::pair(QSize(180, 276), 7));
    screenshot(macros, "key-submenu-macro");

    QVariant asked;
    NotificationCenter::defaultCenter().addObserver("SubMenuItemMacroAction", [&](const QVariant& o) { asked = o; }, this);
    click(macros->btn_createMacro);
    NotificationCenter::defaultCenter().removeObservers(this);
    EXPECT_EQ(asked.toMap(), (QVariantMap{{"type", 1}, {"macroid", 0}}));
    EXPECT_FALSE(macros->isVisible());

    // Choosing the second row puts that macro on the key and closes the menus.
    clickKey(kEscape);
    hover(controller->keyboardKeyMenu->menuitem_macro);
    QListWidget* list = macros->macro_tableview;
    const QRect row = list->visualItemRect(list->item(1));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row.center());
    const ProfileKey stored = storedRow(41);
    EXPECT_EQ(std::tuple(stored.macroType, stored.macroDesc, view->kbKeyArraySelect[kEscape].keyMacro),
              std::tuple(12, QString("Macro 2"), QString("Macro 2")));
    EXPECT_FALSE(anyFloatingWindowShown());
    // Clearing the selection names no macro and changes nothing.
    list->clearSelection();
    EXPECT_EQ(storedRow(41), stored);
}

TEST_F(KeyMenu, ARubberBandOverTwoKeysOpensTheLightMenuNotTheKeyMenu)
{
    clickKey(kEscape);
    controller->hideFloatingWindows();
    const QPoint from = centre(kEscape), to = centre(1);
    QTest::mousePress(view, Qt::LeftButton, {}, from);
    QTest::mouseMove(view, to);
    QTest::mouseRelease(view, Qt::LeftButton, {}, to);
    KeySubMenuLightViewController* light = controller->kbKeyLightSubMenu;
    ASSERT_TRUE(light && light->isVisible());
    EXPECT_FALSE(controller->keyboardKeyMenu->isVisible());
    EXPECT_EQ(std::pair(light->menu_type, light->size()), std::pair(1, QSize(160, 90)));
    EXPECT_EQ(light->menuitem_light_custom->textView->text(), "Light Up RGB");
    screenshot(light, "light-menu-keys");
    // "Light Up RGB" closes the menus and assigns no key.
    click(light->menuitem_light_custom);
    EXPECT_FALSE(anyFloatingWindowShown());
    EXPECT_EQ(storedRow(41), ProfileKey{});

    // On the user light tab, with a light to paint, a click paints: the
    // colour panel, no menu.
    controller->action_userlightmode_tab();
    controller->UserLightTableMenuMsg(166);
    clickKey(kEscape);
    EXPECT_TRUE(controller->colorPanel && controller->colorPanel->isVisible());
    EXPECT_FALSE(controller->keyboardKeyMenu->isVisible() || controller->kbKeyLightSubMenu->isVisible());
    controller->closeColorPanel();
}

TEST_F(KeyMenu, TheToolTipNamesTheKeyAndItsAssignmentAboveIt)
{
    ProfileKey mute{.profId = controller->currentProfile, .keyValue = 41, .macroType = 11, .macroValue = 127,
                    .macroDesc = "Mute"};
    controller->deviceDB->addKeyProfile(mute);
    controller->loadKeyMacro();
    pointTo(view, centre(kEscape));
    KBToolTipsViewController* tip = controller->keyboardToolTips;
    ASSERT_TRUE(tip && tip->isVisible());
    EXPECT_EQ(std::pair(tip->label_keydesc->text(), tip->label_keymacro->text()),
              std::pair(keyCodeRecord(41)->full_name, QString("Mute")));
    // 82 left of the key's lower edge's centre, its top 105 above that edge.
    const QRectF key = view->keyGeometry(kEscape);
    const QPoint edge = view->mapToGlobal(QPointF(key.center().x(), key.bottom()).toPoint());
    EXPECT_LE((tip->pos() - (edge + QPoint(-82, -105))).manhattanLength(), 1);
    screenshot(tip, "key-tooltip");
    pointTo(controller.get(), QPoint(5, 5));
    EXPECT_FALSE(tip->isVisible());
}

TEST_F(KeyMenu, MenusTakeTheLanguageInForceAtTheirNextShowingAndKeepStoredTexts)
{
    openSecondLevel(11);
    click(controller->keyboardKeySubMenu->item(127));
    G_Language = kLanguageChinese;
    KeySubMenuViewController* sub = openSecondLevel(11);
    KeyMenuViewController* menu = controller->keyboardKeyMenu;
    EXPECT_EQ(std::pair(menu->menuitem_mediafuc->textView->text(), sub->item(127)->textView->text()),
              std::pair(QString("多媒体"), QString("静音")));
    EXPECT_EQ(storedRow(41).macroDesc, "Mute") << "a stored text stays in the language it was chosen in";
    screenshot(menu, "key-menu");
    screenshot(sub, "key-submenu-media");
    for (int entry : {10, 13}) {
        hover(menu->item(entry));
        screenshot(controller->keyboardKeySubMenu, QStringLiteral("key-submenu-%1").arg(entry == 10 ? "system" : "mouse"));
    }
    controller->deviceDB->addMacroProfile(QStringLiteral("宏 1"));
    hover(menu->menuitem_macro);
    EXPECT_EQ(controller->kbKeyMacroSubMenu->size(), QSize(180, 96));  // one row: 36 + 60
    screenshot(controller->kbKeyMacroSubMenu, "key-submenu-macro");

    // The light menu's shapes: the second's six entries, then the third's one.
    for (const auto& [type, height, entries] : {std::tuple(2, 246, 6), std::tuple(3, 86, 2), std::tuple(1, 90, 2)}) {
        controller->showKeyLightSubMenu(type);
        KeySubMenuLightViewController* light = controller->kbKeyLightSubMenu;
        int shown = 0;
        for (MenuItem* item : light->findChildren<MenuItem*>())
            shown += item->isVisibleTo(light);
        EXPECT_EQ(std::pair(light->height(), shown), std::pair(height, entries)) << type;
        screenshot(light, QStringLiteral("light-menu-%1").arg(type));
    }
    EXPECT_EQ(controller->kbKeyLightSubMenu->menuitem_userlight_setprofile5->textView->text(), "保存到自定义模式5");
    pointTo(view, centre(kEscape));
    screenshot(controller->keyboardToolTips, "key-tooltip");
}

TEST_F(KeyMenu, RemappedCapsShowWhatTheKeysDoInTheProfileShownAndDisableTurnsAKeyOff)
{
    const auto indexOf = [&](const char* name) {
        const auto& keys = view->kbKeyArraySelect;
        return int(std::find_if(keys.begin(), keys.end(), [&](const KeyData& k) { return k.keyname == name; }) - keys.begin());
    };
    const int caps = indexOf("capsLock"), a = indexOf("a");
    controller->deviceDB->addMacroProfile(QStringLiteral("Greeting"));
    openSecondLevel(11);
    click(controller->keyboardKeySubMenu->item(127));
    clickKey(caps);
    click(controller->keyboardKeyMenu->menuitem_disable);
    EXPECT_EQ(storedRow(57), (ProfileKey{.keyId = storedRow(57).keyId, .profId = 1, .keyValue = 57, .macroType = 18,
                                         .macroValue = 1, .macroDesc = "Disable"}));
    // Caps Lock's slot 55: the disable entry 05 03 00 00.
    EXPECT_EQ(keyTableAfterUpload().substr(2 * 4 * 55, 8), "05030000");
    clickKey(a);
    hover(controller->keyboardKeyMenu->menuitem_macro);
    QListWidget* list = controller->kbKeyMacroSubMenu->macro_tableview;
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(0)).center());
    const auto shown = [&] {
        const std::vector<QString> texts = view->keyCapTexts();
        return std::vector<QString>{texts[kEscape], texts[std::size_t(caps)], texts[std::size_t(a)]};
    };
    EXPECT_EQ(shown(), (std::vector<QString>{"Mute", "Off", "M: Greeting"}));
    const std::vector<QString> all = view->keyCapTexts();
    EXPECT_EQ(std::count_if(all.begin(), all.end(), [](const QString& t) { return !t.isEmpty(); }), 3);
    EXPECT_EQ(view->kbKeyArraySelect[std::size_t(caps)].keyMacro, "Disable") << "the tool tip stays";

    // Another profile, other caps; back again, the same.
    controller->pickProfile(2);
    ASSERT_TRUE(waitUntil([&] { return controller->currentProfile == 2 && !controller->hidcomm_busy(); }));
    EXPECT_EQ(shown(), (std::vector<QString>{"", "", ""}));
    controller->pickProfile(1);
    ASSERT_TRUE(waitUntil([&] { return controller->currentProfile == 1 && !controller->hidcomm_busy(); }));
    EXPECT_EQ(shown(), (std::vector<QString>{"Mute", "Off", "M: Greeting"}));
    controller->switchLanguage(kLanguageChinese);
    EXPECT_EQ(shown(), (std::vector<QString>{"静音", "禁用", "宏：Greeting"}));
    clickKey(kEscape);
    EXPECT_EQ(controller->keyboardKeyMenu->menuitem_disable->textView->text(), "禁用按键");
    controller->switchLanguage(kLanguageEnglish);
    // Only the key page shows them: elsewhere the caps show the light.
    controller->action_func_light();
    EXPECT_FALSE(view->keyCapsView->isVisible());
    controller->action_func_key();
    EXPECT_TRUE(view->keyCapsView->isVisible());
}

TEST_F(KeyMenu, EscapeAPressOutsideAPageChangeAndAModelSwitchCloseTheOpaqueMenusWhoseKeyStaysMarked)
{
    const auto marker = [&](int key) { return view->selectKeyView(key)->imageView->isVisible(); };
    const std::vector<std::pair<const char*, std::function<void()>>> closers{
        {"Escape", [&] { QTest::keyClick(controller->keyboardKeyMenu, Qt::Key_Escape); }},
        {"a press beside the keys", [&] { QTest::mouseClick(controller.get(), Qt::LeftButton, {}, QPoint(600, 40)); }},
        {"another page", [&] { controller->action_func_light(); }},
        {"another model", [&] { controller->action_device_select_up(); }},
    };
    for (const auto& [what, close] : closers) {
        SCOPED_TRACE(what);
        controller->action_func_key();
        KeySubMenuViewController* sub = openSecondLevel(11);
        ASSERT_TRUE(controller->keyboardKeyMenu->isVisible() && sub->isVisible());
        // The pointer went over to the menu: Escape stays marked.
        hover(controller->keyboardKeyMenu->menuitem_mediafuc);
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(view, &leave);
        EXPECT_TRUE(marker(kEscape));
        EXPECT_EQ(view->markedKey(), kEscape);
        close();
        EXPECT_FALSE(anyFloatingWindowShown());
        if (std::string(what) != "another model") {
            // Let go: the marker shows only as far as the selection does.
            EXPECT_EQ(view->markedKey(), -1);
            EXPECT_EQ(marker(kEscape), view->selectKeyView(kEscape)->keyCheck);
        }
    }
    controller->action_device_select_current();

    // Opaque, with nothing of the picture showing through, at every pixel.
    for (FramelessWindow* menu : std::initializer_list<FramelessWindow*>{controller->keyboardKeyMenu,
                                                                          controller->keyboardKeySubMenu}) {
        EXPECT_FALSE(menu->testAttribute(Qt::WA_TranslucentBackground));
        const QImage image = menu->grab().toImage();
        for (const QPoint corner : {QPoint(0, 0), QPoint(image.width() - 1, image.height() - 1)})
            EXPECT_EQ(qAlpha(image.pixel(corner)), 255);
    }
}

TEST_F(KeyMenu, AKeyAssignedWhileAPollIsOutGoesToTheProfileTheKeyboardEndsOn)
{
    const std::string firstTable = hexFromBytes(keyboard->firmware().keyTable(1));
    keyboard->setActiveProfile(3);
    controller->pollKeyboardProfile();
    ASSERT_TRUE(controller->pollReplyOwed());
    openSecondLevel(11);
    click(controller->keyboardKeySubMenu->item(127));  // Escape plays Mute
    EXPECT_EQ(controller->currentProfile, 3);
    EXPECT_EQ(storedRow(41).macroValue, 127);
    EXPECT_EQ(keyTableAfterUpload().substr(2 * 4 * 1, 8), "03e20000");
    EXPECT_EQ(hexFromBytes(keyboard->firmware().keyTable(1)), firstTable);
}
