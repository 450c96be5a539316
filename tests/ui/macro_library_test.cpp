// The macro library end to end on a virtual keyboard: record in the macro
// window, save, bind to a key, delete an earlier macro, save again; and a
// library too large for the keyboard.
#include "Common/Globals.h"
#include "Common/NotificationCenter.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "SQLite/DeviceSQLite.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/MacroController.h"
#include "View/MacroWindowController.h"
#include "View/MainController.h"
#include "View/control/ButtonView.h"
#include "View/control/KeyboardView.h"
#include "View/control/TableItemView.h"
#include "support/HexBytes.h"
#include "support/StoreTestSupport.h"
#include "support/VirtualSession.h"
#include "support/WaitUntil.h"

#include <QApplication>
#include <QDir>
#include <QImageWriter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

using namespace testing_support;

namespace {

constexpr int kEscape = 41;  // slot 1 of the key table
constexpr quint32 kA = 38;   // native scan codes
constexpr quint32 kB = 56;
using K = MacroStoreStep::Kind;

class MacroLibrary : public ::testing::Test, protected VirtualSession {
protected:
    void SetUp() override { ASSERT_TRUE(connected()); }
    void TearDown() override
    {
        EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();
    }

    FirmwareModel firmware() { return keyboard->firmware(); }
    bool sent(int setsBefore) { return waitUntil([&] { return firmware().setCount() > setsBefore && !controller->hidcomm_busy(); }); }
    // Uploads of the store and of key tables; the profile poll goes on beside them.
    int uploads()
    {
        return firmware().commandCount(Protocol::Command::BeginMacro) + firmware().commandCount(Protocol::Command::KeyTable);
    }

    // Opens the macro window for a new macro, records `record` and saves
    // the macro under `name`.
    void recordAndSave(const QString& name, const std::function<void(MaroController&)>& record, int repeat = 1,
                       bool screenshot = false)
    {
        controller->action_macro_newmacro();
        ASSERT_TRUE(controller->macroWindow);
        MaroController& macro = *controller->macroWindow->controller();
        macro.nowMs = [this] { return now; };
        macro.edit_newmacro->setText(name);
        macro.edit_repeattimes->setValue(repeat);
        QTest::mouseClick(macro.btn_newmacro, Qt::LeftButton);
        record(macro);
        if (screenshot)
            screenshotWindow(macro);
        QTest::mouseClick(macro.btn_newmacro, Qt::LeftButton);
        const int sets = firmware().setCount();
        QTest::mouseClick(macro.btn_saverecord, Qt::LeftButton);
        ASSERT_TRUE(sent(sets));
        controller->macroWindow->close();
    }
    void key(MaroController& macro, QEvent::Type type, quint32 scanCode, int64_t at)
    {
        now = at;
        QKeyEvent event(type, Qt::Key_unknown, Qt::NoModifier, scanCode, 0, 0);
        QApplication::sendEvent(macro.window()->windowHandle(), &event);
    }
    void click(MaroController& macro, int64_t down, int64_t up)
    {
        now = down;
        QTest::mousePress(&macro, Qt::LeftButton, {}, QPoint(300, 30));
        now = up;
        QTest::mouseRelease(&macro, Qt::LeftButton, {}, QPoint(300, 30));
    }
    std::string escapeCell() { return hexFromBytes(firmware().keyTable(1)).substr(8, 8); }
    std::vector<std::pair<QString, QString>> rowTexts()
    {
        std::vector<std::pair<QString, QString>> texts;
        for (int i = 0; i < controller->macro_table->count(); ++i) {
            auto* row = qobject_cast<MacroTableItemView*>(controller->macro_table->itemWidget(controller->macro_table->item(i)));
            texts.emplace_back(row->textView->text(), row->countView->text());
        }
        return texts;
    }
    void confirmDelete()
    {
        auto* question = controller->findChild<QMessageBox*>("deleteMacroAlert");
        ASSERT_TRUE(question);
        QTest::mouseClick(question->findChild<QPushButton*>("deleteMacroOK"), Qt::LeftButton);
    }

