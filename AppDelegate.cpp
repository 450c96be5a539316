#include "AppDelegate.h"

#include "Common/DataPaths.h"
#include "HIDDevice/Platform/CompositeHidManager.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/MainController.h"
#include "View/MainWindowController.h"

#include <QApplication>
#include <QDateTime>
#include <QFile>
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

AppDelegate::AppDelegate(AppOptions options) : options_(std::move(options))
{
    if (!options_.dataDir.isEmpty())
        DataPaths::setDataFolderOverride(options_.dataDir);

    MainController::Environment env;
    if (!options_.demoModel.isEmpty()) {
        env.hidManagerFactory = [] {
            std::vector<std::unique_ptr<HidManager>> parts;
            parts.push_back(createPlatformHidManager());
            parts.push_back(std::make_unique<VirtualHidManager>());
            return std::make_unique<CompositeHidManager>(std::move(parts));
        };
    }
    controller_ = new MainController(std::move(env));
    windowController_ = std::make_unique<MainWindowController>(controller_);
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    controller_->viewDidLoad();
    windowController_->window()->show();
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
