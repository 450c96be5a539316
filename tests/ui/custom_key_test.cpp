// A key pressed in the capture dialog becomes the assignment of a key of the
// picture: stored, shown on the key and sent in the profile's key table.
#include "Common/Globals.h"
#include "Common/Records.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "SQLite/DeviceSQLite.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/CustomMenu/KeySubMenuKeyFuncViewController.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/MainController.h"
#include "View/control/KeyboardView.h"
#include "support/FakeKeySource.h"
#include "support/HexBytes.h"
#include "support/StoreTestSupport.h"
#include "support/WaitUntil.h"

#include <QApplication>
#include <QDir>
#include <QImageWriter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QWindow>
#include <gtest/gtest.h>

using namespace testing_support;

namespace {

constexpr int kEscape = 41;
constexpr int kTab = 43;

// A key as X11 and Wayland deliver it to the focused window: its native
// scan code is the evdev code plus 8.
void key(QWidget* window, QEvent::Type type, int qtKey, quint32 scanCode)
{
    QKeyEvent event(type, qtKey, Qt::NoModifier, scanCode, 0, 0);
    QCoreApplication::sendEvent(window->windowHandle(), &event);
}

class CustomKey : public testing::Test {
protected:
    void SetUp() override
    {
        FakeKeySource::keylogger();
        G_Language = kLanguageEnglish;
        MainController::Environment env;
        env.hidManagerFactory = [bus = bus] { return std::make_unique<VirtualHidManager>(bus); };
        controller = std::make_unique<MainController>(env);
        controller->viewDidLoad();
        controller->show();
        bus->plug(keyboard);
        ASSERT_TRUE(waitUntil([&] { return controller->currentTransport() && !controller->hidcomm_busy(); }));
    }
    void TearDown() override { delete kbKeyFuncSubMenu; }

    std::vector<ProfileKey> rows(int profile)
    {
        std::vector<ProfileKey> found;
        controller->deviceDB->queryKeysProfile(profile, found);
        return found;
    }
    QString legend(int keyCode)
    {
        const auto& keys = controller->orvane_keyboardctrl->kbKeyArraySelect;
        return keys.at(std::size_t(*picturePosition(keyCode, int(keys.size())))).keyMacro;
    }
    // Confirms the dialog and waits until the keyboard holds a table other than `before`.
    std::vector<uint8_t> confirmAndReadTable(QPushButton* button, const std::vector<uint8_t>& before)
    {
        button->click();
        EXPECT_TRUE(waitUntil([&] { return keyboard->firmware().keyTable(2) != before && !controller->hidcomm_busy(); }));
        return keyboard->firmware().keyTable(2);
    }
    // The dialog over the keyboard picture, as the window shows it, when
    // ORVANE_SCREENSHOT_DIR names a folder.
    void screenshot(KeySubMenuKeyFuncViewController* dialog, const QString& name)
    {
        const QString dir = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR");
        if (dir.isEmpty())
            return;
        QApplication::processEvents();
        const QRect area(195, 105, 700, 350);
        QPixmap shot = controller->grab(area);
        QPainter(&shot).drawPixmap(dialog->pos() - controller->mapToGlobal(area.topLeft()), dialog->grab());
        QImageWriter writer(QDir(dir).filePath(name + ".png"));
        writer.setQuality(0);
        writer.write(shot.toImage().convertToFormat(QImage::Format_RGB888));
    }

    TempDataFolder data;
    std::shared_ptr<VirtualBus> bus = std::make_shared<VirtualBus>();
    std::shared_ptr<VirtualKeyboard> keyboard = std::make_shared<VirtualKeyboard>(VirtualKeyboard::Model::M61);
    std::unique_ptr<MainController> controller;
};

}  // namespace

