#pragma once
// Module-wide values shared by the window controller and its helpers.

#include <atomic>

// Model of the connected (or last connected) keyboard: 0 CNC, 1 61-key,
// 2 68-key. Written by the discovery handler on the monitor thread.
extern std::atomic<int> g_device_type;

inline constexpr int kLanguageEnglish = 1033;
inline constexpr int kLanguageChinese = 2052;

// Interface language: kLanguageEnglish or kLanguageChinese.
extern std::atomic<int> G_Language;

// Left Shift as the input capture last saw it: 1 while held, else 0. Written
// by the input capture (possibly off the main thread), read by the keyboard
// picture when a click decides whether it adds to the selection.
extern std::atomic<int> shiftKeyStatus;
