// The macro window's step editor on a virtual keyboard: a recorded macro is
// changed step by step with keys, clicks and the two small windows, then
// saved, and the keyboard receives the store of the edited steps.
#include "Common/MacroStepText.h"
#include "View/MacroController.h"
#include "View/MacroStepDialogs.h"
#include "View/MacroStepEditor.h"
#include "View/MacroWindowController.h"
#include "View/control/ButtonView.h"
#include "support/HexBytes.h"
#include "support/VirtualSession.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QImageWriter>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QWindow>
#include <gtest/gtest.h>

using namespace testing_support;

namespace {

constexpr quint32 kA = 38;  // native scan codes
constexpr quint32 kB = 56;
constexpr int kInsertKeyPress = 1;  // the second entry of an insert menu

class MacroEditor : public ::testing::Test, protected VirtualSession {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(connected());
        controller->action_macro_newmacro();
        ASSERT_TRUE(controller->macroWindow);
        macro().nowMs = [this] { return now; };
        macro().edit_newmacro->setText("Edited");
        // A, a pause, B: "Keyboard Down (A)", "Delay (80)", ... 7 steps.
        QTest::mouseClick(macro().btn_newmacro, Qt::LeftButton);
        key(QEvent::KeyPress, kA, 1000);
        key(QEvent::KeyRelease, kA, 1080);
        key(QEvent::KeyPress, kB, 1500);
        key(QEvent::KeyRelease, kB, 1600);
        QTest::mouseClick(macro().btn_newmacro, Qt::LeftButton);
        ASSERT_EQ(texts().size(), 7);
        controller->macroWindow->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(controller->macroWindow));
    }
    void TearDown() override
    {
        EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();
    }

    MaroController& macro() { return *controller->macroWindow->controller(); }
    MacroStepEditor& editor() { return *macro().stepEditor; }
    QListWidget& list() { return *editor().list; }

    void key(QEvent::Type type, quint32 scanCode, int64_t at)
    {
        now = at;
        QKeyEvent event(type, Qt::Key_unknown, Qt::NoModifier, scanCode, 0, 0);
        QApplication::sendEvent(macro().window()->windowHandle(), &event);
    }
    QPoint rowCentre(int row) { return list().visualItemRect(list().item(row)).center(); }
    void clickRow(int row, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, modifiers, rowCentre(row));
        list().window()->activateWindow();
        QApplication::processEvents();
        list().setFocus();
    }
    QStringList texts()
    {
        QStringList out;
        for (const MacroStep& step : macro().RecordListDatas())
            out << step.text;
        return out;
    }
    QString mark(int row)
    {
        auto* label = list().itemWidget(list().item(row))->findChild<QLabel*>("stepMark");
        return label && label->isVisible() ? label->text() : QString();
    }
    // Set reports from the last macro store upload's first frame (0x19) to its 0x02.
    std::vector<std::string> lastStoreUpload()
    {
        std::vector<std::string> frames;
        bool inStore = false;
        for (const TraceRecord& r : keyboard->recentTrace()) {
            if (r.op != TraceRecord::Op::Set)
                continue;
            if (r.data[0] == 0x04 && r.data[1] == 0x19) {
                frames.clear();
                inStore = true;
            }
            if (inStore)
                frames.push_back(hexFromBytes({r.data.begin(), r.data.end()}));
            inStore = inStore && !(r.data[0] == 0x04 && r.data[1] == 0x02);
        }
        return frames;
    }
    void screenshots();

    int64_t now = 1000;
};

void MacroEditor::screenshots()
{
    const QString dir = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR");
    if (dir.isEmpty())
        return;
    for (const auto& [language, suffix] : {std::pair{kLanguageEnglish, "en"}, std::pair{kLanguageChinese, "zh"}}) {
        G_Language = language;
        macro().viewDidAppear();
        QTest::mouseClick(macro().btn_saverecord, Qt::LeftButton);  // the refusal in this language
        QApplication::processEvents();
        QImageWriter(QDir(dir).filePath(QStringLiteral("macro-editor-%1.png").arg(suffix)))
            .write(macro().window()->grab().toImage());
    }
    G_Language = kLanguageEnglish;
    macro().viewDidAppear();
}

}  // namespace