TEST_F(CustomKey, APressedKeyOnEscapeInProfile2IsStoredShownAndSentAndAHeldModifierBeforeItEndsTheSame)
{
    // Profile 2 already holds an assignment on the keyboard (Tab plays Mute).
    controller->currentProfile = 2;
    controller->currentKeyValue = kTab;
    ProfileKey mute{.macroType = 11, .macroValue = 127, .macroDesc = "Mute"};
    controller->addCustomKey(mute);
    ASSERT_TRUE(waitUntil([&] { return !keyboard->firmware().keyTable(2).empty() && !controller->hidcomm_busy(); }));
    const std::vector<uint8_t> before = keyboard->firmware().keyTable(2);
    ASSERT_EQ(before.size(), 576u);
    std::vector<uint8_t> expected = before;
    std::copy_n(std::vector<uint8_t>{0x02, 0x00, 0x04, 0x00}.begin(), 4, expected.begin() + 4);  // Escape's slot

    controller->currentKeyValue = kEscape;
    KeySubMenuKeyFuncViewController* dialog = ShowKBKeyFuncSubMenu(controller.get());
    dialog->move(controller->mapToGlobal(QPoint(305, 112)));
    struct Press { QEvent::Type type; int qtKey; quint32 scanCode; };
    const std::vector<std::vector<Press>> cases{
        {{QEvent::KeyPress, Qt::Key_A, 38}, {QEvent::KeyRelease, Qt::Key_A, 38}},
        {{QEvent::KeyPress, Qt::Key_Control, 37}, {QEvent::KeyPress, Qt::Key_A, 38},
         {QEvent::KeyRelease, Qt::Key_A, 38}, {QEvent::KeyRelease, Qt::Key_Control, 37}}};
    for (const std::vector<Press>& presses : cases) {
        SCOPED_TRACE(presses.size() == 2 ? "A" : "Left Ctrl held, then A");
        ASSERT_TRUE(dialog->isVisible());
        for (const Press& press : presses)
            key(dialog, press.type, press.qtKey, press.scanCode);
        EXPECT_EQ(dialog->edit_keyfunc->text(), "A");
        if (presses.size() == 2)
            screenshot(dialog, "capture-dialog");

        EXPECT_EQ(hexFromBytes(confirmAndReadTable(dialog->btn_okfunc, before)), hexFromBytes(expected));
        EXPECT_FALSE(dialog->isVisible());
        const ProfileKey stored{.profId = 2, .keyValue = kEscape, .macroType = 14, .macroValue = 4, .macroDesc = "A"};
        ASSERT_EQ(rows(2).size(), 2u);
        ProfileKey row = rows(2)[1];
        row.keyId = 0;
        EXPECT_EQ(row, stored);
        EXPECT_EQ(legend(kEscape), "A");

        // Cancel takes Escape back to its own function and name.
        dialog = ShowKBKeyFuncSubMenu(controller.get());
        EXPECT_EQ(dialog->edit_keyfunc->text(), "A") << "the last key stays for the next showing";
        EXPECT_EQ(hexFromBytes(confirmAndReadTable(dialog->btn_cancelfunc, expected)), hexFromBytes(before));
        EXPECT_EQ(legend(kEscape), "Escape");
        dialog = ShowKBKeyFuncSubMenu(controller.get());
    }
    EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();

    controller->switchLanguage(kLanguageChinese);
    dialog->hide();
    dialog = ShowKBKeyFuncSubMenu(controller.get());
    EXPECT_EQ(dialog->label_keyfunc->text(), "请输入键盘按键");
    screenshot(dialog, "capture-dialog-zh");
    controller->switchLanguage(kLanguageEnglish);
}

TEST_F(CustomKey, AKeyTheModelLacksIsTakenByItsNameAndAKeyWithoutOneIsRefused)
{
    KeySubMenuKeyFuncViewController* dialog = ShowKBKeyFuncSubMenu(controller.get());
    struct Case { quint32 scanCode; QString shown; int captured; };
    // Up Arrow has no key on the 61-key model but a name; F13 has neither.
    const std::vector<Case> cases{{111, "Up Arrow", 0x52}, {191, "This key cannot be set; press another", 0},
                                  {50, "Left Shift", 225}};
    for (const Case& c : cases) {
        key(dialog, QEvent::KeyPress, Qt::Key_unknown, c.scanCode);
        key(dialog, QEvent::KeyRelease, Qt::Key_unknown, c.scanCode);
        EXPECT_EQ(std::pair(dialog->edit_keyfunc->text(), dialog->currentKeyValue), std::pair(c.shown, c.captured));
    }
}
