// Platforms without a system-wide key path: keys are seen while the window
// has the focus, through the application's own key events.
#include "Keylogger/Platform/SystemKeySource.h"

namespace {
class NoKeySource final : public SystemKeySource {
public:
    bool open(Callbacks) override { return false; }
};
}  // namespace

std::unique_ptr<SystemKeySource> createPlatformKeySource() { return std::make_unique<NoKeySource>(); }

InputDeviceAccess inputDeviceAccess() { return {}; }
InputDeviceAccess inputDeviceAccessIn(const std::filesystem::path&) { return {}; }
