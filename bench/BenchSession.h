#pragma once
// The window controller in session with a virtual keyboard, for the scripted
// measurements: the same start as a user's, with the keyboard plugged in.
// `adjust` may add to the environment (the transport's pauses, for one).
#include "Common/DataPaths.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "LoopTiming.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/MainController.h"

#include <QApplication>
#include <QTemporaryDir>

#include <functional>
#include <memory>

// Set before the application is made: offscreen unless a platform is named.
struct OffscreenUnlessNamed {
    OffscreenUnlessNamed()
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
    }
};

// The application a measurement runs in, with the images registered and a
// data folder of its own: a fresh temporary one unless `folder` names one.
struct BenchApp : OffscreenUnlessNamed {
    QApplication app;
    QTemporaryDir temporary;
    QString folder;

    BenchApp(int& argc, char** argv, const QString& chosen = {})
        : app(argc, argv), folder(chosen.isEmpty() ? temporary.path() : chosen)
    {
        Q_INIT_RESOURCE(resources);
        DataPaths::setDataFolderOverride(folder);
    }
};

struct BenchSession {
    std::shared_ptr<VirtualBus> bus = std::make_shared<VirtualBus>();
    std::shared_ptr<VirtualKeyboard> keyboard;
    std::unique_ptr<MainController> controller;

    explicit BenchSession(VirtualKeyboard::Model model,
                          const std::function<void(MainController::Environment&)>& adjust = {})
        : keyboard(std::make_shared<VirtualKeyboard>(model))
    {
        MainController::Environment env;
        env.hidManagerFactory = [bus = bus] { return std::make_unique<VirtualHidManager>(bus); };
        if (adjust)
            adjust(env);
        controller = std::make_unique<MainController>(env);
        controller->viewDidLoad();
        controller->show();
        bus->plug(keyboard);
    }

    // Turns the event loop until the connection's uploads are done; false
    // when that takes longer than `timeoutMs`.
    bool connected(int timeoutMs = 20000)
    {
        return turnUntil([&] { return controller->deviceDB && controller->currentTransport() && !controller->hidcomm_busy(); },
                         std::chrono::milliseconds(timeoutMs));
    }
};
