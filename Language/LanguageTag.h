#pragma once
// The system's preferred interface language as a BCP 47 tag in the form the
// language setting stores: "zh-Hans-CN" for simplified Chinese in China,
// "en-US" for American English.

#include <QString>
#include <QStringList>

// `uiLanguage` is one entry of QLocale::uiLanguages() ("zh-CN", "en-US",
// "C"). Chinese with a region gains its script ("zh-CN" and "zh_CN" give
// "zh-Hans-CN"); Chinese without a region keeps the tag it has ("zh",
// "zh-Hans"). Every other language is language-region; the C locale counts
// as "en-US".
QString languageTagFor(const QString& uiLanguage);

// The interface language for a stored language tag: only "zh-Hans-CN" is
// Chinese; every other text, other Chinese variants included, is English.
int languageIdForTag(const QString& tag);

// The first entry of the system's list, as above.
QString systemLanguageTag();
