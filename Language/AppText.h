#pragma once
// Texts of our own that the numbered tables do not hold (notes, units,
// hints), in English and in Chinese, chosen by the language in force at each
// call like languageText().

#include <QString>

enum class AppText {
    MacroNamePlaceholder,
    MillisecondsUnit,
    MacroRecordingHint,
    MacroSaveFailed,
    MacroStoreTooManyMacros,  // %1 macros in the library, %2 the limit, %3 over
    MacroStoreTooLong,        // %1 bytes needed, %2 the limit, %3 over
    MacroStoreTooManySteps,   // %1 bytes counted, %2 the limit, %3 over
    // Lists with no rows yet
    MacroListEmpty,      // %1 the new macro button's text
    UserLightListEmpty,  // %1 the menu's add entry
};

QString appText(AppText id);
