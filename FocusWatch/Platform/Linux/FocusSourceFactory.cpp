// On Linux the session decides: an X11 session reports through the X server.
// Under a Wayland compositor the X server (Xwayland) sees only its own
// clients, so its answers would be wrong for every native window.
#include "FocusWatch/FocusSource.h"
#include "FocusWatch/Platform/Linux/X11FocusSource.h"

std::unique_ptr<FocusSource> createFocusSource()
{
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && !qEnvironmentVariableIsEmpty("DISPLAY")) {
        auto x11 = X11FocusSource::connect();
        if (x11)
            return x11;
    }
    return std::make_unique<NoFocusSource>();
}
