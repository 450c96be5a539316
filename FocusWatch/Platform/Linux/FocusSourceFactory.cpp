// On Linux the session decides. Under a Wayland compositor the X server
// (Xwayland) sees only its own clients, so its answers would be wrong for
// every native window: there the compositor must tell, through the wlroots
// toplevel list or KWin's scripting; GNOME's shell offers neither.
#include "FocusWatch/FocusSource.h"
#include "FocusWatch/Platform/Linux/KWinFocusSource.h"
#include "FocusWatch/Platform/Linux/WlrFocusSource.h"
#include "FocusWatch/Platform/Linux/X11FocusSource.h"

namespace {

bool waylandSession() { return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"); }
bool x11Session() { return !waylandSession() && !qEnvironmentVariableIsEmpty("DISPLAY"); }

QString desktopName()
{
    const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    return desktop.isEmpty() ? QStringLiteral("this desktop") : desktop.split(QLatin1Char(':')).join(QLatin1Char('/'));
}

}  // namespace

std::unique_ptr<FocusSource> createFocusSource()
{
    if (waylandSession()) {
        if (auto wlr = WlrFocusSource::connect())
            return wlr;
        if (auto kwin = KWinFocusSource::connect())
            return kwin;
    } else if (x11Session()) {
        if (auto x11 = X11FocusSource::connect())
            return x11;
    }
    return std::make_unique<NoFocusSource>();
}

FocusSupport focusSupport()
{
    if (waylandSession()) {
        if (WlrFocusSource::connect())
            return {true, QStringLiteral("the compositor on %1 lists its windows (wlroots toplevel list)")
                              .arg(qEnvironmentVariable("WAYLAND_DISPLAY"))};
        if (KWinFocusSource::offered())
            return {true, QStringLiteral("KWin runs our script that reports the active window (KDE Plasma on Wayland)")};
        return {false, QStringLiteral("%1 on Wayland does not tell applications which window is in front, "
                                      "so profiles can't follow the application in front here")
                           .arg(desktopName())};
    }
    if (x11Session()) {
        if (X11FocusSource::connect())
            return {true, QStringLiteral("the X server on %1 keeps the active window (_NET_ACTIVE_WINDOW)")
                              .arg(qEnvironmentVariable("DISPLAY"))};
        return {false, QStringLiteral("no X server answers on %1, so profiles can't follow the application in front")
                           .arg(qEnvironmentVariable("DISPLAY"))};
    }
    return {false, QStringLiteral("no desktop session (neither WAYLAND_DISPLAY nor DISPLAY is set), "
                                  "so profiles can't follow the application in front")};
}
