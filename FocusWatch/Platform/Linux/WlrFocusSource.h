#pragma once
// The window in front on wlroots compositors (sway, Hyprland, labwc,
// Wayfire...): they list every toplevel window to clients that bind
// zwlr_foreign_toplevel_manager_v1, with its app_id and its states, and say
// "done" after each change. The toplevel whose states hold "activated" is
// the one in front. We read the list on a Wayland connection of our own,
// woken by its socket (no polling), whatever platform the window itself
// runs on.

#include "FocusWatch/FocusSource.h"

#include <QByteArray>

#include <memory>
#include <vector>

class QSocketNotifier;
struct wl_display;
struct wl_registry;
struct zwlr_foreign_toplevel_manager_v1;

class WlrFocusSource : public FocusSource {
    Q_OBJECT
public:
    // Null when no compositor answers on `display` (empty: $WAYLAND_DISPLAY;
    // a name in $XDG_RUNTIME_DIR or an absolute path), or when it does not
    // offer the toplevel list.
    static std::unique_ptr<WlrFocusSource> connect(const QByteArray& display = {});
    ~WlrFocusSource() override;

    bool available() const override { return true; }
    QString name() const override { return QStringLiteral("wlroots toplevel list"); }

private:
    struct Toplevel;
    struct Callbacks;  // the protocol's listeners, which reach our state
    friend struct Callbacks;

    explicit WlrFocusSource(wl_display* display);
    void readEvents();
    void toplevelDone(Toplevel* toplevel);
    void toplevelClosed(Toplevel* toplevel);

    wl_display* display_;
    wl_registry* registry_ = nullptr;
    zwlr_foreign_toplevel_manager_v1* manager_ = nullptr;
    std::vector<std::unique_ptr<Toplevel>> toplevels_;
    const Toplevel* lastInFront_ = nullptr;
    QString lastApp_;
    std::unique_ptr<QSocketNotifier> notifier_;
};
