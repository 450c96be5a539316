// The last-input values: what one input value does to them, that a key of
// another keyboard counts, and that a key event of our window has set them
// before the focused widget's handler runs.
#include "Common/Globals.h"
#include "Keylogger/CallBackFunctions.h"
#include "support/FakeKeySource.h"

#include <QApplication>
#include <QDateTime>
#include <QKeyEvent>
#include <QWidget>
#include <QWindow>
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace {

using LastInput = std::tuple<int, QString, int>;  // scan code, operation, shift

LastInput lastInput() { return {GLOBAL_LAST_PRESS_KEY_SCANCODE, lastKeyOperate, shiftKeyStatus}; }

void forgetLastInput()
{
    GLOBAL_LAST_PRESS_KEY_SCANCODE = 0;
    lastKeyOperate.clear();
    lastMovedTime = 0;
    shiftKeyStatus = 0;
}

// Notes what the last-input values were when each key event reached it.
class FocusedWidget : public QWidget {
public:
    std::vector<LastInput> seen;

protected:
    void keyPressEvent(QKeyEvent*) override { seen.push_back(lastInput()); }
    void keyReleaseEvent(QKeyEvent*) override { seen.push_back(lastInput()); }
};

}  // namespace

TEST(InputCapture, EachValueMovesTheClockAndOnlyKeyUsagesInRangeMoveTheRest)
{
    struct Step {
        int usage, value;
        LastInput after;
    };
    // In order, from nothing seen.
    const std::vector<Step> steps{
        {3, 1, {0, "", 0}},             // below the range: the clock only
        {2311, 1, {0, "", 0}},          // above it
        {4, 1, {4, "down", 0}},         // A pressed
        {2310, 0, {2310, "up", 0}},     // the last usage of the range, released
        {225, 1, {225, "down", 1}},     // Left Shift held
        {229, 1, {229, "down", 1}},     // Right Shift leaves the shift state alone
        {229, 0, {229, "up", 1}},
        {225, 0, {225, "up", 0}},       // Left Shift released
        {4, 2, {4, "up", 0}},           // a repeat: the code, not the operation
        {225, 2, {225, "up", 2}},       // Left Shift keeps whatever value it reports
    };
    forgetLastInput();
    for (const Step& step : steps) {
        SCOPED_TRACE(testing::Message() << step.usage << "=" << step.value);
        lastMovedTime = 0;
        const qint64 before = QDateTime::currentMSecsSinceEpoch();
        CallBackFunctions::Handle_IOHIDInputValueCallback(step.usage, step.value);
        EXPECT_EQ(lastInput(), step.after);
        EXPECT_GE(lastMovedTime, before);
    }
}

TEST(InputCapture, AKeyOfAnotherKeyboardAndAKeyEventOfTheWindowAreSeenBeforeTheFocusedWidget)
{
    FakeKeySource::keylogger();
    forgetLastInput();
    FakeKeySource::send(4, 1);  // A on a keyboard whose window is not ours
    EXPECT_EQ(lastInput(), LastInput(4, "down", 0));

    FocusedWidget widget;
    widget.setFocusPolicy(Qt::StrongFocus);
    widget.show();
    widget.activateWindow();
    widget.setFocus();
    QApplication::processEvents();
    forgetLastInput();
    // The events as X11 and Wayland deliver them, with their native scan
    // codes (evdev + 8): Left Shift 50, A 38; then a key without one.
    struct Key {
        QEvent::Type type;
        int key;
        quint32 scanCode;
    };
    const std::vector<Key> keys{{QEvent::KeyPress, Qt::Key_Shift, 50},   {QEvent::KeyPress, Qt::Key_A, 38},
                                {QEvent::KeyRelease, Qt::Key_A, 38},     {QEvent::KeyRelease, Qt::Key_Shift, 50},
                                {QEvent::KeyPress, Qt::Key_unknown, 0}};
    for (const Key& k : keys) {
        QKeyEvent event(k.type, k.key, Qt::NoModifier, k.scanCode, 0, 0);
        QCoreApplication::sendEvent(widget.windowHandle(), &event);
    }
    const std::vector<LastInput> expected{
        {225, "down", 1}, {4, "down", 1}, {4, "up", 1}, {225, "up", 0}, {225, "up", 0}};
    EXPECT_EQ(widget.seen, expected);
    EXPECT_GT(lastMovedTime, 0);
}
