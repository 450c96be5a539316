// The macro window's step rules, driven by key events with the host's native
// scan codes and by mouse clicks on the window, on a clock of the test's own.
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/MacroController.h"
#include "View/MacroWindowController.h"
#include "View/control/ButtonView.h"
#include "View/control/NamedImage.h"

#include <QApplication>
#include <QCheckBox>
#include <QKeyEvent>
#include <QSpinBox>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

namespace {

// Native scan codes (evdev + 8) of A, Left Shift, and F13, a key no Orvane
// keyboard has.
constexpr quint32 kA = 38;
constexpr quint32 kLeftShift = 50;
constexpr quint32 kF13 = 191;

class MacroRecorderWindow : public ::testing::Test {
protected:
    void SetUp() override
    {
        selectKeyMaps(KeyMapModel::Orvane61k, CodeMapStart::Empty);
        window = std::make_unique<MacroWindowController>(nullptr);
        window->controller()->nowMs = [this] { return now; };
        window->controller()->viewDidLoad();
        window->show();
        window->controller()->viewDidAppear();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }

    MaroController& macro() { return *window->controller(); }

    void setOptions(bool keyboard, bool mouse, bool delay)
    {
        macro().radio_rec_keyboard->setChecked(keyboard);
        macro().radio_rec_mouse->setChecked(mouse);
        macro().radio_rec_delay->setChecked(delay);
    }
    void record() { QTest::mouseClick(macro().btn_newmacro, Qt::LeftButton); }

    // A key event as the window system delivers it: to the window first.
    void key(QEvent::Type type, quint32 scanCode, int64_t at, bool autoRepeat = false)
    {
        now = at;
        QKeyEvent event(type, Qt::Key_unknown, Qt::NoModifier, scanCode, 0, 0, QString(), autoRepeat);
        QApplication::sendEvent(window->windowHandle(), &event);
    }
    void tap(quint32 scanCode, int64_t down, int64_t up)
    {
        key(QEvent::KeyPress, scanCode, down);
        key(QEvent::KeyRelease, scanCode, up);
    }
    void click(Qt::MouseButton button, int64_t down, int64_t up, QWidget* on = nullptr)
    {
        QWidget* target = on ? on : &macro();
        const QPoint at = on ? on->rect().center() : QPoint(300, 30);
        now = down;
        QTest::mousePress(target, button, {}, at);
        now = up;
        QTest::mouseRelease(target, button, {}, at);
    }

    QStringList texts()
    {
        QStringList out;
        for (const MacroStep& step : macro().RecordListDatas())
            out << step.text;
        return out;
    }

    int64_t now = 1000;
    std::unique_ptr<MacroWindowController> window;
};

}  // namespace

TEST_F(MacroRecorderWindow, KeysAndLeftClicksWithTheDelaysBetweenThem)
{
    setOptions(true, true, true);
    record();
    tap(kA, 1000, 1080);
    // A held key repeats its press; the repeat's releases are not steps.
    key(QEvent::KeyPress, kA, 1500);
    key(QEvent::KeyRelease, kA, 1530, true);
    key(QEvent::KeyPress, kA, 1530, true);
    key(QEvent::KeyRelease, kA, 1600);
    // Modifiers are keys like any other; a key this keyboard lacks is not recorded.
    tap(kLeftShift, 1700, 1750);
    tap(kF13, 1800, 1850);
    click(Qt::LeftButton, 2000, 2040);
    click(Qt::RightButton, 2100, 2140);
    // A gap over 100 seconds counts as 100000 ms.
    tap(kA, 200000, 200010);
    EXPECT_EQ(texts(), QStringList({"1 Keyboard Down (A)", "2 Delay (80)", "3 Keyboard Up (A)",
                                    "4 Delay (420)", "5 Keyboard Down (A)", "6 Delay (30)", "7 Keyboard Down (A)",
                                    "8 Delay (70)", "9 Keyboard Up (A)", "10 Delay (100)",
                                    "11 Keyboard Down (Left Shift)", "12 Delay (50)", "13 Keyboard Up (Left Shift)",
                                    "14 Delay (250)", "15 Mouse Left Down", "16 Delay (40)", "17 Mouse Left Up",
                                    "18 Delay (100000)", "19 Keyboard Down (A)", "20 Delay (10)",
                                    "21 Keyboard Up (A)"}));
    EXPECT_EQ(macro().RecordListDatas().front(), (MacroStep{2, "1 Keyboard Down (A)", 4}));
    EXPECT_EQ(macro().RecordListDatas()[14], (MacroStep{4, "15 Mouse Left Down", 1}));

    // The record button itself is not a step; stopping keeps the list, and
    // keys after it add nothing.
    record();
    EXPECT_FALSE(macro().recordIng);
    tap(kA, 300000, 300010);
    EXPECT_EQ(texts().size(), 21);
    EXPECT_TRUE(macro().btn_saverecord->isEnabled());
}

TEST_F(MacroRecorderWindow, OptionsDecideWhichStepsCountAndARecordingStartsEmpty)
{
    // Delays alone: a delay needs a step before it.
    setOptions(false, false, true);
    record();
    EXPECT_FALSE(macro().radio_rec_delay->isEnabled());
    EXPECT_FALSE(macro().edit_repeattimes->isEnabled());
    tap(kA, 1000, 1100);
    click(Qt::LeftButton, 1200, 1300);
    EXPECT_TRUE(texts().isEmpty());
    record();

    // Mouse and delays: the keys then add delays measured from the last
    // recorded click, growing with each key event.
    setOptions(false, true, true);
    record();
    click(Qt::LeftButton, 1000, 1010);
    tap(kA, 1100, 1300);
    EXPECT_EQ(texts(), QStringList({"1 Mouse Left Down", "2 Delay (10)", "3 Mouse Left Up", "4 Delay (90)",
                                    "5 Delay (290)"}));
    record();

    // Keys only, and a new recording drops the earlier list.
    setOptions(true, false, false);
    record();
    click(Qt::LeftButton, 1000, 1010);
    tap(kA, 1100, 1300);
    EXPECT_EQ(texts(), QStringList({"1 Keyboard Down (A)", "2 Keyboard Up (A)"}));
}

TEST(MacroImages, EveryNamedImageOfTheMacroWindowAndPageExists)
{
    for (const char* name : {"btn_createmacro", "icon_macro_rec", "icon_macro_stoprec", "icon_macro_save",
                             "imgbtn_macro_close_n", "imgbtn_macro_close_h", "imgbtn_menu_n", "imgbtn_menu_h",
                             "icon_macro_add", "view_row_hover", "macro_btn_del", "macro_btn_edit"})
        EXPECT_FALSE(NamedImage::pixmap(name, QSize(16, 16), 2.0).isNull()) << name;
}
