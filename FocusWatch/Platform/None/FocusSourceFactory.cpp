#include "FocusWatch/FocusSource.h"

std::unique_ptr<FocusSource> createFocusSource() { return std::make_unique<NoFocusSource>(); }
