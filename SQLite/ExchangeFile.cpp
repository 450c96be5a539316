#include "SQLite/ExchangeFile.h"

#include "Common/OutputLine.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QUrlQuery>

#include <filesystem>

std::unique_ptr<SQLite::Database> ExchangeFile::open(const QString& dbUri, ExchangeAccess access, std::string& failure)
{
    const int flags = access == ExchangeAccess::Export ? SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_URI
                                                       : SQLite::OPEN_READONLY | SQLite::OPEN_URI;
    try {
        const QString uri = access == ExchangeAccess::Export ? dbUri : readOnlyUri(dbUri);
        auto db = std::make_unique<SQLite::Database>(uri.toStdString(), flags);
        OutputLine::print("init: connect success");
        return db;
    } catch (const std::exception& e) {
        failure = e.what();
        OutputLine::print(std::string("init: connect fail ") + e.what());
        return nullptr;
    }
}

void ExchangeFile::createTables(SQLite::Database& db, std::initializer_list<const char*> statements, std::string& failure)
{
    try {
        for (const char* statement : statements)
            db.exec(statement);
        OutputLine::print("createTable success");
    } catch (const std::exception& e) {
        failure = e.what();
        OutputLine::print(std::string("createTable fail ") + e.what());
    }
}

QString ExchangeFile::safeFileName(const QString& name)
{
    static const QString kMeaningful = QStringLiteral("/\\?#%:*\"'<>|");
    QString safe = name;
    for (QChar& c : safe) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7f || kMeaningful.contains(c))
            c = QLatin1Char('_');
    }
    return safe.isEmpty() ? QStringLiteral("_") : safe;
}

QString ExchangeFile::displayName(const QString& dbUri)
{
    const QUrl url(dbUri);
    return url.isLocalFile() ? QFileInfo(url.toLocalFile()).fileName() : dbUri;
}

bool ExchangeFile::writeWhole(const QString& dbUri, const std::function<bool(const QString& tempUri)>& write,
                              std::string& failure)
{
    const QString target = QUrl(dbUri).toLocalFile();
    QTemporaryFile temp(target + QStringLiteral(".XXXXXX"));
    if (!temp.open()) {
        failure = temp.errorString().toStdString();
        return false;
    }
    temp.close();
    // Readable as any file the user saves, not only as a private temporary.
    temp.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    if (!write(QUrl::fromLocalFile(temp.fileName()).toString(QUrl::FullyEncoded)))
        return false;
    // rename() replaces the target in one step; the temporary's name is
    // then gone, so it must not be removed afterwards.
    std::error_code error;
    std::filesystem::rename(QFile::encodeName(temp.fileName()).toStdString(), QFile::encodeName(target).toStdString(),
                            error);
    if (error) {
        failure = error.message();
        return false;
    }
    temp.setAutoRemove(false);
    return true;
}

QString ExchangeFile::readOnlyUri(const QString& dbUri)
{
    QUrl url(dbUri);
    QUrlQuery query(url);
    query.addQueryItem(QStringLiteral("mode"), QStringLiteral("ro"));
    query.addQueryItem(QStringLiteral("immutable"), QStringLiteral("1"));
    url.setQuery(query);
    return url.toString(QUrl::FullyEncoded);
}
