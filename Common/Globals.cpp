#include "Common/Globals.h"

std::atomic<int> g_device_type{1};
std::atomic<int> G_Language{kLanguageEnglish};
std::atomic<int> shiftKeyStatus{0};
