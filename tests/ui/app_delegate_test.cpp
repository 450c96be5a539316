// The application's start: the status menu and its Quit, the window's
// close, and the watch over whether keys typed elsewhere may be read.
#include "AppDelegate.h"
#include "View/MainController.h"
#include "View/control/ButtonView.h"
#include "support/CapturedLines.h"
#include "support/FakeKeySource.h"
#include "support/StoreTestSupport.h"

#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

struct Launched {
    testing_support::TempDataFolder data;
    InputDeviceAccess access{InputDeviceAccess::State::Readable, {}};
    std::unique_ptr<AppDelegate> delegate;

    explicit Launched(InputDeviceAccess initial) : access(std::move(initial))
    {
        AppOptions options;
        options.dataDir = data.path();
        AppDelegate::Environment env{[] { return std::unique_ptr<HidManager>(); }, FakeKeySource::factory(),
                                     [this] { return access; }};
        delegate = std::make_unique<AppDelegate>(options, env);
        delegate->applicationDidFinishLaunching();
    }
};

// Runs the application's loop with `action` queued; true when the loop
// ended with status 0, false when the guard had to end it.
bool applicationEndsAfter(const std::function<void()>& action)
{
    QTimer::singleShot(0, action);
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, [] { QCoreApplication::exit(1); });
    guard.start(10000);
    return QApplication::exec() == 0;
}

}  // namespace

TEST(AppDelegate, TheStatusMenuHoldsQuitAndQuitAndTheWindowsCloseButtonEachEndTheApplication)
{
    Launched app({InputDeviceAccess::State::Readable, {}});
    ASSERT_TRUE(app.delegate->quickButton);
    QStringList entries;
    for (QAction* action : app.delegate->quickButton->actions())
        entries << action->text();
    EXPECT_EQ(entries, QStringList{"Quit"});
    EXPECT_TRUE(applicationEndsAfter([&] { app.delegate->quickQuit->trigger(); }));
    EXPECT_TRUE(applicationEndsAfter([&] { app.delegate->controller()->imgbtn_close->click(); }));
}

TEST(AppDelegate, WithoutReadableInputDevicesTheWindowNamesTheGroupAndTheMonitorWaitsForIt)
{
    captureLines();
    Launched app({InputDeviceAccess::State::NotPermitted, "input"});
    QApplication::processEvents();
    EXPECT_EQ(app.delegate->controller()->label_problem->text(),
              "Keys typed while another window is in front are not captured: only members of the group \"input\" "
              "may read the keyboards. To allow it (every program you run may then read every keyboard), run "
              "\"sudo usermod -aG input $USER\", then log out and in. Keys pressed while this window is in front "
              "are captured anyway.");
    ASSERT_TRUE(app.delegate->privilegeTimer());
    EXPECT_EQ(app.delegate->privilegeTimer()->interval(), 3000);
    EXPECT_TRUE(app.delegate->privilegeTimer()->isActive());

    app.delegate->checkPrivilege();
    EXPECT_TRUE(app.delegate->privilegeTimer()->isActive());
    app.access = {InputDeviceAccess::State::Readable, {}};
    app.delegate->checkPrivilege();
    EXPECT_FALSE(app.delegate->privilegeTimer()->isActive());
    EXPECT_EQ(capturedLines(), "createTable success\ninit: connect success\n"
                               "startPrivilegeMonitor\nACCESS_ENABLED false\nACCESS_ENABLED true\n有权限,开启键盘事件监控\n");
}
