#pragma once
// A system-wide key source that reads nothing of the machine: tests hand it
// values as another keyboard would send them. The test run's one key logger
// is made with it and scheduled by keylogger(). sendKey() delivers a key to a
// window as X11 and Wayland do, with its native scan code (evdev code + 8).
#include "AppDelegate.h"
#include "Keylogger/Keylogger.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>
#include <QWindow>

inline void sendKey(QWidget* window, QEvent::Type type, quint32 scanCode, int qtKey = Qt::Key_unknown)
{
    QKeyEvent event(type, qtKey, Qt::NoModifier, scanCode, 0, 0);
    QCoreApplication::sendEvent(window->windowHandle(), &event);
}

class FakeKeySource : public SystemKeySource {
public:
    bool open(Callbacks callbacks) override { return (callbacks_ = std::move(callbacks), true); }
    static void send(int usage, int value) { current()->callbacks_.value(usage, value); }
    static std::unique_ptr<SystemKeySource> make()
    {
        return std::unique_ptr<FakeKeySource>(current() = new FakeKeySource);
    }
    static void keylogger() { AppDelegate::keylogger(make)->scheduleWithRunLoop(); }

private:
    static FakeKeySource*& current()
    {
        static FakeKeySource* source = nullptr;
        return source;
    }
    Callbacks callbacks_;
};