    // The window while recording and the macro page, in English and
    // Chinese, when ORVANE_SCREENSHOT_DIR names a folder.
    void write(QWidget& widget, const QString& name, const QRect& area = QRect(QPoint(0, 0), QSize(-1, -1)))
    {
        const QString dir = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR");
        if (dir.isEmpty())
            return;
        QApplication::processEvents();
        QImageWriter(QDir(dir).filePath(name + ".png")).write(widget.grab(area).toImage());
    }
    void screenshotWindow(MaroController& macro)
    {
        if (qEnvironmentVariable("ORVANE_SCREENSHOT_DIR").isEmpty())
            return;
        for (const auto& [language, suffix] : {std::pair{kLanguageEnglish, "en"}, std::pair{kLanguageChinese, "zh"}}) {
            G_Language = language;
            macro.viewDidAppear();
            write(*macro.window(), QStringLiteral("macro-window-recording-%1").arg(suffix));
        }
        G_Language = kLanguageEnglish;
        macro.viewDidAppear();
    }
    void screenshotPage()
    {
        if (qEnvironmentVariable("ORVANE_SCREENSHOT_DIR").isEmpty())
            return;
        controller->light_view->hide();
        controller->userlight_view->hide();
        controller->macro_view->show();
        // The pointer over the second row shows its buttons.
        QWidget* row = controller->macro_table->itemWidget(controller->macro_table->item(1));
        QEnterEvent enter(QPointF(20, 10), QPointF(20, 10), QPointF(20, 10));
        QApplication::sendEvent(row, &enter);
        for (const auto& [language, suffix] : {std::pair{kLanguageEnglish, "en"}, std::pair{kLanguageChinese, "zh"}}) {
            controller->switchLanguage(language);
            write(*controller, QStringLiteral("macro-page-%1").arg(suffix), QRect(840, 0, 320, 650));
        }
        controller->switchLanguage(kLanguageEnglish);
    }

    int64_t now = 1000;
};

}  // namespace

