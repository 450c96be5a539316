#pragma once
// Discovery of HID interfaces by vendor and product id.
//
// A manager lives on the thread that calls open() and delivers every callback
// on that thread's event loop: interfaces already present are reported through
// the matching callback after open() returns, exactly like ones that arrive
// later. The same interface is always reported with the same handle object,
// so handles can be compared by address to tell devices apart.

#include "HIDDevice/Platform/HidDeviceHandle.h"

#include <functional>
#include <memory>
#include <vector>

struct HidMatch {
    int vendorId = 0;
    int productId = 0;
};

class HidManager {
public:
    using DeviceCallback = std::function<void(const std::shared_ptr<HidDeviceHandle>&)>;
    // A message meant for the user (a permission problem, say); posted once.
    using ProblemCallback = std::function<void(const QString&)>;

    virtual ~HidManager() = default;

    virtual void setDeviceMatching(std::vector<HidMatch> matches) = 0;
    virtual void registerDeviceMatchingCallback(DeviceCallback callback) = 0;
    virtual void registerDeviceRemovalCallback(DeviceCallback callback) = 0;
    virtual void registerProblemCallback(ProblemCallback callback) { (void)callback; }

    // Starts watching. Returns false when the platform could not be set up.
    virtual bool open() = 0;
};

// The manager for real hardware on this platform; CMake picks the file.
std::unique_ptr<HidManager> createPlatformHidManager();
