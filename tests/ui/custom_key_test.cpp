// A key pressed in the capture dialog becomes the assignment of a key of the
// picture: stored, shown on the key and sent in the profile's key table.
#include "SQLite/DeviceSQLite.h"
#include "View/CustomMenu/KeySubMenuKeyFuncViewController.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/control/KeyboardView.h"
#include "support/FakeKeySource.h"
#include "support/HexBytes.h"
#include "support/VirtualSession.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <gtest/gtest.h>

using testing_support::hexFromBytes;

namespace {

constexpr int kEscape = 41;

using Key = std::pair<QEvent::Type, quint32>;  // native scan code: the evdev code plus 8

class CustomKey : public testing::Test {
protected:
    void SetUp() override
    {
        FakeKeySource::keylogger();
        ASSERT_TRUE(session.connected());
        dialog = ShowKBKeyFuncSubMenu(controller.get());
        dialog->move(controller->mapToGlobal(QPoint(305, 112)));
    }
    void TearDown() override { delete kbKeyFuncSubMenu; }

    void press(const std::vector<Key>& keys)
    {
        for (const auto& [type, scanCode] : keys)
            sendKey(dialog, type, scanCode);
    }
    // Clicks the button and answers the profile-2 table once it differs from `before`.
    std::string clickAndReadTable(QPushButton* button, const std::vector<uint8_t>& before)
    {
        button->click();
        const auto sent = [&] { return keyboard->firmware().keyTable(2) != before && !controller->hidcomm_busy(); };
        EXPECT_TRUE(waitUntil(sent));
        return hexFromBytes(keyboard->firmware().keyTable(2));
    }
    QString legend(int keyCode)
    {
        const auto& keys = controller->orvane_keyboardctrl->kbKeyArraySelect;
        return keys.at(std::size_t(*picturePosition(keyCode, int(keys.size())))).keyMacro;
    }
    // The dialog over the picture, when ORVANE_SCREENSHOT_DIR names a folder.
    void screenshot(const QString& name)
    {
        if (const QString dir = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR"); !dir.isEmpty()) {
            const QRect area(195, 105, 700, 350);
            QPixmap shot = controller->grab(area);
            QPainter(&shot).drawPixmap(dialog->pos() - controller->mapToGlobal(area.topLeft()), dialog->grab());
            shot.toImage().convertToFormat(QImage::Format_RGB888).save(QDir(dir).filePath(name + ".png"), "PNG", 0);
        }
    }

    testing_support::VirtualSession session;
    const std::unique_ptr<MainController>& controller = session.controller;
    const std::shared_ptr<VirtualKeyboard>& keyboard = session.keyboard;
    KeySubMenuKeyFuncViewController* dialog = nullptr;
};

}  // namespace

TEST_F(CustomKey, APressedKeyOnEscapeInProfile2IsStoredShownAndSentAndAHeldModifierBeforeItEndsTheSame)
{
    // Profile 2 already holds an assignment on the keyboard (Tab plays Mute).
    controller->currentProfile = 2;
    controller->currentKeyValue = 43;
    ProfileKey mute{.macroType = 11, .macroValue = 127, .macroDesc = "Mute"};
    controller->addCustomKey(mute);
    ASSERT_TRUE(waitUntil([&] { return !keyboard->firmware().keyTable(2).empty() && !controller->hidcomm_busy(); }));
    const std::vector<uint8_t> before = keyboard->firmware().keyTable(2);
    ASSERT_EQ(before.size(), 576u);
    std::vector<uint8_t> expected = before;
    std::copy_n(std::begin({0x02, 0x00, 0x04, 0x00}), 4, expected.begin() + 4);  // Escape's slot

    controller->currentKeyValue = kEscape;
    const Key ctrlDown{QEvent::KeyPress, 37}, aDown{QEvent::KeyPress, 38};
    const Key aUp{QEvent::KeyRelease, 38}, ctrlUp{QEvent::KeyRelease, 37};
    for (const std::vector<Key>& keys : {std::vector{aDown, aUp}, std::vector{ctrlDown, aDown, aUp, ctrlUp}}) {
        SCOPED_TRACE(keys.size() == 2 ? "A" : "Left Ctrl held, then A");
        press(keys);
        EXPECT_EQ(dialog->edit_keyfunc->text(), "A");
        screenshot("capture-dialog");
        EXPECT_EQ(clickAndReadTable(dialog->btn_okfunc, before), hexFromBytes(expected));
        EXPECT_FALSE(dialog->isVisible());
        std::vector<ProfileKey> rows;
        ASSERT_TRUE(controller->deviceDB->queryKeysProfile(2, rows) && rows.size() == 2);
        rows[1].keyId = 0;
        EXPECT_EQ(rows[1], (ProfileKey{.profId = 2, .keyValue = kEscape, .macroType = 14, .macroValue = 4,
                                       .macroDesc = "A"}));
        EXPECT_EQ(legend(kEscape), "A");

        // Shown again, the dialog still holds A; Cancel gives Escape back its own function and name.
        ShowKBKeyFuncSubMenu(controller.get());
        EXPECT_EQ(dialog->edit_keyfunc->text(), "A");
        EXPECT_EQ(clickAndReadTable(dialog->btn_cancelfunc, expected), hexFromBytes(before));
        EXPECT_EQ(legend(kEscape), "Escape");
        ShowKBKeyFuncSubMenu(controller.get());
    }
    EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();

    controller->switchLanguage(kLanguageChinese);
    dialog->hide();
    ShowKBKeyFuncSubMenu(controller.get());
    EXPECT_EQ(dialog->label_keyfunc->text(), "请输入键盘按键");
    screenshot("capture-dialog-zh");
    controller->switchLanguage(kLanguageEnglish);
}

TEST_F(CustomKey, AKeyTheModelLacksIsTakenByItsNameAndAKeyWithoutOneIsRefused)
{
    // Up Arrow has no key on the 61-key model but a name; F13 has neither.
    const std::vector<std::tuple<quint32, QString, int>> cases{
        {111, "Up Arrow", 0x52}, {191, "This key cannot be set; press another", 0}, {50, "Left Shift", 225}};
    for (const auto& [scanCode, shown, captured] : cases) {
        press({{QEvent::KeyPress, scanCode}, {QEvent::KeyRelease, scanCode}});
        EXPECT_EQ(std::pair(dialog->edit_keyfunc->text(), dialog->currentKeyValue), std::pair(shown, captured));
    }
}
