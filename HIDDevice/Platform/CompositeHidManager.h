#pragma once
// Several managers seen as one: the demo mode watches the virtual bus beside
// the real one, so a real keyboard is still found.

#include "HIDDevice/Platform/HidManager.h"

class CompositeHidManager final : public HidManager {
public:
    explicit CompositeHidManager(std::vector<std::unique_ptr<HidManager>> parts) : parts_(std::move(parts)) {}

    void setDeviceMatching(std::vector<HidMatch> matches) override
    {
        for (auto& p : parts_)
            p->setDeviceMatching(matches);
    }
    void registerDeviceMatchingCallback(DeviceCallback callback) override
    {
        for (auto& p : parts_)
            p->registerDeviceMatchingCallback(callback);
    }
    void registerDeviceRemovalCallback(DeviceCallback callback) override
    {
        for (auto& p : parts_)
            p->registerDeviceRemovalCallback(callback);
    }
    void registerProblemCallback(ProblemCallback callback) override
    {
        for (auto& p : parts_)
            p->registerProblemCallback(callback);
    }
    bool open() override
    {
        bool any = false;
        for (auto& p : parts_)
            any = p->open() || any;
        return any;
    }

private:
    std::vector<std::unique_ptr<HidManager>> parts_;
};
