// End to end on a wlroots compositor: sway, headless, with two Wayland
// clients of their own app_id brought to the front in turn with swaymsg;
// the virtual keyboard receives each rule's profile switch, in order, as
// the profile menu would have sent it. Skips, saying why, where sway can't
// start. sway refuses to run as root, so a root test runs it as nobody.
#include "FocusWatch/Platform/Linux/WlrFocusSource.h"
#include "ui/FollowFront.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <array>

#include <unistd.h>

using namespace testing_support;

namespace {

class SwayDesktop {
public:
    SwayDesktop()
    {
        // sway (perhaps as nobody) reads the config; each side has a runtime
        // folder only it may use, as libwayland and Qt want.
        const auto open = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
        QFile::setPermissions(folder_.path(), open);
        const QString runtime = folder_.filePath("sway-runtime");
        for (const QString& name : {runtime, folder_.filePath("client-runtime")}) {
            QDir().mkdir(name);
            QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
        QFile config(folder_.filePath("config"));
        config.open(QIODevice::WriteOnly);
        config.write("xwayland disable\noutput HEADLESS-1 resolution 1024x768\n");
        config.close();
        config.setPermissions(open);
        QStringList command{"sway", "-c", config.fileName()};
        if (::getuid() == 0) {
            if (::chown(QFile::encodeName(runtime).constData(), 65534, 65534) != 0) {
                problem_ = "could not hand the runtime folder to nobody";
                return;
            }
            command = QStringList{"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"} + command;
        }
        auto env = QProcessEnvironment::systemEnvironment();
        env.insert("XDG_RUNTIME_DIR", runtime);
        env.insert("WLR_BACKENDS", "headless");
        env.insert("WLR_LIBINPUT_NO_DEVICES", "1");
        env.insert("WLR_RENDERER", "pixman");
        sway_.setProcessEnvironment(env);
        sway_.setProcessChannelMode(QProcess::MergedChannels);
        sway_.start(command.takeFirst(), command);
        auto socket = [&](const char* pattern) {
            const QStringList found = QDir(runtime).entryList({pattern}, QDir::System);
            return found.isEmpty() ? QString() : runtime + '/' + found.first();
        };
        if (!sway_.waitForStarted(3000) || !waitUntil([&] {
                display_ = socket("wayland-?");
                ipc_ = socket("sway-ipc.*.sock");
                return !display_.isEmpty() && !ipc_.isEmpty();
            }, 5000))
            problem_ = "sway could not start here: " + sway_.readAll().right(400).toStdString();
    }
    ~SwayDesktop()
    {
        for (QProcess* p : {&windows_[0], &windows_[1], &sway_}) {
            p->terminate();
            if (!p->waitForFinished(3000))
                p->kill();
        }
    }
    const std::string& problem() const { return problem_; }
    QByteArray display() const { return QFile::encodeName(display_); }

    // A Wayland client whose toplevel's app_id is `app`.
    void openWindow(const QString& app)
    {
        QProcess& window = windows_.at(opened_++);
        auto env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "wayland");
        env.insert("WAYLAND_DISPLAY", display_);
        env.insert("XDG_RUNTIME_DIR", folder_.filePath("client-runtime"));
        window.setProcessEnvironment(env);
        window.start(ORVANE_FOCUS_WINDOW, {app});
    }
    // What a user's key binding does: sway's own focus command.
    void focus(const char* app)
    {
        QProcess swaymsg;
        swaymsg.start("swaymsg", {"-s", ipc_, QStringLiteral("[app_id=\"%1\"] focus").arg(app)});
        swaymsg.waitForFinished(5000);
    }

private:
    QTemporaryDir folder_;
    QProcess sway_;
    std::array<QProcess, 2> windows_;
    int opened_ = 0;
    QString display_;
    QString ipc_;
    std::string problem_;
};

TEST(ProfilesFollowApplicationsOnWayland, WindowsFocusedInSwaySwitchTheirProfilesInOrder)
{
    SwayDesktop desktop;
    if (!desktop.problem().empty())
        GTEST_SKIP() << desktop.problem();
    VirtualSession session([&](MainController::Environment& env) {
        env.focusSourceFactory = [&]() -> std::unique_ptr<FocusSource> { return WlrFocusSource::connect(desktop.display()); };
    });
    ASSERT_TRUE(session.connected());
    desktop.openWindow("alpha");
    desktop.openWindow("beta");
    expectProfilesFollowTheFront(session, [&](const char* app) { desktop.focus(app); });
}

}  // namespace
