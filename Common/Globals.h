#pragma once
// Module-wide values shared by the window controller and its helpers.

#include <atomic>

// Model of the connected (or last connected) keyboard: 0 CNC, 1 61-key,
// 2 68-key. Written by the discovery handler on the monitor thread.
extern std::atomic<int> g_device_type;

// Interface language: 1033 English, 2052 Chinese.
extern std::atomic<int> G_Language;
