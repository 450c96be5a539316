#pragma once
// AppDelegate: brings the application up: the options, the window and its
// controller, and for scripted runs the virtual keyboard, the timed exit and
// the screenshot.

#include "Common/AppOptions.h"

#include <QObject>

#include <memory>

class MainController;
class MainWindowController;
class VirtualKeyboard;

class AppDelegate : public QObject {
    Q_OBJECT
public:
    explicit AppDelegate(AppOptions options);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();

private:
    void plugDemoKeyboard();
    void quitWithScreenshot();

    AppOptions options_;
    MainController* controller_ = nullptr;  // owned by the window
    std::unique_ptr<MainWindowController> windowController_;
    std::shared_ptr<VirtualKeyboard> demoKeyboard_;
};
