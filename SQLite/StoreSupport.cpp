#include "Common/OutputLine.h"
#include "SQLite/StoreSupport.h"

#include "Common/DataPaths.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

std::unique_ptr<SQLite::Database> StoreSupport::openReadWrite(const QString& pathOrUri)
{
    return std::make_unique<SQLite::Database>(pathOrUri.toStdString(),
                                              SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_URI);
}

std::unique_ptr<SQLite::Database> StoreSupport::connectInDatabaseFolder(const QString& fileName, bool removeExisting)
{
    try {
        const fs::path folder(DataPaths::databaseFolder().toStdString());
        std::error_code error;
        fs::create_directories(folder, error);
        if (error)
            throw fs::filesystem_error("cannot create the database folder", folder, error);

        const fs::path file = folder / fileName.toStdString();
        if (removeExisting) {
            // remove() answers false without an error when there is no file.
            fs::remove(file, error);
            if (error)
                throw fs::filesystem_error("cannot delete the old database", file, error);
        }
        return openReadWrite(QString::fromStdString(file.string()));
    } catch (const std::exception& e) {
        OutputLine::print(std::string("init: connect fail ") + e.what());
        return nullptr;
    }
}
