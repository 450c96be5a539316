#pragma once
// The window in front on KDE Plasma under Wayland. KWin tells no client
// which window is in front, but it runs scripts handed to it over D-Bus
// (org.kde.KWin /Scripting): we load a small one that calls us back over
// D-Bus with the active window's resource class (and its process id, to
// know our own windows) at each activation, and unload it when we go.
// Plasma 5 and 6 name the activation signal differently; the script
// takes whichever the running KWin has.

#include "FocusWatch/FocusSource.h"

#include <QTemporaryFile>

#include <memory>

class KWinFocusSource : public FocusSource {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.orvane.keyboardstudio.FocusWatch")
public:
    // True when KWin's scripting interface is on the session bus.
    static bool offered();
    // Null when KWin is not there or refuses the script.
    static std::unique_ptr<KWinFocusSource> connect();
    ~KWinFocusSource() override;

    bool available() const override { return true; }
    QString name() const override { return QStringLiteral("KWin script"); }

public slots:
    // The script's call over D-Bus; `pid` in decimal.
    Q_SCRIPTABLE void activeWindow(const QString& resourceClass, const QString& pid);

private:
    KWinFocusSource();
    bool load();

    QString objectPath_;
    QString pluginName_;
    QTemporaryFile script_;
    bool loaded_ = false;
};
