#pragma once
// FocusSource: tells which application is in front, by its desktop identity
// (the X11 WM_CLASS class, the Wayland app_id), as the desktop reports it.
// Each desktop that tells has its own source; createFocusSource() picks the
// one that works in this session at run time, or one that says it can't.

#include <QObject>
#include <QString>

#include <memory>

class FocusSource : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    // False where this desktop does not tell applications which window is in
    // front; the source then never reports.
    virtual bool available() const = 0;
    // A short name of the source for diagnostics ("X11", "none").
    virtual QString name() const = 0;

signals:
    // Another window came to the front. `app` is empty when the window has no
    // identity; `ownWindow` when it belongs to this process.
    void applicationInFront(const QString& app, bool ownWindow);
};

// The source for this session: under Wayland the compositor's toplevel
// list (wlroots compositors), else a KWin script (KDE Plasma); X11 where an
// X server without a Wayland compositor serves us; otherwise one that is
// not available.
std::unique_ptr<FocusSource> createFocusSource();

// What `orvane --doctor` says of this session: the source that would tell
// which window is in front, or plainly that this desktop does not. It only
// looks: nothing is loaded into the desktop.
struct FocusSupport {
    bool available = false;
    QString text;
};
FocusSupport focusSupport();

// The source that never reports.
class NoFocusSource : public FocusSource {
    Q_OBJECT
public:
    using FocusSource::FocusSource;
    bool available() const override { return false; }
    QString name() const override { return QStringLiteral("none"); }
};
