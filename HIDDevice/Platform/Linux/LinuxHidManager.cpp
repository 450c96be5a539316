// Platforms without a backend yet: nothing is ever found.
#include "HIDDevice/Platform/HidManager.h"

namespace {
class NoHidManager final : public HidManager {
public:
    void setDeviceMatching(std::vector<HidMatch>) override {}
    void registerDeviceMatchingCallback(DeviceCallback) override {}
    void registerDeviceRemovalCallback(DeviceCallback) override {}
    bool open() override { return false; }
};
}  // namespace

std::unique_ptr<HidManager> createPlatformHidManager() { return std::make_unique<NoHidManager>(); }
