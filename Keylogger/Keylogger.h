#pragma once
// Keylogger: keeps the last-input globals (Common/Globals.h) current from
// two paths, both on the main thread:
//  - an application event filter, always: it sees each key event of our own
//    windows before any widget does, turns Qt's native scan code into the
//    HID usage and hands it to CallBackFunctions, then to the local event
//    monitors, which therefore read globals that describe their event;
//  - the platform's system-wide source (evdev on Linux), where this user may
//    read the input devices, so keys typed in other windows count too.
// Both may report the same key; storing it twice is harmless.

#include "Keylogger/Platform/SystemKeySource.h"

#include <QObject>

#include <memory>

class QKeyEvent;

class Keylogger : public QObject {
    Q_OBJECT
public:
    explicit Keylogger(std::unique_ptr<SystemKeySource> source, QObject* parent = nullptr);
    ~Keylogger() override;

    // Installs the filter and opens the system-wide source. Prints
    // "Can't open HID!" when the source reads no keyboard; the filter works
    // regardless.
    void scheduleWithRunLoop();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // A key event travels from the window to the focus widget and on to its
    // parents; it counts once.
    struct Seen {
        const QEvent* event = nullptr;
        int type = 0;
        quint64 timestamp = 0;
        quint32 scanCode = 0;
        bool operator==(const Seen&) const = default;
    };

    std::unique_ptr<SystemKeySource> manager;
    Seen lastSeen_;
    bool scheduled_ = false;
};