TEST_F(MacroLibrary, RecordSaveBindToAKeyThenDeleteAnEarlierMacroAndSendAgain)
{
    recordAndSave("Early", [&](MaroController& m) { key(m, QEvent::KeyPress, kB, 500); key(m, QEvent::KeyRelease, kB, 520); });
    recordAndSave("Tap and click", [&](MaroController& m) {
        key(m, QEvent::KeyPress, kA, 1000);
        key(m, QEvent::KeyRelease, kA, 1100);
        click(m, 1600, 1650);
    }, 3, true);
    ASSERT_EQ(controller->macro_datas.size(), 2);
    const int64_t tapId = controller->macro_datas[1].value("macroid").toLongLong();
    EXPECT_EQ(firmware().state().macro(0), (StoredMacro{true, true, {{K::KeyDown, 5}, {K::Delay, 20}, {K::KeyUp, 5}}}));
    EXPECT_EQ(firmware().state().macro(1),
              (StoredMacro{true, true, {{K::KeyDown, 4}, {K::Delay, 100}, {K::KeyUp, 4}, {K::Delay, 500},
                                        {K::MouseDown, 1}, {K::Delay, 50}, {K::MouseUp, 1}}}));

    // Bound to Escape: macro cell 06, place 1, 0, play count 3.
    controller->currentKeyValue = kEscape;
    int sets = firmware().setCount();
    NotificationCenter::defaultCenter().post(QStringLiteral("MacroFunctionAction"), QVariant::fromValue<qint64>(tapId));
    ASSERT_TRUE(sent(sets));
    EXPECT_EQ(hexFromBytes(firmware().keyTable(1)), "00000000" "06010003" + std::string(2 * (574 - 8), '0') + "aa55");
    const auto& keys = controller->orvane_keyboardctrl->kbKeyArraySelect;
    EXPECT_EQ(keys.at(std::size_t(*picturePosition(kEscape, int(keys.size())))).keyMacro, "Tap and click");
    screenshotPage();

    // The rows show each macro's name and step count.
    EXPECT_EQ(rowTexts(), (std::vector<std::pair<QString, QString>>{{"Early", "3 steps"}, {"Tap and click", "7 steps"}}));

    // Tab in profile 2 plays the earlier macro. Deleting it asks first,
    // naming the key, then sends the store and both key tables: Tab goes
    // back to its own function, Escape's macro moved up to place 0.
    controller->deviceDB->addKeyProfile({.profId = 2, .keyValue = 43, .macroType = 12,
                                         .macroValue = int(controller->macro_datas[0].value("macroid").toLongLong()),
                                         .macroDesc = "Early"});
    const int before = uploads();
    auto* row = qobject_cast<MacroTableItemView*>(controller->macro_table->itemWidget(controller->macro_table->item(0)));
    ASSERT_TRUE(row);
    QTest::mouseClick(row->delBtnView, Qt::LeftButton);
    auto* question = controller->findChild<QMessageBox*>("deleteMacroAlert");
    ASSERT_TRUE(question);
    EXPECT_EQ(question->text(), "Delete the macro \"Early\"?");
    EXPECT_EQ(question->informativeText(), "These keys play it and go back to their own function: Profile B: Tab.");
    QTest::mouseClick(question->findChild<QPushButton*>("deleteMacroOK"), Qt::LeftButton);
    ASSERT_EQ(controller->macro_datas.size(), 1);
    ASSERT_TRUE(waitUntil([&] { return uploads() == before + 3 && !controller->hidcomm_busy(); }));
    EXPECT_EQ(firmware().state().macro(0), (StoredMacro{true, true, {{K::KeyDown, 4}, {K::Delay, 100}, {K::KeyUp, 4},
                                                                     {K::Delay, 500}, {K::MouseDown, 1}, {K::Delay, 50},
                                                                     {K::MouseUp, 1}}}));
    // One macro: its directory entry (offset 400), its head (7 steps), the
    // steps, and the marker at the end of the eighth report.
    EXPECT_EQ(hexFromBytes(firmware().macroStore()),
              "90010000" + std::string(2 * 396, '0') + "0700000000000000" "000004b0" "64000050" "00000430" "f4010050"
              "00000190" "32000050" "00000110" + std::string(2 * 74, '0') + "aa55");
    EXPECT_EQ(hexFromBytes(firmware().keyTable(1)), "00000000" "06000003" + std::string(2 * (574 - 8), '0') + "aa55");
    EXPECT_EQ(hexFromBytes(firmware().keyTable(2)), std::string(2 * 574, '0') + "aa55");
    std::vector<ProfileKey> profile2;
    controller->deviceDB->queryKeysProfile(2, profile2);
    EXPECT_TRUE(profile2.empty());

    // The row kept for the list now stands for the macro that moved up: its
    // edit button opens that macro with its stored steps and play count,
    // and a save keeps the count; the new name reaches Escape's cap.
    QTest::mouseClick(row->editBtnView, Qt::LeftButton);
    ASSERT_TRUE(controller->macroWindow);
    MaroController& edited = *controller->macroWindow->controller();
    EXPECT_EQ(edited.MacorId, tapId);
    EXPECT_EQ(edited.edit_newmacro->text(), "Tap and click");
    EXPECT_EQ(edited.edit_repeattimes->value(), 3);
    EXPECT_EQ(edited.RecordListDatas().size(), 7u);
    EXPECT_EQ(edited.RecordListDatas()[3], (MacroStep{1, "4 Delay (500)", 500}));
    edited.edit_newmacro->setText("Tap twice");
    QTest::mouseClick(edited.btn_saverecord, Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return uploads() == before + 5 && !controller->hidcomm_busy(); }));
    MacroInfo saved;
    controller->deviceDB->queryMacroInfo(tapId, saved);
    EXPECT_EQ(std::pair(saved.macroName, saved.playTimes), std::pair(QString("Tap twice"), int64_t(3)));
    EXPECT_EQ(escapeCell(), "06000003");
    const std::size_t escape = std::size_t(*picturePosition(kEscape, int(keys.size())));
    EXPECT_EQ(keys.at(escape).keyMacro, "Tap twice");
    EXPECT_EQ(controller->orvane_keyboardctrl->keyCapTexts().at(escape), "M: Tap twice");
    controller->macroWindow->close();

    // The next save and key table upload carry the moved-up place.
    recordAndSave("Late", [&](MaroController& m) { key(m, QEvent::KeyPress, kB, 500); key(m, QEvent::KeyRelease, kB, 520); });
    ASSERT_TRUE(!controller->macroWindow || !controller->macroWindow->isVisible()) << "saved steps close without a question";
    EXPECT_EQ(firmware().state().macro(0).steps.size(), 7u);
    EXPECT_EQ(firmware().state().macro(1), (StoredMacro{true, true, {{K::KeyDown, 5}, {K::Delay, 20}, {K::KeyUp, 5}}}));
    sets = firmware().setCount();
    controller->setKeyMacroData(1);
    ASSERT_TRUE(sent(sets));
    EXPECT_EQ(escapeCell(), "06000003");
}

