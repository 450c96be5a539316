#pragma once
// The window controller in session with a virtual keyboard: the set-up of
// the window tests that run end to end. English texts, a fresh data folder,
// the keyboard plugged in; connected() waits until the connection's uploads
// are done. `adjust` may add to the environment (a file chooser, a clock).
#include "Common/Globals.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/MainController.h"
#include "support/StoreTestSupport.h"
#include "support/WaitUntil.h"

#include <functional>

namespace testing_support {

struct VirtualSession {
    TempDataFolder data;
    std::shared_ptr<VirtualBus> bus = std::make_shared<VirtualBus>();
    std::shared_ptr<VirtualKeyboard> keyboard = std::make_shared<VirtualKeyboard>(VirtualKeyboard::Model::M61);
    std::unique_ptr<MainController> controller;

    explicit VirtualSession(const std::function<void(MainController::Environment&)>& adjust = {})
    {
        G_Language = kLanguageEnglish;
        env_.hidManagerFactory = [bus = bus] { return std::make_unique<VirtualHidManager>(bus); };
        if (adjust)
            adjust(env_);
        restart();
        bus->plug(keyboard);
    }
    // Starts the app (again) on the same data folder; the keyboard stays as it is.
    void restart()
    {
        controller.reset();
        controller = std::make_unique<MainController>(env_);
        controller->viewDidLoad();
        controller->show();
    }
    bool connected()
    {
        return waitUntil([&] { return controller->currentTransport() && !controller->hidcomm_busy(); });
    }

private:
    MainController::Environment env_;
};

}  // namespace testing_support
