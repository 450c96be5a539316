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

    // Deleting the earlier macro sends nothing: the keyboard keeps the old
    // store and the old cell.
    const std::vector<uint8_t> oldStore = firmware().macroStore();
    const int before = uploads();
    auto* row = qobject_cast<MacroTableItemView*>(controller->macro_table->itemWidget(controller->macro_table->item(0)));
    ASSERT_TRUE(row);
    row->delBtnView->click();
    ASSERT_EQ(controller->macro_datas.size(), 1);
    QTest::qWait(50);
    EXPECT_EQ(uploads(), before);
    EXPECT_EQ(firmware().macroStore(), oldStore);
    EXPECT_EQ(escapeCell(), "06010003");

    // The row kept for the list now stands for the macro that moved up: its
    // edit button opens that macro with its stored steps.
    row->editBtnView->click();
    ASSERT_TRUE(controller->macroWindow);
    MaroController& edited = *controller->macroWindow->controller();
    EXPECT_EQ(edited.MacorId, tapId);
    EXPECT_EQ(edited.edit_newmacro->text(), "Tap and click");
    EXPECT_EQ(edited.RecordListDatas().size(), 7u);
    EXPECT_EQ(edited.RecordListDatas()[3], (MacroStep{1, "4 Delay (500)", 500}));
    controller->macroWindow->close();

    // The next save and key table upload carry the moved-up place.
    recordAndSave("Late", [&](MaroController& m) { key(m, QEvent::KeyPress, kB, 500); key(m, QEvent::KeyRelease, kB, 520); });
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
    controller->UpdateMacroInfo();
    ASSERT_TRUE(waitUntil([&] { return uploads() > before && !controller->hidcomm_busy(); }));
    EXPECT_FALSE(controller->label_problem->isVisible());
    EXPECT_EQ(firmware().macroStore().size(), 8u * 64);
}
