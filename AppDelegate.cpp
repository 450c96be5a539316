#include "AppDelegate.h"

#include "Common/DataPaths.h"
#include "HIDDevice/Platform/CompositeHidManager.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "Common/OutputLine.h"
#include "Keylogger/Keylogger.h"
#include "Language/AppText.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/MainController.h"
#include "View/MainWindowController.h"

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

// What to do when this user may not read the input devices: join the group
// that owns them. Said once, in the window.
QString inputCaptureAdvice(const QString& group)
{
    const QString name = group.isEmpty() ? QStringLiteral("input") : group;
    return appText(AppText::InputCaptureAdvice).arg(name);
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
    windowController_->window()->show();
    requestInputTrust();
    startPrivilegeMonitor();
    keylogger(environment_.keySourceFactory)->scheduleWithRunLoop();
    createButtonStatusBar();
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

void AppDelegate::requestInputTrust()
{
    // There is no system prompt to ask for this: the window says what the
    // administrator's fix is.
    const InputDeviceAccess access = environment_.inputAccess();
    if (access.state == InputDeviceAccess::State::NotPermitted)
        controller_->showProblem(inputCaptureAdvice(access.group), QStringLiteral("input-capture"));
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
    controller_->withdrawProblem(QStringLiteral("input-capture"));
    privilegeTimer_->stop();
    privilegeTimer_->deleteLater();
}

void AppDelegate::createButtonStatusBar()
{
    // The menu exists with or without a tray to show it in.
    quickButton = std::make_unique<QMenu>();
    quickQuit = quickButton->addAction(appText(AppText::Quit));
    // The menu outlives a language switch: it takes the language when it opens.
    connect(quickButton.get(), &QMenu::aboutToShow, this, [this] { quickQuit->setText(appText(AppText::Quit)); });
    connect(quickQuit, &QAction::triggered, this, [this] { clickQuit(); });
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return;
    statusItem = new QSystemTrayIcon(QIcon(QStringLiteral(":/images/Orvane-Bar.svg")), this);
    statusItem->setToolTip(QApplication::applicationName());
    statusItem->setContextMenu(quickButton.get());
    // A click opens the menu, as the right-click does.
    connect(statusItem, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            quickButton->popup(QCursor::pos());
    });
    statusItem->show();
}

void AppDelegate::clickQuit() { QCoreApplication::quit(); }

bool AppDelegate::eventFilter(QObject* watched, QEvent* event)
{
    // There is no state with only the status item left: closing the window
    // ends the application.
    if (event->type() == QEvent::Close && watched == windowController_->window())
        QTimer::singleShot(0, this, [this] { clickQuit(); });
    return QObject::eventFilter(watched, event);
}

void AppDelegate::plugDemoKeyboard()
{
    VirtualKeyboard::Options options;
    options.tracePath = options_.traceFile;
    demoKeyboard_ = VirtualKeyboard::fromDemoName(options_.demoModel, options);
    if (demoKeyboard_)
        VirtualBus::shared()->plug(demoKeyboard_);
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
