#pragma once
// Module-wide values shared by the window controller and its helpers.

#include <QString>
#include <QtGlobal>

#include <atomic>

// Model of the connected (or last connected) keyboard: 0 CNC, 1 61-key,
// 2 68-key. Written by the discovery handler on the monitor thread.
extern std::atomic<int> g_device_type;

inline constexpr int kLanguageEnglish = 1033;
inline constexpr int kLanguageChinese = 2052;

// Interface language: kLanguageEnglish or kLanguageChinese.
extern std::atomic<int> G_Language;

// ---- Last input ------------------------------------------------------------
// What the key logger saw last, from any keyboard of the machine (written on
// the main thread), before the application's own widgets see the key, so a
// handler of a key event reads values that already describe that key.

// HID usage of the last key value; consumers set it to 0 to forget it.
extern int GLOBAL_LAST_PRESS_KEY_SCANCODE;
// "down" or "up": what the last key value did; "" before the first.
extern QString lastKeyOperate;
// Milliseconds since 1970 of the last input value of any kind.
extern qint64 lastMovedTime;
// Left Shift (usage 225) as the input capture last saw it: 1 while held,
// else 0. Read by the keyboard picture when a click decides whether it adds
// to the selection.
extern std::atomic<int> shiftKeyStatus;
