#include "Keylogger/LocalEventMonitor.h"

#include <map>

namespace LocalEventMonitor {
namespace {

struct Monitor {
    unsigned mask;
    Handler handler;
};

std::map<int, Monitor>& monitors()
{
    static std::map<int, Monitor> all;
    return all;
}

bool isModifier(int key)
{
    switch (key) {
    case Qt::Key_Shift: case Qt::Key_Control: case Qt::Key_Meta: case Qt::Key_Alt: case Qt::Key_AltGr:
    case Qt::Key_CapsLock: case Qt::Key_Super_L: case Qt::Key_Super_R:
        return true;
    default:
        return false;
    }
}

}  // namespace

int addLocalMonitorForEvents(unsigned mask, Handler handler)
{
    static int lastToken = 0;
    monitors()[++lastToken] = {mask, std::move(handler)};
    return lastToken;
}

void removeMonitor(int token) { monitors().erase(token); }

void deliver(QKeyEvent* event)
{
    unsigned kind = 0;
    if (isModifier(event->key()))
        kind = FlagsChangedMask;
    else if (event->type() == QEvent::KeyPress)
        kind = KeyDownMask;
    else if (event->type() == QEvent::KeyRelease)
        kind = KeyUpMask;
    // A handler may remove monitors (its dialog closes): walk a copy.
    const std::map<int, Monitor> current = monitors();
    for (const auto& [token, monitor] : current)
        if ((monitor.mask & kind) && monitors().count(token))
            monitor.handler(event);
}

}  // namespace LocalEventMonitor
