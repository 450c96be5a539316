// The app as a desktop citizen: one running app per user and data folder
// (a later start hands over its command line and the window comes up), the
// tray menu, and the autostart entry of the system page.
#include "AppDelegate.h"
#include "Desktop/Autostart.h"
#include "Desktop/SingleInstance.h"
#include "Language/Language.h"
#include "View/StatusMenu.h"
#include "View/control/ButtonView.h"
#include "View/control/MenuItemView.h"
#include "View/popover/PofilePopoverViewController.h"
#include "support/FakeKeySource.h"
#include "support/HexBytes.h"
#include "support/VirtualSession.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace testing_support;

namespace {

// The frames the keyboard received after its `from`th, as hex; each status
// poll's two frames are left out.
std::vector<std::string> framesSince(const VirtualKeyboard& keyboard, int from)
{
    std::vector<TraceRecord> sets;
    for (const TraceRecord& r : keyboard.recentTrace())
        if (r.op == TraceRecord::Op::Set)
            sets.push_back(r);
    std::vector<std::string> out;
    bool afterPoll = false;
    for (auto r = sets.end() - (keyboard.setCount() - from); r != sets.end(); ++r) {
        const bool poll = r->data[0] == 0x04 && r->data[1] == 0x30;
        if (!poll && !afterPoll)
            out.push_back(hexFromBytes({r->data.begin(), r->data.end()}));
        afterPoll = poll;
    }
    return out;
}

// A socket file as a crashed run leaves it: bound, then never listened on
// or removed.
void leaveStaleSocket(const QString& path)
{
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    std::memcpy(address.sun_path, name.constData(), size_t(name.size()));
    ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ::close(fd);
}

QString text(QAction* action) { return action->text(); }

}  // namespace

TEST(SingleInstance, ALaterStartHandsItsCommandLineOverAndTheRunningWindowComesUpInFront)
{
    TempDataFolder data;
    QTemporaryDir runtime;
    AppOptions options;
    options.dataDir = data.path();
    AppDelegate app(options, {[] { return std::unique_ptr<HidManager>(); }, FakeKeySource::make, [] { return InputDeviceAccess{}; }});
    app.applicationDidFinishLaunching();
    QWidget* window = app.controller()->window();
    window->hide();

    SingleInstance running(runtime.path(), data.path());
    ASSERT_EQ(running.tryLock(), SingleInstance::Lock::Ours);
    QString error;
    ASSERT_TRUE(running.listen(error)) << error.toStdString();
    QStringList received;
    QObject::connect(&running, &SingleInstance::activationRequested, &app, [&](const QStringList& arguments) {
        received = arguments;
        app.applicationShouldHandleReopen();
    });

    SingleInstance later(runtime.path(), data.path());
    EXPECT_EQ(later.tryLock(), SingleInstance::Lock::Held) << "the same user and data folder: the app already runs";
    const QStringList arguments{"orvane", "--demo", "m61"};
    ASSERT_TRUE(later.handOver(arguments));
    ASSERT_TRUE(waitUntil([&] { return !received.isEmpty(); }));
    EXPECT_EQ(received, arguments);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window; }));
}

TEST(SingleInstance, AStaleLockAndSocketOfACrashedRunDoNotBlockTheNextStart)
{
    QTemporaryDir runtime, data;
    const QString base = runtime.filePath(SingleInstance::nameFor(data.path()));
    QFile lock(base + ".lock");
    ASSERT_TRUE(lock.open(QIODevice::WriteOnly));  // no one holds it any more
    leaveStaleSocket(base + ".socket");

    SingleInstance probe(runtime.path(), data.path());
    EXPECT_FALSE(probe.handOver({"orvane"}, 200)) << "nobody listens on a dead run's socket";

    SingleInstance next(runtime.path(), data.path());
    ASSERT_EQ(next.tryLock(), SingleInstance::Lock::Ours);
    QString error;
    ASSERT_TRUE(next.listen(error)) << error.toStdString();
    QStringList received;
    QObject::connect(&next, &SingleInstance::activationRequested, [&](const QStringList& a) { received = a; });
    EXPECT_TRUE(SingleInstance(runtime.path(), data.path()).handOver({"orvane"}));
    EXPECT_TRUE(waitUntil([&] { return received == QStringList{"orvane"}; }));
}

