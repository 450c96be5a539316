#pragma once
// Local event monitors: handlers that see the key events of the
// application's own windows, after the key logger has stored them in the
// last-input globals and before the focused widget does. A handler cannot
// change or swallow the event. Main thread only.

#include <QKeyEvent>

#include <functional>

namespace LocalEventMonitor {

enum Mask : unsigned {
    KeyDownMask = 1u << 10,       // a key other than a modifier pressed (repeats included)
    KeyUpMask = 1u << 11,         // a key other than a modifier released
    FlagsChangedMask = 1u << 12,  // a modifier pressed or released
};

using Handler = std::function<void(QKeyEvent* event)>;

// Returns the monitor's token, never 0.
int addLocalMonitorForEvents(unsigned mask, Handler handler);
void removeMonitor(int token);

// The key logger's filter hands each key event of the application here.
void deliver(QKeyEvent* event);

}  // namespace LocalEventMonitor
