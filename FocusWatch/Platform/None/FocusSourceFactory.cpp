#include "FocusWatch/FocusSource.h"

std::unique_ptr<FocusSource> createFocusSource() { return std::make_unique<NoFocusSource>(); }

FocusSupport focusSupport()
{
    return {false, QStringLiteral("this system does not tell applications which window is in front, "
                                  "so profiles can't follow the application in front here")};
}
