// What the window says of a refused exchange file.
#include "SQLite/ExchangeFileCheck.h"

#include "Language/AppText.h"

namespace ExchangeFileCheck {
namespace {

QString kindText(const QString& kind)
{
    if (kind == QLatin1String("folder"))
        return appText(AppText::FileKindFolder);
    if (kind == QLatin1String("pipe"))
        return appText(AppText::FileKindPipe);
    if (kind == QLatin1String("device"))
        return appText(AppText::FileKindDevice);
    if (kind == QLatin1String("socket"))
        return appText(AppText::FileKindSocket);
    return appText(AppText::FileKindSpecial);
}

QString megabytes(const QString& bytes)
{
    return QString::number(bytes.toDouble() / (1024.0 * 1024.0), 'f', 1);
}

// The refusals that name a row of the file.
QString rowRefusal(const Inspection& i, const QString& file)
{
    const QString row = QString::number(i.row);
    switch (i.problem) {
    case Problem::NotANumber:
        return appText(AppText::FileNotANumber).arg(file, i.value, i.detail, row);
    case Problem::OutOfRange:
        return appText(AppText::FileOutOfRange).arg(file, row, i.detail, i.value, i.limit);
    case Problem::UnknownKind:
        return appText(AppText::FileUnknownKind).arg(file, row, i.value) + appText(AppText::FileChooseExported);
    case Problem::NameTooLong:
        return appText(AppText::FileNameTooLong).arg(file, row, i.detail, i.value, i.limit);
    default:
        return {};
    }
}

QString fileRefusal(const Inspection& i, const QString& file)
{
    const QString exported = appText(AppText::FileChooseExported);
    switch (i.problem) {
    case Problem::CannotOpen:
        return appText(AppText::FileCannotOpen).arg(file, i.detail);
    case Problem::NotAFile:
        return appText(AppText::FileNotAFile).arg(file, kindText(i.detail));
    case Problem::TooLarge:
        return appText(AppText::FileTooLarge).arg(file, megabytes(i.value), megabytes(i.limit));
    case Problem::NotADatabase:
        return appText(AppText::FileNotADatabase).arg(file) + exported;
    case Problem::Damaged:
        return appText(AppText::FileDamaged).arg(file, i.detail);
    case Problem::MissingTable:
        return appText(AppText::FileMissingTable).arg(file, i.detail) + exported;
    case Problem::MissingColumn:
        return appText(AppText::FileMissingColumn).arg(file, i.detail) + exported;
    case Problem::TooManyRows:
        return appText(AppText::FileTooManyRows).arg(file, i.value, i.detail, i.limit);
    case Problem::NoProfileRows:
        return appText(AppText::FileNoProfileRows).arg(file);
    case Problem::NoLightMode:
        return appText(AppText::FileNoLightMode).arg(file);
    case Problem::NoKnownKeys:
        return appText(AppText::FileNoKnownKeys).arg(i.dropped).arg(file);
    default:
        return rowRefusal(i, file);
    }
}

}  // namespace

QString refusalMessage(const Inspection& inspection, const QString& fileName)
{
    if (inspection.ok())
        return {};
    return fileRefusal(inspection, appText(AppText::QuotedName).arg(fileName)) + appText(AppText::FileNothingChanged);
}

}  // namespace ExchangeFileCheck
