#pragma once
// The window in front on X11: the window manager keeps it in the root
// window's _NET_ACTIVE_WINDOW. We listen for property changes on the root
// window on a connection of our own (no polling), and read the window's
// WM_CLASS (its class, the second string) and _NET_WM_PID.

#include "FocusWatch/FocusSource.h"

#include <QByteArray>

#include <cstdint>
#include <memory>

class QSocketNotifier;
struct xcb_connection_t;

class X11FocusSource : public FocusSource {
    Q_OBJECT
public:
    // Null when no X server answers on `display` (empty: $DISPLAY).
    static std::unique_ptr<X11FocusSource> connect(const QByteArray& display = {});
    ~X11FocusSource() override;

    bool available() const override { return true; }
    QString name() const override { return QStringLiteral("X11"); }

private:
    explicit X11FocusSource(xcb_connection_t* connection);
    void readEvents();
    void reportActiveWindow();
    uint32_t atom(const char* name) const;

    xcb_connection_t* connection_;
    uint32_t root_ = 0;
    uint32_t activeAtom_ = 0;
    uint32_t pidAtom_ = 0;
    uint32_t lastWindow_ = 0;
    std::unique_ptr<QSocketNotifier> notifier_;
};
