#include "AppDelegate.h"

#include "Common/DataPaths.h"
#include "HIDDevice/Platform/CompositeHidManager.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "Common/OutputLine.h"
#include "FocusWatch/FocusSource.h"
#include "Keylogger/Keylogger.h"
#include "Language/AppText.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/MainController.h"
#include "View/MainWindowController.h"
#include "View/StatusMenu.h"

#include <QApplication>
#include <QCursor>
#include <QDateTime>
#include <QFile>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

#include <iostream>

namespace {

// Scripted runs (ORVANE_TIMING=1) report when the window first showed and
// the peak resident memory at exit.
bool timingEnabled() { return qEnvironmentVariableIntValue("ORVANE_TIMING") == 1; }

long peakResidentKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    return -1;
}

}  // namespace

QPointer<Keylogger> AppDelegate::keylogger_;

AppDelegate::AppDelegate(AppOptions options) : AppDelegate(std::move(options), Environment{}) {}

AppDelegate::AppDelegate(AppOptions options, Environment environment)
    : options_(std::move(options)), environment_(std::move(environment))
{
    if (!options_.dataDir.isEmpty())
        DataPaths::setDataFolderOverride(options_.dataDir);

    MainController::Environment env;
    env.hidManagerFactory = environment_.hidManagerFactory;
    if (!options_.demoModel.isEmpty()) {
        env.hidManagerFactory = [platform = environment_.hidManagerFactory] {
            std::vector<std::unique_ptr<HidManager>> parts;
            parts.push_back(platform());
            parts.push_back(std::make_unique<VirtualHidManager>());
            return std::make_unique<CompositeHidManager>(std::move(parts));
        };
    }
    controller_ = new MainController(std::move(env));
    windowController_ = std::make_unique<MainWindowController>(controller_);
    windowController_->window()->installEventFilter(this);
}

AppDelegate::~AppDelegate() = default;

Keylogger* AppDelegate::keylogger(const KeySourceFactory& factory)
{
    if (!keylogger_)
        keylogger_ = new Keylogger(factory(), QCoreApplication::instance());
    return keylogger_;
}

void AppDelegate::applicationDidFinishLaunching()
{
    controller_->viewDidLoad();
    createButtonStatusBar();
    // Started with the desktop, the app waits in the tray; without a tray
    // the window is the only way in.
    if (!options_.minimized || !statusItem)
        windowController_->window()->show();
    startPrivilegeMonitor();
    keylogger(environment_.keySourceFactory)->scheduleWithRunLoop();
    if (timingEnabled()) {
        QTimer::singleShot(0, [] {
            std::cout << "window shown at " << QDateTime::currentMSecsSinceEpoch() << " ms since epoch" << std::endl;
        });
    }
    if (!options_.demoModel.isEmpty())
        QTimer::singleShot(1000, this, [this] { plugDemoKeyboard(); });
    if (options_.quitAfterSeconds)
        QTimer::singleShot(static_cast<int>(*options_.quitAfterSeconds * 1000), this, [this] { quitWithScreenshot(); });
}

bool AppDelegate::applicationShouldHandleReopen()
{
    QWidget* window = windowController_->window();
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
    return true;
}

void AppDelegate::startPrivilegeMonitor()
{
    OutputLine::print("startPrivilegeMonitor");
    privilegeTimer_ = new QTimer(this);
    privilegeTimer_->setInterval(kPrivilegeCheckIntervalMs);
    connect(privilegeTimer_, &QTimer::timeout, this, [this] { checkPrivilege(); });
    privilegeTimer_->start();
}

void AppDelegate::checkPrivilege()
{
    const bool enabled = environment_.inputAccess().state == InputDeviceAccess::State::Readable;
    OutputLine::print(enabled ? "ACCESS_ENABLED true" : "ACCESS_ENABLED false");
    if (!enabled)
        return;
    OutputLine::print("有权限,开启键盘事件监控");
    privilegeTimer_->stop();
    privilegeTimer_->deleteLater();
}

