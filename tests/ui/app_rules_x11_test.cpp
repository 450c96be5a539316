// End to end on a real X server: Xvfb with openbox, two client windows with
// their own WM_CLASS brought to the front in turn through the window
// manager; the virtual keyboard receives each rule's profile switch, in
// order, as the profile menu would have sent it. Skips, saying why, where
// the X server or the window manager can't start.
#include "FocusWatch/Platform/Linux/X11FocusSource.h"
#include "ui/FollowFront.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

#include <xcb/xcb.h>

#include <cstring>
#include <map>

using namespace testing_support;

namespace {

// Xvfb and openbox on a display no one uses, for the test's lifetime.
class X11Desktop {
public:
    X11Desktop()
    {
        for (int n = 140; n < 180 && display_.isEmpty(); ++n)
            if (!QFile::exists(QStringLiteral("/tmp/.X%1-lock").arg(n))
                && !QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(n)))
                display_ = QByteArray(":") + QByteArray::number(n);
        server_.start(QStringLiteral("Xvfb"), {QString::fromLatin1(display_), "-screen", "0", "800x600x24", "-nolisten", "tcp"});
        if (!server_.waitForStarted(3000) || !waitUntil([&] { return connect(); }, 5000)) {
            problem_ = "Xvfb could not start on " + display_.toStdString();
            return;
        }
        auto env = QProcessEnvironment::systemEnvironment();
        env.insert("DISPLAY", QString::fromLatin1(display_));
        wm_.setProcessEnvironment(env);
        wm_.start(QStringLiteral("openbox"), {"--sm-disable"});
        if (!wm_.waitForStarted(3000) || !waitUntil([&] { return windowManagerRunning(); }, 5000))
            problem_ = "openbox could not start on " + display_.toStdString();
    }
    ~X11Desktop()
    {
        if (connection_)
            xcb_disconnect(connection_);
        for (QProcess* p : {&wm_, &server_}) {
            p->terminate();
            if (!p->waitForFinished(2000))
                p->kill();
            p->waitForFinished(1000);
        }
    }
    const std::string& problem() const { return problem_; }
    const QByteArray& display() const { return display_; }

    // A mapped top-level window whose WM_CLASS is `instance` and `appClass`.
    xcb_window_t openWindow(const char* instance, const char* appClass)
    {
        const xcb_window_t window = xcb_generate_id(connection_);
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen()->root, 10, 10, 200, 150, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen()->root_visual, 0, nullptr);
        QByteArray wmClass = QByteArray(instance) + '\0' + appClass + '\0';
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                            uint32_t(wmClass.size()), wmClass.constData());
        xcb_map_window(connection_, window);
        xcb_flush(connection_);
        return window;
    }
    // Asks the window manager, as a pager would, to bring `window` to the front.
    void activate(xcb_window_t window)
    {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = atom("_NET_ACTIVE_WINDOW");
        event.data.data32[0] = 2;
        event.data.data32[1] = XCB_CURRENT_TIME;
        xcb_send_event(connection_, 0, screen()->root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&event));
        xcb_flush(connection_);
    }

private:
    bool connect()
    {
        xcb_connection_t* c = xcb_connect(display_.constData(), nullptr);
        if (xcb_connection_has_error(c)) {
            xcb_disconnect(c);
            return false;
        }
        connection_ = c;
        return true;
    }
    xcb_screen_t* screen() const { return xcb_setup_roots_iterator(xcb_get_setup(connection_)).data; }
    xcb_atom_t atom(const char* name) const
    {
        auto* reply = xcb_intern_atom_reply(connection_, xcb_intern_atom(connection_, 0, uint16_t(std::strlen(name)), name), nullptr);
        const xcb_atom_t a = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
        std::free(reply);
        return a;
    }
    bool windowManagerRunning() const
    {
        auto* reply = xcb_get_property_reply(
            connection_,
            xcb_get_property(connection_, 0, screen()->root, atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 0, 1),
            nullptr);
        const bool running = reply && xcb_get_property_value_length(reply) >= 4;
        std::free(reply);
        return running;
    }

    QByteArray display_;
    QProcess server_;
    QProcess wm_;
    xcb_connection_t* connection_ = nullptr;
    std::string problem_;
};

TEST(ProfilesFollowApplicationsOnX11, WindowsBroughtToTheFrontSwitchTheirProfilesInOrder)
{
    X11Desktop desktop;
    if (!desktop.problem().empty())
        GTEST_SKIP() << desktop.problem();
    VirtualSession session([&](MainController::Environment& env) {
        env.focusSourceFactory = [&]() -> std::unique_ptr<FocusSource> { return X11FocusSource::connect(desktop.display()); };
    });
    ASSERT_TRUE(session.connected());
    const std::map<std::string, xcb_window_t> windows{{"alpha", desktop.openWindow("alpha-main", "Alpha")},
                                                      {"beta", desktop.openWindow("beta-main", "Beta")}};
    expectProfilesFollowTheFront(session, [&](const char* app) { desktop.activate(windows.at(app)); });
    EXPECT_EQ(session.controller->profileFollower.seenApplications().mid(0, 2), (QStringList{"Alpha", "Beta"}));
}

}  // namespace
