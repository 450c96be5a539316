#include "Common/Globals.h"

std::atomic<int> g_device_type{1};
std::atomic<int> G_Language{kLanguageEnglish};

int GLOBAL_LAST_PRESS_KEY_SCANCODE = 0;
QString lastKeyOperate;
qint64 lastMovedTime = 0;
std::atomic<int> shiftKeyStatus{0};
