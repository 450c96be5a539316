// The last-input values: what one input value does to them, that a key of
// another keyboard counts, and that a key event of our window has set them
// before the focused widget's handler runs. The application's start: the
// watch over whether keys typed elsewhere may be read, the status menu's
// Quit and the window's close.
#include "Common/Globals.h"
#include "Keylogger/CallBackFunctions.h"
#include "View/MainController.h"
#include "View/StatusMenu.h"
#include "View/control/ButtonView.h"
#include "support/CapturedLines.h"
#include "support/FakeKeySource.h"
#include "support/StoreTestSupport.h"

#include <QApplication>
#include <QDateTime>
#include <QMenu>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using LastInput = std::tuple<int, QString, int>;  // scan code, operation, shift

LastInput lastInput() { return {GLOBAL_LAST_PRESS_KEY_SCANCODE, lastKeyOperate, shiftKeyStatus}; }

void forgetLastInput()
{
    std::tie(GLOBAL_LAST_PRESS_KEY_SCANCODE, lastKeyOperate, shiftKeyStatus) = LastInput(0, "", 0);
    lastMovedTime = 0;
}

// Notes the last-input values as each key event reaches it.
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
    // Usage, value, and the values after it, in order from nothing seen.
    const std::vector<std::tuple<int, int, LastInput>> steps{
        {3, 1, {0, "", 0}}, {2311, 1, {0, "", 0}},             // outside the range: the clock only
        {4, 1, {4, "down", 0}}, {2310, 0, {2310, "up", 0}},     // A pressed, the last usage released
        {225, 1, {225, "down", 1}}, {229, 1, {229, "down", 1}}, // Right Shift leaves the shift state
        {229, 0, {229, "up", 1}}, {225, 0, {225, "up", 0}},
        {4, 2, {4, "up", 0}}, {225, 2, {225, "up", 2}}};        // a repeat: the code, not the operation
    forgetLastInput();
    for (const auto& [usage, value, after] : steps) {
        lastMovedTime = 0;
        const qint64 before = QDateTime::currentMSecsSinceEpoch();
        CallBackFunctions::Handle_IOHIDInputValueCallback(usage, value);
        EXPECT_EQ(lastInput(), after) << usage << "=" << value;
        EXPECT_GE(lastMovedTime, before) << usage << "=" << value;
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
    widget.setFocus();
    QApplication::processEvents();
    forgetLastInput();
    // As X11 and Wayland deliver them, native scan code = evdev code + 8:
    // Left Shift 50, A 38; then a key without one, as offscreen Qt sends.
    const std::vector<std::tuple<QEvent::Type, int, quint32>> keys{
        {QEvent::KeyPress, Qt::Key_Shift, 50}, {QEvent::KeyPress, Qt::Key_A, 38}, {QEvent::KeyRelease, Qt::Key_A, 38},
        {QEvent::KeyRelease, Qt::Key_Shift, 50}, {QEvent::KeyPress, Qt::Key_unknown, 0}};
    for (const auto& [type, key, scanCode] : keys)
        sendKey(&widget, type, scanCode, key);
    EXPECT_EQ(widget.seen,
              (std::vector<LastInput>{{225, "down", 1}, {4, "down", 1}, {4, "up", 1}, {225, "up", 0}, {225, "up", 0}}));
    EXPECT_GT(lastMovedTime, 0);
}

// A user outside the group that may read the input devices (an event node
// this test cannot read) sees the window as anyone does: no advice to join
// the group, which would let every program read every keyboard.
TEST(InputCapture, WithoutReadableInputDevicesTheWindowGivesNoAdviceAndQuitOrClosingTheWindowEndsTheApplication)
{
    captureLines();
    testing_support::TempDataFolder data;
    QTemporaryDir devices;
    ::chmod(QFile::encodeName(devices.path()).constData(), 0755);
    QFile node(devices.filePath("event3"));
    ASSERT_TRUE(node.open(QIODevice::WriteOnly));
    node.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    bool readable = false;
    auto access = [&] {
        if (readable)
            return InputDeviceAccess{InputDeviceAccess::State::Readable, {}};
        // Root may read any node: the check runs as an ordinary user.
        const bool root = ::geteuid() == 0;
        if (root && ::seteuid(65534) != 0)
            return InputDeviceAccess{};
        const InputDeviceAccess found = inputDeviceAccessIn(devices.path().toStdString());
        if (root)
            (void)::seteuid(0);
        return found;
    };
    ASSERT_EQ(access().state, InputDeviceAccess::State::NotPermitted);
    AppOptions options;
    options.dataDir = data.path();
    AppDelegate app(options, {[] { return std::unique_ptr<HidManager>(); }, FakeKeySource::make, access});
    app.applicationDidFinishLaunching();
    QApplication::processEvents();
    EXPECT_FALSE(app.controller()->label_problem->isVisible());
    EXPECT_EQ(app.controller()->label_problem->text(), "");
    if (const QString dir = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR"); !dir.isEmpty())
        app.controller()->window()->grab().save(dir + "/window-without-input-group.png");
    // The watch ticks every 3 s until the devices may be read.
    QTimer* timer = app.privilegeTimer();
    ASSERT_TRUE(timer);
    EXPECT_EQ(std::pair(timer->interval(), timer->isActive()), std::pair(3000, true));
    app.checkPrivilege();
    EXPECT_TRUE(timer->isActive());
    readable = true;
    app.checkPrivilege();
    EXPECT_FALSE(timer->isActive());
    EXPECT_EQ(capturedLines(), "createTable success\ninit: connect success\n"
                               "startPrivilegeMonitor\nACCESS_ENABLED false\nACCESS_ENABLED true\n有权限,开启键盘事件监控\n");

    // The status menu's Quit and the window's close button each end the loop with status 0.
    ASSERT_TRUE(app.quickButton);
    EXPECT_EQ(app.quickButton->menu()->actions().back(), app.quickQuit);
    EXPECT_EQ(app.quickQuit->text(), "Quit");
    QObject guard;  // ends a loop that nothing else would
    QTimer::singleShot(10000, &guard, [] { QCoreApplication::exit(1); });
    for (const std::function<void()>& quit : std::vector<std::function<void()>>{
             [&] { app.quickQuit->trigger(); }, [&] { app.controller()->imgbtn_close->click(); }}) {
        QTimer::singleShot(0, quit);
        EXPECT_EQ(QApplication::exec(), 0);
    }
}
