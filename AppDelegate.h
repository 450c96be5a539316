#pragma once
// AppDelegate: brings the application up: the options, the window and its
// controller, input capture (the key logger) with the watch over whether
// this user may read the machine's keyboards, the status item with its
// menu, and for scripted runs the virtual keyboard, the timed exit and
// the screenshot. Closing the window ends the application, as Quit does,
// except while rules make the keyboard's profile follow the application in
// front and a tray holds the status item: the app then goes on in the tray,
// and says so the first time.

#include "Common/AppOptions.h"
#include "HIDDevice/HIDDeviceMonitor.h"
#include "Keylogger/Platform/SystemKeySource.h"

#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QTimer>

#include <functional>
#include <memory>

class Keylogger;
class MainController;
class MainWindowController;
class QAction;
class StatusMenu;
class VirtualKeyboard;

class AppDelegate : public QObject {
    Q_OBJECT
public:
    using KeySourceFactory = std::function<std::unique_ptr<SystemKeySource>()>;

    // What the delegate takes from the machine; tests put fakes here.
    struct Environment {
        HIDDeviceMonitor::ManagerFactory hidManagerFactory = createPlatformHidManager;
        KeySourceFactory keySourceFactory = createPlatformKeySource;
        std::function<InputDeviceAccess()> inputAccess = inputDeviceAccess;
        std::function<bool()> trayAvailable = QSystemTrayIcon::isSystemTrayAvailable;
    };

    static constexpr int kPrivilegeCheckIntervalMs = 3000;
    static constexpr int kTrayNoticeMs = 8000;

    explicit AppDelegate(AppOptions options);
    AppDelegate(AppOptions options, Environment environment);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();
    // Another start, or the tray's Show: the window comes up in front.
    bool applicationShouldHandleReopen();
    void startPrivilegeMonitor();
    // One tick of the privilege monitor; the timer is gone once capture is
    // permitted.
    void checkPrivilege();
    QTimer* privilegeTimer() const { return privilegeTimer_; }
    void createButtonStatusBar();
    void clickQuit();
    // Closing the window now would leave the app running in the tray.
    bool keepsRunningInTray() const;

    // The application's one key logger, made on first use from `factory`;
    // it lives as long as the application object.
    static Keylogger* keylogger(const KeySourceFactory& factory = createPlatformKeySource);

    MainController* controller() const { return controller_; }

    QSystemTrayIcon* statusItem = nullptr;  // none where the desktop has no tray
    std::unique_ptr<StatusMenu> quickButton;
    QAction* quickQuit = nullptr;  // quickButton's Quit
    bool trayNoticeShown = false;  // the tray said once that the app stays there

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void plugDemoKeyboard();
    // ORVANE_DEMO_UNPLUG_AFTER=N: the demo keyboard's cable comes out N
    // reports into the first key table, light slot or macro upload, once,
    // and goes back three seconds later.
    void pullDemoCableOnce(int reports);
    void quitWithScreenshot();

    AppOptions options_;
    Environment environment_;
    MainController* controller_ = nullptr;  // owned by the window
    std::unique_ptr<MainWindowController> windowController_;
    std::shared_ptr<VirtualKeyboard> demoKeyboard_;
    QPointer<QTimer> privilegeTimer_;
    static QPointer<Keylogger> keylogger_;
};