TEST_F(MacroLibrary, ALibraryTooLargeForTheKeyboardSendsNothingAndTheWindowSaysByHowMuch)
{
    for (int i = 0; i < 101; ++i)
        ASSERT_GT(controller->deviceDB->addMacroProfile(QStringLiteral("M%1").arg(i)), 0);
    const int before = uploads();
    controller->UpdateMacroInfo();
    QTest::qWait(50);
    EXPECT_EQ(uploads(), before);
    EXPECT_TRUE(controller->label_problem->isVisible());
    EXPECT_TRUE(controller->label_problem->text().contains("the library has 101 macros, and the keyboard holds 100. Delete 1 of them"))
        << controller->label_problem->text().toStdString();

    // One deleted through its row, the next save goes out and the note goes.
    auto* row = qobject_cast<MacroTableItemView*>(controller->macro_table->itemWidget(controller->macro_table->item(0)));
    row->delBtnView->click();
    confirmDelete();
    controller->UpdateMacroInfo();
    ASSERT_TRUE(waitUntil([&] { return uploads() > before && !controller->hidcomm_busy(); }));
    EXPECT_FALSE(controller->label_problem->isVisible());
    EXPECT_EQ(firmware().macroStore().size(), 8u * 64);
}

TEST_F(MacroLibrary, ARecordingOutlivesAReconnectionListClicksCountAndUnsavedStepsAskBeforeClosing)
{
    controller->action_macro_newmacro();
    MaroController& macro = *controller->macroWindow->controller();
    macro.nowMs = [this] { return now; };
    // Names: empty and too long are refused beside the field, not cut.
    for (const auto& [name, note] : {std::pair<QString, QString>{"", "Give the macro a name."},
                                     {QString(65, 'x'), "Names are at most 64 characters."}}) {
        macro.edit_newmacro->setText(name);
        QTest::mouseClick(macro.btn_saverecord, Qt::LeftButton);
        EXPECT_EQ(macro.label_namenote->text(), note);
        EXPECT_EQ(macro.MacorId, 0);
    }
    macro.edit_newmacro->setText("Survivor");

    QTest::mouseClick(macro.btn_newmacro, Qt::LeftButton);
    key(macro, QEvent::KeyPress, kA, 1000);
    // A click on the step list is a click in the window.
    now = 1200;
    QTest::mouseClick(macro.record_tableview->viewport(), Qt::LeftButton, {}, QPoint(20, 20));
    EXPECT_EQ(macro.RecordListDatas().size(), 5u) << "key down, delay, mouse down, delay, mouse up";

    bus->unplug(keyboard);
    ASSERT_TRUE(waitUntil([&] { return !controller->deviceState; }));
    bus->plug(keyboard);
    ASSERT_TRUE(waitUntil([&] { return controller->deviceState && controller->currentTransport() && !controller->hidcomm_busy(); }));
    ASSERT_TRUE(controller->macroWindow && controller->macroWindow->isVisible());
    EXPECT_TRUE(macro.recordIng);
    key(macro, QEvent::KeyRelease, kA, 1500);
    EXPECT_EQ(macro.RecordListDatas().size(), 7u);

    // Closing with the steps unsaved asks; keeping goes on, closing loses them.
    QTest::mouseClick(macro.btn_newmacro, Qt::LeftButton);
    controller->macroWindow->close();
    auto* question = controller->macroWindow->findChild<QMessageBox*>("unsavedMacroAlert");
    ASSERT_TRUE(question);
    EXPECT_EQ(question->informativeText(), "The 7 recorded steps are not saved and will be lost.");
    QTest::mouseClick(question->findChild<QPushButton*>("unsavedMacroKeep"), Qt::LeftButton);
    EXPECT_TRUE(controller->macroWindow->isVisible());

    // Saved into the store of the new connection, and sent.
    const int sets = firmware().setCount();
    QTest::mouseClick(macro.btn_saverecord, Qt::LeftButton);
    ASSERT_TRUE(sent(sets));
    EXPECT_EQ(firmware().state().macro(0).steps.size(), 7u);
    EXPECT_EQ(controller->macro_datas.size(), 1);
    controller->macroWindow->close();
    EXPECT_TRUE(waitUntil([&] { return controller->macroWindow.isNull(); }));
}
