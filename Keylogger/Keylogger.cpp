#include "Keylogger/Keylogger.h"

#include "Common/InputKeyCodes.h"
#include "Common/OutputLine.h"
#include "Keylogger/CallBackFunctions.h"
#include "Keylogger/LocalEventMonitor.h"

#include <QCoreApplication>
#include <QKeyEvent>

Keylogger::Keylogger(std::unique_ptr<SystemKeySource> source, QObject* parent)
    : QObject(parent), manager(std::move(source))
{
}

Keylogger::~Keylogger() = default;

void Keylogger::scheduleWithRunLoop()
{
    if (scheduled_)
        return;
    scheduled_ = true;
    QCoreApplication::instance()->installEventFilter(this);
    const bool opened = manager->open({
        [](int usage, int value) { CallBackFunctions::Handle_IOHIDInputValueCallback(usage, value); },
        [](const QString& node) { CallBackFunctions::Handle_DeviceMatchingCallback(node); },
        [](const QString& node) { CallBackFunctions::Handle_DeviceRemovalCallback(node); },
    });
    if (!opened)
        OutputLine::print("Can't open HID!");
}

bool Keylogger::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    // ShortcutOverride reaches the focus widget ahead of the press (and
    // instead of it when a shortcut takes the key), so it counts as the press.
    if (type != QEvent::KeyPress && type != QEvent::KeyRelease && type != QEvent::ShortcutOverride)
        return QObject::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    const Seen seen{event, type, key->timestamp(), key->nativeScanCode()};
    if (seen == lastSeen_)
        return false;
    lastSeen_ = seen;
    // A repeat is neither a press nor a release: like any value but 0 and 1.
    const int value = key->isAutoRepeat() ? 2 : (type == QEvent::KeyRelease ? 0 : 1);
    CallBackFunctions::Handle_IOHIDInputValueCallback(hidUsageFromNativeScanCode(key->nativeScanCode()).value_or(0),
                                                      value);
    if (type != QEvent::ShortcutOverride)
        LocalEventMonitor::deliver(key);
    return false;
}