TEST_F(MacroEditor, DeleteAStepChangeADelayInsertAKeyPressAndSaveSendsTheEditedStore)
{
    // Delete the pause between the keys with the Delete key.
    clickRow(3);
    QTest::keyClick(&list(), Qt::Key_Delete);
    EXPECT_EQ(texts(), QStringList({"1 Keyboard Down (A)", "2 Delay (80)", "3 Keyboard Up (A)",
                                    "4 Keyboard Down (B)", "5 Delay (100)", "6 Keyboard Up (B)"}));
    EXPECT_EQ(editor().selectedRows(), MacroSteps::Rows{3});

    // Change the first delay in place; a value the keyboard can't hold is refused.
    clickRow(1);
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, rowCentre(1));
    ASSERT_TRUE(editor().delayField);
    QTest::keyClicks(editor().delayField, "70000");
    QTest::keyClick(editor().delayField, Qt::Key_Return);
    EXPECT_EQ(macro().label_status->text(), "A delay is a whole number of milliseconds from 1 to 65535.");
    ASSERT_TRUE(editor().delayField);
    QTest::keyClicks(editor().delayField, "250");
    QTest::keyClick(editor().delayField, Qt::Key_Return);
    EXPECT_FALSE(editor().delayField);
    EXPECT_EQ(texts()[1], "2 Delay (250)");

    // Insert a press of Left Shift after A's release, picked from the list.
    clickRow(2);
    editor().btn_insert_after->menu()->actions()[kInsertKeyPress]->trigger();
    MacroKeyDialog& keys = *editor().keyDialog;
    ASSERT_TRUE(keys.isVisible());
    keys.keyList->setCurrentIndex(keys.keyList->findText("Left Shift"));
    QTest::mouseClick(keys.btn_insert, Qt::LeftButton);
    list().setFocus();
    const QStringList edited{"1 Keyboard Down (A)", "2 Delay (250)", "3 Keyboard Up (A)",
                             "4 Keyboard Down (Left Shift)", "5 Keyboard Up (Left Shift)", "6 Keyboard Down (B)",
                             "7 Delay (100)", "8 Keyboard Up (B)"};
    EXPECT_EQ(texts(), edited);

    // Undo goes back through the edits, redo forward again.
    QTest::keyClick(&list(), Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&list(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(texts()[1], "2 Delay (80)");
    QTest::keyClick(&list(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(&list(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(texts(), edited);
    // 8 steps and 3 delays put between keys: 8 + 11 * 4 bytes of the 3136 - 400 an empty store leaves.
    EXPECT_EQ(editor().label_size->text(), "Uses 52 of 2,736 bytes");

    // Saved: the store holds the edited steps, whole frames from 0x19 to 0x02.
    const std::vector<uint8_t> store = [] {
        std::vector<uint8_t> b(9 * 64, 0);
        const std::vector<uint8_t> body{11, 0, 0, 0, 0, 0, 0, 0,  //
                                        0, 0, 4, 0xB0, 0xFA, 0, 0, 0x50, 0, 0, 4, 0x30, 10, 0, 0, 0x50,
                                        0, 0, 0xE1, 0xB0, 10, 0, 0, 0x50, 0, 0, 0xE1, 0x30, 10, 0, 0, 0x50,
                                        0, 0, 5, 0xB0, 100, 0, 0, 0x50, 0, 0, 5, 0x30};
        b[0] = 0x90, b[1] = 0x01;  // body at 400
        std::copy(body.begin(), body.end(), b.begin() + 400);
        b[574] = 0xAA, b[575] = 0x55;
        return b;
    }();
    const int sets = keyboard->firmware().setCount();
    QTest::mouseClick(macro().btn_saverecord, Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return keyboard->firmware().setCount() > sets && !controller->hidcomm_busy(); }));
    std::vector<std::string> expected{hexFromBytes(report({0x04, 0x19})),
                                      hexFromBytes(report({0x04, 0x15, 0, 0, 0, 0, 0, 0, 9}))};
    for (std::size_t at = 0; at < store.size(); at += 64)
        expected.push_back(hexFromBytes({store.begin() + std::ptrdiff_t(at), store.begin() + std::ptrdiff_t(at + 64)}));
    expected.push_back(hexFromBytes(report({0x04, 0x02})));
    EXPECT_EQ(lastStoreUpload(), expected);
    // Saving ends the undo history.
    EXPECT_FALSE(editor().btn_undo->isEnabled());
}

TEST_F(MacroEditor, UnpairedKeysAreMarkedAndSaveRefusedUntilFixedMovesAndTextKeepThemPaired)
{
    // A's release deleted: its press is marked, and Save says which step.
    clickRow(2);
    editor().btn_delete->click();
    EXPECT_EQ(mark(0), "never released");
    const int sets = keyboard->firmware().setCount();
    QTest::mouseClick(macro().btn_saverecord, Qt::LeftButton);
    EXPECT_TRUE(macro().label_status->text().startsWith("Not saved: step 1 presses a key or button that nothing releases."));
    EXPECT_EQ(macro().MacorId, 0);
    screenshots();
    QTest::qWait(30);
    EXPECT_EQ(keyboard->firmware().setCount(), sets);
    editor().btn_undo->click();
    EXPECT_EQ(mark(0), "");

    // B's press may not move below its release, by button or by a drop.
    clickRow(4);
    QTest::keyClick(&list(), Qt::Key_Down, Qt::ShiftModifier);  // B's press and the delay after it
    ASSERT_EQ(editor().selectedRows(), (MacroSteps::Rows{4, 5}));
    editor().btn_down->click();
    EXPECT_EQ(texts()[4], "5 Keyboard Down (B)");
    editor().dropAt(rowCentre(6) + QPoint(0, 5));
    EXPECT_EQ(texts()[4], "5 Keyboard Down (B)");
    // Dropped at the top, B's press and the delay go first, still selected.
    editor().dropAt(rowCentre(0) - QPoint(0, 5));
    EXPECT_EQ(texts().mid(0, 3), QStringList({"1 Keyboard Down (B)", "2 Delay (100)", "3 Keyboard Down (A)"}));
    EXPECT_EQ(editor().selectedRows(), (MacroSteps::Rows{0, 1}));
    editor().btn_up->click();  // nowhere to go
    EXPECT_EQ(texts()[0], "1 Keyboard Down (B)");

    // The text form shows the list; a bad line is refused by number, a good text replaces the steps.
    editor().btn_text->click();
    MacroTextDialog& text = *editor().textDialog;
    ASSERT_TRUE(text.isVisible());
    EXPECT_EQ(text.textView->toPlainText(), MacroStepText::write(macro().RecordListDatas()));
    text.textView->setPlainText("Keyboard Down (A)\nDelay 20\nKeyboard Up (A)");
    QTest::mouseClick(text.btn_apply, Qt::LeftButton);
    EXPECT_EQ(text.label_problem->text(), "Nothing was changed: line 2 is not a step (\"Delay 20\").");
    EXPECT_EQ(texts().size(), 7);
    text.textView->setPlainText("Keyboard Down (A)\nDelay (20)\nKeyboard Up (A)");
    QTest::mouseClick(text.btn_apply, Qt::LeftButton);
    EXPECT_FALSE(text.isVisible());
    EXPECT_EQ(texts(), QStringList({"1 Keyboard Down (A)", "2 Delay (20)", "3 Keyboard Up (A)"}));
    EXPECT_TRUE(editor().btn_undo->isEnabled());
}
