#pragma once
// The key logger's callbacks: each input value of any keyboard, from the
// system-wide source or from the application's own key events, ends here and
// is stored in the last-input globals (Common/Globals.h). Nothing is decided
// here; the consumers' key events tell them when to look.

#include <QString>

class CallBackFunctions {
public:
    CallBackFunctions() = delete;

    // Usages outside this range move only the clock.
    static constexpr int kFirstKeyUsage = 4;
    static constexpr int kLastKeyUsage = 2310;
    static constexpr int kLeftShiftUsage = 225;

    // A keyboard came or went; the source reads every one it may, so there is
    // nothing to do beyond saying so.
    static void Handle_DeviceMatchingCallback(const QString& node);
    static void Handle_DeviceRemovalCallback(const QString& node);
    // One input value: its HID usage (0 where the code has none) and its
    // integer value (1 pressed, 0 released, other values such as a repeat).
    static void Handle_IOHIDInputValueCallback(int usage, int value);
    static void recordKeyPressed(int isPressed, int scancode);
};
