#pragma once
// Key values from every keyboard and keypad of the machine, whichever
// window is in front, and whether this user may read them. One
// implementation per platform, picked by CMake: Linux reads evdev; elsewhere
// there is none and the application's own key events are all there is.

#include <QString>

#include <functional>
#include <filesystem>
#include <memory>

class SystemKeySource {
public:
    struct Callbacks {
        std::function<void(int usage, int value)> value;  // usage 0: a key the page has no usage for
        std::function<void(const QString& node)> added;
        std::function<void(const QString& node)> removed;
    };

    virtual ~SystemKeySource() = default;
    // Starts delivering on the calling thread's event loop, now and for
    // keyboards plugged in later. False when no keyboard can be read.
    virtual bool open(Callbacks callbacks) = 0;
};

std::unique_ptr<SystemKeySource> createPlatformKeySource();

// Whether this user may read the input devices, and if not, the group that
// may (the device nodes' own group), so the window can name the fix.
struct InputDeviceAccess {
    enum class State { Readable, NotPermitted, NoDevices };
    State state = State::NoDevices;
    QString group;
};

InputDeviceAccess inputDeviceAccess();
// The same for the event nodes in `folder` (/dev/input above).
InputDeviceAccess inputDeviceAccessIn(const std::filesystem::path& folder);
