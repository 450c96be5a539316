#pragma once
// The system's preferred interface language as a BCP 47 tag in the form the
// language setting stores: "zh-Hans-CN" for simplified Chinese in China,
// "en-US" for American English.

#include <QString>
#include <QStringList>

// `uiLanguage` is one entry of QLocale::uiLanguages() ("zh-CN", "en-US",
// "C"). Chinese keeps its script, every other language is language-region;
// the C locale counts as "en-US".
QString languageTagFor(const QString& uiLanguage);

// The first entry of the system's list, as above.
QString systemLanguageTag();
