#pragma once
// Key codes of the host's input paths turned into HID usages of the
// Keyboard/Keypad page, the numbers the key maps use as `key_code` (4 is A,
// 224 to 231 are the modifiers). Two sources feed them:
//  - evdev key codes, as /dev/input/event* reports them;
//  - Qt's native scan codes on X11 and Wayland, which are xkb keycodes:
//    the evdev code plus 8.
// A code the page has no usage for answers none. Pure lookups, any thread.

#include <QtGlobal>

#include <optional>

std::optional<int> hidUsageFromEvdev(int code);
std::optional<int> hidUsageFromNativeScanCode(quint32 nativeScanCode);