TEST(SingleInstance, EachDataFolderHasItsOwnRunningAppAndTwoSpellingsOfOneFolderShareIt)
{
    QTemporaryDir runtime, testData, userData;
    EXPECT_EQ(SingleInstance::nameFor(testData.path()), SingleInstance::nameFor(testData.path() + "/./"));
    EXPECT_NE(SingleInstance::nameFor(testData.path()), SingleInstance::nameFor(userData.path()));
    EXPECT_TRUE(SingleInstance::nameFor(userData.path()).startsWith(QStringLiteral("com.orvane.keyboardstudio-%1-").arg(::getuid())));

    SingleInstance testRun(runtime.path(), testData.path());
    SingleInstance userRun(runtime.path(), userData.path());
    EXPECT_EQ(testRun.tryLock(), SingleInstance::Lock::Ours);
    EXPECT_EQ(userRun.tryLock(), SingleInstance::Lock::Ours) << "a test run does not stand in for the user's app";
    EXPECT_EQ(SingleInstance(runtime.path(), testData.path() + "/").tryLock(), SingleInstance::Lock::Held);
    // A folder without the lock file: the app runs unguarded rather than not at all.
    EXPECT_EQ(SingleInstance(runtime.filePath("missing"), testData.path()).tryLock(), SingleInstance::Lock::Unavailable);
}

// The tray's profiles do what the profile menu does: the same frames reach
// the keyboard. The menu shows the profile in use and the language shown.
TEST(StatusMenu, AProfileChosenInTheTraySendsTheProfileMenusFramesAndTheMenuFollowsTheLanguage)
{
    std::vector<std::string> byProfileMenu, byTray;
    {
        VirtualSession session;
        ASSERT_TRUE(session.connected());
        const int from = session.keyboard->setCount();
        QTest::mouseClick(session.controller->imgbtn_profile, Qt::LeftButton);
        QTest::mouseClick(session.controller->profilePopover->profileC, Qt::LeftButton);
        ASSERT_TRUE(session.controller->transport().waitForIdle(std::chrono::seconds(10)));
        byProfileMenu = framesSince(*session.keyboard, from);
    }
    VirtualSession session;
    ASSERT_TRUE(session.connected());
    StatusMenu tray(session.controller.get());
    tray.refresh();
    EXPECT_EQ(QStringList({text(tray.showAction), text(tray.profileActions[0]), text(tray.profileActions[3]),
                           text(tray.quitAction)}),
              QStringList({"Show Orvane Keyboard Studio", "Profile A", "Profile D", "Quit"}));
    EXPECT_TRUE(tray.profileActions[0]->isChecked());

    const int from = session.keyboard->setCount();
    tray.profileActions[2]->trigger();
    ASSERT_TRUE(session.controller->transport().waitForIdle(std::chrono::seconds(10)));
    byTray = framesSince(*session.keyboard, from);
    EXPECT_FALSE(byTray.empty());
    EXPECT_EQ(byTray, byProfileMenu);
    EXPECT_EQ(session.controller->currentProfile, 3);

    session.controller->switchLanguage(kLanguageChinese);
    tray.refresh();
    EXPECT_EQ(QStringList({text(tray.profileActions[2]), text(tray.quitAction)}), QStringList({"模式 C", "退出"}));
    EXPECT_TRUE(tray.profileActions[2]->isChecked());
    EXPECT_FALSE(tray.profileActions[0]->isChecked());

    // Without a keyboard the profiles are there but cannot be chosen, as
    // the profile menu does not open; Show and Quit still work.
    session.bus->unplug(session.keyboard);
    ASSERT_TRUE(waitUntil([&] { return !session.controller->deviceState; }));
    tray.refresh();
    EXPECT_FALSE(tray.profileActions[2]->isEnabled());
    EXPECT_TRUE(tray.showAction->isEnabled() && tray.quitAction->isEnabled());
}

TEST(Autostart, TheSystemPageSwitchWritesAndRemovesTheUsersAutostartEntry)
{
    QTemporaryDir home;
    const QByteArray oldConfig = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath("config")));
    VirtualSession session;
    MainController& c = *session.controller;
    const QString entry = home.filePath("config/autostart/com.orvane.keyboardstudio.desktop");
    ASSERT_EQ(Autostart::entryPath(), entry);
    EXPECT_FALSE(c.switch_autostart->isChecked());
    EXPECT_EQ(c.label_autostart->text(), "Start with the desktop");

    c.sysset_view->show();
    QTest::mouseClick(c.switch_autostart, Qt::LeftButton);
    QFile file(entry);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString written = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(written.contains("\nExec=" + QCoreApplication::applicationFilePath() + " --minimized\n")) << written.toStdString();
    EXPECT_TRUE(written.startsWith("[Desktop Entry]\nType=Application\n"));
    QTest::mouseClick(c.switch_autostart, Qt::LeftButton);
    EXPECT_FALSE(QFile::exists(entry));
    EXPECT_FALSE(c.switch_autostart->isChecked());

    // A config folder that cannot hold the entry: the switch stays off and
    // the window says why.
    QFile blocker(home.filePath("blocked"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(blocker.fileName()));
    QTest::mouseClick(c.switch_autostart, Qt::LeftButton);
    EXPECT_FALSE(c.switch_autostart->isChecked());
    EXPECT_TRUE(c.label_problem->text().contains("could not be changed")) << c.label_problem->text().toStdString();
    if (oldConfig.isNull())
        qunsetenv("XDG_CONFIG_HOME");
    else
        qputenv("XDG_CONFIG_HOME", oldConfig);
}
