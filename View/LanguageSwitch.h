#pragma once
// The controls whose text follows the language, and the font that renders
// Chinese.

#include <span>

struct LabelledControl {
    const char* objectName;
    int textId;
};

// In the order a switch sets them. A control shows its text through its
// "text" property; one that is not built yet is passed over.
std::span<const LabelledControl> labelledControls();

// Makes the simplified Chinese face (the app's cut of it first, see
// AppFont) the interface font, so Chinese text is drawn with it rather than
// whichever CJK face the system would pick first (often the Japanese one,
// whose forms differ).
void useChineseCapableFont();

// Loads Qt's own translations for the language (kLanguageChinese), or takes
// them off for English, so Qt's dialogs follow the window's language.
void useQtTranslations(int language);
