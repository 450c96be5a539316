// A key or a combination pressed in the capture dialog becomes the
// assignment of a key of the picture: stored, shown on the key, sent in the
// profile's key table, and carried through an exchange file.
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
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <gtest/gtest.h>

using testing_support::hexFromBytes;

namespace {

constexpr int kEscape = 41;
// Native scan codes: the evdev code plus 8.
constexpr quint32 kCtrl = 29 + 8, kShift = 42 + 8, kA = 30 + 8, kK = 37 + 8, kF5 = 63 + 8;
constexpr quint32 kProg1 = 148 + 8;  // a key the keyboard page has no usage for

using Key = std::pair<QEvent::Type, quint32>;

// The whole table with one entry in Escape's slot (1).
std::string tableWithEscape(const std::string& entry)
{
    return "00000000" + entry + std::string(2 * (574 - 8), '0') + "aa55";
}

class CustomKey : public testing::Test {
protected:
    void SetUp() override
    {
        FakeKeySource::keylogger();
        ASSERT_TRUE(session.connected());
        controller->currentKeyValue = kEscape;
        open();
    }
    void TearDown() override { delete kbKeyFuncSubMenu; }

    void open()
    {
        dialog = ShowKBKeyFuncSubMenu(controller.get());
        dialog->move(controller->mapToGlobal(QPoint(305, 112)));
    }
    void press(const std::vector<Key>& keys)
    {
        for (const auto& [type, scanCode] : keys)
            sendKey(dialog, type, scanCode);
    }
    // Clicks the button and answers profile 1's table once an upload ended.
    std::string clickAndReadTable(QPushButton* button)
    {
        const int tables = keyboard->firmware().commandCount(Protocol::Command::KeyTable);
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_TRUE(waitUntil([&] {
            return keyboard->firmware().commandCount(Protocol::Command::KeyTable) > tables && !controller->hidcomm_busy();
        }));
        return hexFromBytes(keyboard->firmware().keyTable(1));
    }
    ProfileKey escapeRow()
    {
        std::vector<ProfileKey> rows;
        controller->deviceDB->queryKeysProfile(1, rows);
        for (ProfileKey& row : rows)
            if (row.keyValue == kEscape)
                return (row.keyId = 0, row);
        return {};
    }
    QString cap(int keyCode)
    {
        const auto& keys = controller->orvane_keyboardctrl->kbKeyArraySelect;
        return controller->orvane_keyboardctrl->keyCapTexts().at(std::size_t(*picturePosition(keyCode, int(keys.size()))));
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

    QTemporaryDir files;
    QString answer;
    testing_support::VirtualSession session{[this](MainController::Environment& env) {
        env.chooseExchangeFile = [this](const ExchangeDialog&) { return answer; };
    }};
    const std::unique_ptr<MainController>& controller = session.controller;
    const std::shared_ptr<VirtualKeyboard>& keyboard = session.keyboard;
    KeySubMenuKeyFuncViewController* dialog = nullptr;
};

}  // namespace

TEST_F(CustomKey, CtrlShiftKIsCapturedStoredSentAndComesBackThroughAnExchangeFile)
{
    EXPECT_FALSE(dialog->btn_okfunc->isEnabled()) << "nothing captured yet";
    press({{QEvent::KeyPress, kCtrl}, {QEvent::KeyPress, kShift}});
    EXPECT_EQ(dialog->edit_keyfunc->text(), "Ctrl+Shift");
    press({{QEvent::KeyPress, kK}, {QEvent::KeyRelease, kK}, {QEvent::KeyRelease, kShift}, {QEvent::KeyRelease, kCtrl}});
    EXPECT_EQ(dialog->edit_keyfunc->text(), "Ctrl+Shift+K");
    screenshot("capture-dialog");
    // The modifier byte 0x03 (Left Control, Left Shift) beside usage 0x0E.
    EXPECT_EQ(clickAndReadTable(dialog->btn_okfunc), tableWithEscape("02030e00"));
    const ProfileKey stored{.profId = 1, .keyValue = kEscape, .macroType = 14, .macroValue = 0x0E,
                            .macro2Value = 0x103, .macroDesc = "Ctrl+Shift+K"};
    EXPECT_EQ(escapeRow(), stored);
    EXPECT_EQ(cap(kEscape), "Ctrl+Shift+K");
    EXPECT_FALSE(dialog->isVisible());

    // Exported, taken off the key, and imported back: the same row, and the
    // keyboard gets the profile's table at once.
    answer = QUrl::fromLocalFile(files.filePath("Profile A.key")).toString();
    controller->exportKeyProfile();
    controller->currentKeyValue = kEscape;
    ProfileKey backToDefault{.macroType = 17};
    controller->addCustomKey(backToDefault);
    ASSERT_TRUE(waitUntil([&] { return hexFromBytes(keyboard->firmware().keyTable(1)) == tableWithEscape("00000000")
                                       && !controller->hidcomm_busy(); }));
    const int tables = keyboard->firmware().commandCount(Protocol::Command::KeyTable);
    controller->importKeyProfile();
    ASSERT_TRUE(waitUntil([&] { return keyboard->firmware().commandCount(Protocol::Command::KeyTable) == tables + 1
                                       && !controller->hidcomm_busy(); }));
    EXPECT_EQ(hexFromBytes(keyboard->firmware().keyTable(1)), tableWithEscape("02030e00"));
    EXPECT_EQ(escapeRow(), stored);

    // One modifier and a key keep the row as it has always been written.
    open();
    press({{QEvent::KeyPress, kCtrl}, {QEvent::KeyPress, kA}, {QEvent::KeyRelease, kA}, {QEvent::KeyRelease, kCtrl}});
    EXPECT_EQ(clickAndReadTable(dialog->btn_okfunc), tableWithEscape("02010400"));
    EXPECT_EQ(std::pair(escapeRow().macroValue, escapeRow().macro2Value), std::pair(4, 224));
    EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();

    controller->switchLanguage(kLanguageChinese);
    dialog->hide();
    open();
    EXPECT_EQ(dialog->label_keyfunc->text(), "请输入键盘按键");
    press({{QEvent::KeyPress, kCtrl}, {QEvent::KeyPress, kShift}, {QEvent::KeyPress, kK}});
    screenshot("capture-dialog-zh");
    controller->switchLanguage(kLanguageEnglish);
}

TEST_F(CustomKey, F5BindsOnThe61KeyBoardAKeyWithoutAUsageIsRefusedAndCancelChangesNothing)
{
    press({{QEvent::KeyPress, kF5}, {QEvent::KeyRelease, kF5}});
    EXPECT_EQ(dialog->edit_keyfunc->text(), "F5");
    EXPECT_EQ(clickAndReadTable(dialog->btn_okfunc), tableWithEscape("02003e00"));
    EXPECT_EQ(cap(kEscape), "F5");
    const ProfileKey f5 = escapeRow();
    ASSERT_EQ(f5.macroValue, 0x3E);

    // A new opening starts empty; the refused key leaves A captured.
    open();
    EXPECT_EQ(dialog->edit_keyfunc->text(), "");
    press({{QEvent::KeyPress, kA}, {QEvent::KeyRelease, kA}, {QEvent::KeyPress, kProg1}, {QEvent::KeyRelease, kProg1}});
    EXPECT_EQ(dialog->edit_keyfunc->text(), "A");
    EXPECT_EQ(dialog->label_note->text(), "This key cannot be set; press another");
    EXPECT_TRUE(dialog->btn_okfunc->isEnabled());
    screenshot("capture-dialog-refused");

    // Cancel: the dialog closes, the row and the keyboard stay as they were.
    const int tables = keyboard->firmware().commandCount(Protocol::Command::KeyTable);
    QTest::mouseClick(dialog->btn_cancelfunc, Qt::LeftButton);
    QTest::qWait(30);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(escapeRow(), f5);
    EXPECT_EQ(keyboard->firmware().commandCount(Protocol::Command::KeyTable), tables);
    EXPECT_EQ(hexFromBytes(keyboard->firmware().keyTable(1)), tableWithEscape("02003e00"));
}
