#include "Keylogger/CallBackFunctions.h"

#include "Common/Globals.h"
#include "Common/OutputLine.h"

#include <QDateTime>

void CallBackFunctions::Handle_DeviceMatchingCallback(const QString& node)
{
    qCInfo(lcOrvane) << "key input from" << node;
}

void CallBackFunctions::Handle_DeviceRemovalCallback(const QString& node)
{
    qCInfo(lcOrvane) << "key input gone:" << node;
}

void CallBackFunctions::Handle_IOHIDInputValueCallback(int usage, int value)
{
    // Runs for every value of every keyboard: read the clock, store, return.
    lastMovedTime = QDateTime::currentMSecsSinceEpoch();
    if (usage < kFirstKeyUsage || usage > kLastKeyUsage)
        return;
    if (usage == kLeftShiftUsage)
        shiftKeyStatus = value;
    recordKeyPressed(value, usage);
}

void CallBackFunctions::recordKeyPressed(int isPressed, int scancode)
{
    GLOBAL_LAST_PRESS_KEY_SCANCODE = scancode;
    if (isPressed == 1)
        lastKeyOperate = QStringLiteral("down");
    else if (isPressed == 0)
        lastKeyOperate = QStringLiteral("up");
}