void AppDelegate::createButtonStatusBar()
{
    quickButton = std::make_unique<StatusMenu>(controller_);
    quickQuit = quickButton->quitAction;
    connect(quickButton.get(), &StatusMenu::showRequested, this, [this] { applicationShouldHandleReopen(); });
    connect(quickButton.get(), &StatusMenu::quitRequested, this, [this] { clickQuit(); });
    if (!environment_.trayAvailable())
        return;
    // Closing the window decides itself whether the app ends (eventFilter).
    QApplication::setQuitOnLastWindowClosed(false);
    statusItem = new QSystemTrayIcon(QIcon(QStringLiteral(":/images/Orvane-Bar.svg")), this);
    statusItem->setToolTip(QApplication::applicationName());
    statusItem->setContextMenu(quickButton->menu());
    // A click opens the menu, as the right-click does.
    connect(statusItem, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            quickButton->menu()->popup(QCursor::pos());
    });
    statusItem->show();
}

void AppDelegate::clickQuit() { QCoreApplication::quit(); }

bool AppDelegate::keepsRunningInTray() const
{
    if (!statusItem || !statusItem->isVisible())
        return false;
    const ProfileFollower& follower = controller_->profileFollower;
    const bool anyRule = !follower.rules().rules.empty() || follower.rules().otherwise != kLeaveProfile;
    return follower.enabled() && anyRule && controller_->focusSource && controller_->focusSource->available();
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Close || watched != windowController_->window())
        return QObject::eventFilter(watched, event);
    // While rules follow the application in front, the app stays in the
    // tray to go on switching; otherwise closing the window ends it.
    if (!keepsRunningInTray()) {
        QTimer::singleShot(0, this, [this] { clickQuit(); });
    } else if (!trayNoticeShown) {
        trayNoticeShown = true;
        statusItem->showMessage(QApplication::applicationName(), appText(AppText::AppRulesKeptInTray),
                                QSystemTrayIcon::Information, kTrayNoticeMs);
    }
    return QObject::eventFilter(watched, event);
}

void AppDelegate::plugDemoKeyboard()
{
    VirtualKeyboard::Options options;
    options.tracePath = options_.traceFile;
    demoKeyboard_ = VirtualKeyboard::fromDemoName(options_.demoModel, options);
    if (!demoKeyboard_)
        return;
    VirtualBus::shared()->plug(demoKeyboard_);
    bool counted = false;
    const int reports = qEnvironmentVariableIntValue("ORVANE_DEMO_UNPLUG_AFTER", &counted);
    if (counted && reports > 0)
        pullDemoCableOnce(reports);
    // Upload sums that go wrong, to see the window handle them.
    const QString sumFault = qEnvironmentVariable("ORVANE_DEMO_SUMS");
    if (!sumFault.isEmpty() && !demoKeyboard_->applySumFault(sumFault))
        std::cerr << "ORVANE_DEMO_SUMS: use corrupt, wrong, wrong-twice or uncounted" << std::endl;
}

void AppDelegate::pullDemoCableOnce(int reports)
{
    demoKeyboard_->unplugDuringUpload(reports);
    // The keyboard drops on the transport thread; the bus is told from here.
    auto* watch = new QTimer(this);
    connect(watch, &QTimer::timeout, this, [this, watch] {
        if (demoKeyboard_->isPlugged())
            return;
        watch->stop();
        watch->deleteLater();
        VirtualBus::shared()->unplug(demoKeyboard_);
        QTimer::singleShot(3000, this, [this] { VirtualBus::shared()->plug(demoKeyboard_); });
    });
    watch->start(50);
}

void AppDelegate::quitWithScreenshot()
{
    if (!options_.screenshotFile.isEmpty()) {
        if (!windowController_->window()->grab().save(options_.screenshotFile))
            std::cerr << "Could not save the screenshot to " << options_.screenshotFile.toStdString() << std::endl;
    }
    if (timingEnabled())
        std::cout << "peak resident memory " << peakResidentKiB() << " KiB" << std::endl;
    QApplication::quit();
}
