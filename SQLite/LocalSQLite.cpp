#include "Common/OutputLine.h"
#include "SQLite/LocalSQLite.h"

#include "SQLite/StoreSupport.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <array>
#include <string>
#include <string_view>

namespace {

struct LocalSeed {
    std::string_view key;
    std::string_view value;
};

// "language" and "version" are not seeded: their absence is what tells the
// application that it starts for the first time.
constexpr std::array<LocalSeed, 4> kLocalSeed{{
    {"autorun", "0"},
    {"kb_61k", "1"},
    {"kb_61k_cnc", "1"},
    {"kb_68k", "1"},
}};

}  // namespace

LocalSQLite::LocalSQLite(const QString& device)
{
    auto opening = StoreSupport::openInDatabaseFolder(device, false);
    db = std::move(opening.db);
    health = std::move(opening.health);
    StoreSupport::watchFailures(db, health);
    // A file another program holds is left alone: each wait costs seconds.
    if (!db || health.opening.result == StoreResult::Busy)
        return;
    createTable();
    OutputLine::print("init: connect success");
}

LocalSQLite::~LocalSQLite()
{
    StoreSupport::forgetFailures(db);
}

bool LocalSQLite::failed(const std::exception& error) const
{
    health.noteFailure(error);
    return false;
}

bool LocalSQLite::isClean() const
{
    return db && health.opening.ok() && health.movedAside.isEmpty() && health.lastFailure.ok();
}

void LocalSQLite::createTable()
{
    if (!db)
        return;
    try {
        db->exec(R"(CREATE TABLE IF NOT EXISTS "t_localdata" ()"
                 R"("device_name" TEXT NOT NULL, "key" TEXT NOT NULL, "value" TEXT NOT NULL))");
    } catch (const std::exception& e) {
        failed(e);
        OutputLine::print(std::string("createTable fail ") + e.what());
        return;
    }
    initDBdata();
    OutputLine::print("createTable success");
}

void LocalSQLite::initDBdata()
{
    if (!db)
        return;
    try {
        // One transaction, so that a crash never leaves a partly seeded
        // table, which later openings would take as seeded.
        SQLite::Transaction transaction(*db);
        if (SQLite::Statement(*db, R"(SELECT * FROM "t_localdata" LIMIT 1)").executeStep())
            return;
        int row = 0;
        for (const auto& seed : kLocalSeed) {
            // A failed insert does not stop the next one.
            writeLocalData(kLocalOwner, QString::fromUtf8(seed.key.data(), seed.key.size()),
                           QString::fromUtf8(seed.value.data(), seed.value.size()));
            StoreSupport::reachStep("local.seed." + std::to_string(++row));
        }
        transaction.commit();
    } catch (const std::exception& e) {
        failed(e);
        OutputLine::print(std::string("insertRow fail ") + e.what());
    }
}

QString LocalSQLite::getLocalData(const QString& dev_name, const QString& keyValue) const
{
    return readLocalData(dev_name, keyValue).value;
}

StoreRead LocalSQLite::readLocalData(const QString& dev_name, const QString& keyValue) const
{
    if (!db)
        return {health.opening.result, {}, health.opening.reason};
    try {
        SQLite::Statement query(*db, R"(SELECT "value" FROM "t_localdata" WHERE "device_name" = ? AND "key" = ?)");
        query.bind(1, dev_name.toStdString());
        query.bind(2, keyValue.toStdString());
        const bool found = query.executeStep();
        StoreSupport::noteSuccess(*db);
        if (found)
            return {StoreResult::Ok, QString::fromStdString(query.getColumn(0).getString()), {}};
        return {};
    } catch (const std::exception& e) {
        failed(e);
        return {health.lastFailure.result, {}, health.lastFailure.reason};
    }
}

bool LocalSQLite::updateLocalData(const QString& dev_name, const QString& keyValue, const QString& newvalue)
{
    if (!db)
        return true;
    try {
        SQLite::Statement update(*db,
                                 R"(UPDATE "t_localdata" SET "value" = ? WHERE "device_name" = ? AND "key" = ?)");
        update.bind(1, newvalue.toStdString());
        update.bind(2, dev_name.toStdString());
        update.bind(3, keyValue.toStdString());
        update.exec();
        StoreSupport::noteSuccess(*db);
        return true;
    } catch (const std::exception& e) {
        return failed(e);
    }
}

bool LocalSQLite::writeLocalData(const QString& dev_name, const QString& keyValue, const QString& newvalue)
{
    if (!db)
        return true;
    try {
        SQLite::Statement insert(*db, R"(INSERT INTO "t_localdata" ("device_name", "key", "value") VALUES (?, ?, ?))");
        insert.bind(1, dev_name.toStdString());
        insert.bind(2, keyValue.toStdString());
        insert.bind(3, newvalue.toStdString());
        insert.exec();
        StoreSupport::noteSuccess(*db);
        return true;
    } catch (const std::exception& e) {
        return failed(e);
    }
}
