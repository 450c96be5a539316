#include "Language/LanguageTag.h"

#include "Common/Globals.h"

#include <QLocale>
#include <QRegularExpression>

QString languageTagFor(const QString& uiLanguage)
{
    const QLocale locale(uiLanguage);
    if (locale.language() == QLocale::C || locale.language() == QLocale::AnyLanguage)
        return QStringLiteral("en-US");
    const QString language = QLocale::languageToCode(locale.language());
    const QString territory = QLocale::territoryToCode(locale.territory());
    if (locale.language() == QLocale::Chinese) {
        // QLocale fills in a likely region, but only a region the desktop
        // names tells which Chinese it means.
        static const QRegularExpression region(QStringLiteral("[-_]([A-Za-z]{2}|[0-9]{3})$"));
        if (!region.match(uiLanguage).hasMatch())
            return QString(uiLanguage).replace('_', '-');
        return language + '-' + QLocale::scriptToCode(locale.script()) + '-' + territory;
    }
    return territory.isEmpty() ? language : language + '-' + territory;
}

QString systemLanguageTag()
{
    const QStringList languages = QLocale::system().uiLanguages();
    return languageTagFor(languages.isEmpty() ? QStringLiteral("C") : languages.first());
}

int languageIdForTag(const QString& tag)
{
    return tag == QLatin1String("zh-Hans-CN") ? kLanguageChinese : kLanguageEnglish;
}
