#include "Language/LanguageTag.h"

#include <QLocale>

QString languageTagFor(const QString& uiLanguage)
{
    const QLocale locale(uiLanguage);
    if (locale.language() == QLocale::C || locale.language() == QLocale::AnyLanguage)
        return QStringLiteral("en-US");
    const QString language = QLocale::languageToCode(locale.language());
    const QString territory = QLocale::territoryToCode(locale.territory());
    if (locale.language() == QLocale::Chinese)
        return language + '-' + QLocale::scriptToCode(locale.script()) + '-' + territory;
    return territory.isEmpty() ? language : language + '-' + territory;
}

QString systemLanguageTag()
{
    const QStringList languages = QLocale::system().uiLanguages();
    return languageTagFor(languages.isEmpty() ? QStringLiteral("C") : languages.first());
}
