#include "SQLite/ExchangeFileCheck.h"

#include "Language/AppText.h"
#include "SQLite/KeyProfileSQLite.h"
#include "SQLite/RecordStatements.h"

#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

#include <initializer_list>
#include <span>
#include <string>

namespace ExchangeFileCheck {
namespace {

struct Column {
    const char* name;
    bool number;  // a whole number within 32 bits
};

// What a kind of file must hold: its table, its columns, and which rows of
// it the import reads (an SQL condition).
struct TableShape {
    const char* table;
    std::span<const Column> columns;
    const char* rowsRead;
};

constexpr Column kKeyColumns[] = {{"keyId", true},      {"profId", true},      {"keyvalue", true},
                                  {"macroType", true},  {"macroValue", true},  {"macro2Value", true},
                                  {"macro3Value", true}, {"macroDesc", false}};
constexpr Column kHeaderColumns[] = {{"light_name", false}, {"value1", false}, {"value2", false}};
constexpr Column kLedColumns[] = {{"ledId", true}, {"keyvalue", true}, {"rgbvalue", true}};

const TableShape kKeyTable{"t_keyprofile", kKeyColumns, R"("profId" = 1)"};
const TableShape kLightHeader{"t_lightdata", kHeaderColumns, "1"};
const TableShape kLightLeds{"t_lightleddata", kLedColumns, "1"};

std::string quoted(const char* identifier)
{
    return std::string("\"") + identifier + "\"";
}

QString qualified(const char* table, const char* column)
{
    return QString::fromStdString(quoted(table) + '.' + quoted(column));
}

// The whole file is read: a damaged page anywhere refuses it.
bool healthy(SQLite::Database& db, Inspection& result)
{
    try {
        const std::string check = db.execAndGet("PRAGMA quick_check").getString();
        if (check == "ok")
            return true;
        result.problem = Problem::Damaged;
        result.detail = QString::fromStdString(check);
    } catch (const SQLite::Exception& e) {
        const int code = e.getErrorCode();
        result.problem = code == SQLITE_NOTADB ? Problem::NotADatabase
                         : code == SQLITE_CORRUPT ? Problem::Damaged
                                                  : Problem::CannotOpen;
        result.detail = QString::fromUtf8(e.what());
    }
    return false;
}

bool hasShape(SQLite::Database& db, const TableShape& shape, Inspection& result)
{
    SQLite::Statement table(db, "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = ? COLLATE NOCASE");
    table.bind(1, shape.table);
    if (!table.executeStep() || table.getColumn(0).getInt() == 0) {
        result.problem = Problem::MissingTable;
        result.detail = QString::fromStdString(quoted(shape.table));
        return false;
    }
    for (const Column& column : shape.columns) {
        SQLite::Statement find(db, "SELECT count(*) FROM pragma_table_info(?) WHERE name = ? COLLATE NOCASE");
        find.bind(1, shape.table);
        find.bind(2, column.name);
        if (!find.executeStep() || find.getColumn(0).getInt() == 0) {
            result.problem = Problem::MissingColumn;
            result.detail = qualified(shape.table, column.name);
            return false;
        }
    }
    return true;
}

// A colour is 24 bits; every other number fits the 32 bits it is read into.
bool numbersInRange(SQLite::Database& db, const TableShape& shape, Inspection& result)
{
    for (const Column& column : shape.columns) {
        if (!column.number)
            continue;
        const std::string name = quoted(column.name);
        const bool colour = std::string(column.name) == "rgbvalue";
        const std::string range = colour ? "0 AND 16777215" : "-2147483648 AND 2147483647";
        SQLite::Statement query(db, "SELECT CAST(" + name + " AS TEXT) FROM " + quoted(shape.table) + " WHERE ("
                                        + shape.rowsRead + ") AND (typeof(" + name + ") <> 'integer' OR " + name
                                        + " NOT BETWEEN " + range + ") LIMIT 1");
        if (query.executeStep()) {
            result.problem = Problem::NotANumber;
            result.detail = qualified(shape.table, column.name);
            result.value = QString::fromStdString(query.getColumn(0).getString());
            return false;
        }
    }
    return true;
}

// Opening, health, tables, columns and numbers; false with the problem set.
bool readable(const std::unique_ptr<SQLite::Database>& db, const std::string& openFailure,
              std::initializer_list<const TableShape*> shapes, Inspection& result)
{
    if (!db) {
        result.problem = Problem::CannotOpen;
        result.detail = QString::fromStdString(openFailure);
        return false;
    }
    if (!healthy(*db, result))
        return false;
    try {
        for (const TableShape* shape : shapes)
            if (!hasShape(*db, *shape, result) || !numbersInRange(*db, *shape, result))
                return false;
    } catch (const SQLite::Exception& e) {
        result.problem = Problem::CannotOpen;
        result.detail = QString::fromUtf8(e.what());
        return false;
    }
    return true;
}

// Leaves out the rows whose key the model lacks, counting them.
template <typename Row, typename KeyOf>
void dropForeignKeys(std::vector<Row>& rows, const KeyFilter& modelHasKey, KeyOf keyOf, Inspection& result)
{
    const auto kept = std::erase_if(rows, [&](const Row& row) { return !modelHasKey(keyOf(row)); });
    result.dropped = static_cast<int>(kept);
    if (rows.empty() && result.dropped > 0)
        result.problem = Problem::NoKnownKeys;
}

}  // namespace

KeyFileInspection inspectKeyFile(const keyProfileSQLite& file, const KeyFilter& modelHasKey)
{
    KeyFileInspection result;
    if (!readable(file.db, file.failure, {&kKeyTable}, result))
        return result;
    if (!file.queryKeysProfile(1, result.rows)) {
        result.problem = Problem::CannotOpen;
        result.detail = QString::fromStdString(file.failure);
        return result;
    }
    if (result.rows.empty()) {
        result.problem = Problem::NoProfileRows;
        return result;
    }
    dropForeignKeys(result.rows, modelHasKey, [](const ProfileKey& key) { return key.keyValue; }, result);
    return result;
}

LightFileInspection inspectLightFile(const LightSQLite& file, const KeyFilter& modelHasKey)
{
    LightFileInspection result;
    if (!readable(file.db, file.failure, {&kLightHeader, &kLightLeds}, result))
        return result;
    const bool hasHeader = RecordStatements::guarded(file.db, "inspectLightFile", false, [](SQLite::Database& db) {
        return db.execAndGet(R"(SELECT EXISTS (SELECT 1 FROM "t_lightdata"))").getInt() != 0;
    });
    if (!hasHeader) {
        result.problem = Problem::NoLightMode;
        return result;
    }
    QString value1;
    QString value2;
    file.readLightData(result.name, value1, value2);
    file.getlightLedData(result.leds);
    dropForeignKeys(result.leds, modelHasKey, [](const LEDData& led) { return led.keyvalue; }, result);
    return result;
}

KeyFileInspection inspectKeyFile(const QString& dbUri, const KeyFilter& modelHasKey)
{
    return inspectKeyFile(keyProfileSQLite(dbUri, ExchangeAccess::Import), modelHasKey);
}

LightFileInspection inspectLightFile(const QString& dbUri, const KeyFilter& modelHasKey)
{
    return inspectLightFile(LightSQLite(dbUri, ExchangeAccess::Import), modelHasKey);
}

QString refusalMessage(const Inspection& inspection, const QString& fileName)
{
    const QString file = appText(AppText::QuotedName).arg(fileName);
    const QString unchanged = appText(AppText::FileNothingChanged);
    const QString exported = appText(AppText::FileChooseExported);
    switch (inspection.problem) {
    case Problem::None:
        return {};
    case Problem::CannotOpen:
        return appText(AppText::FileCannotOpen).arg(file, inspection.detail) + unchanged;
    case Problem::NotADatabase:
        return appText(AppText::FileNotADatabase).arg(file) + exported + unchanged;
    case Problem::Damaged:
        return appText(AppText::FileDamaged).arg(file, inspection.detail) + unchanged;
    case Problem::MissingTable:
        return appText(AppText::FileMissingTable).arg(file, inspection.detail) + exported + unchanged;
    case Problem::MissingColumn:
        return appText(AppText::FileMissingColumn).arg(file, inspection.detail) + exported + unchanged;
    case Problem::NotANumber:
        return appText(AppText::FileNotANumber).arg(file, inspection.value, inspection.detail) + unchanged;
    case Problem::NoProfileRows:
        return appText(AppText::FileNoProfileRows).arg(file) + unchanged;
    case Problem::NoLightMode:
        return appText(AppText::FileNoLightMode).arg(file) + unchanged;
    case Problem::NoKnownKeys:
        return appText(AppText::FileNoKnownKeys).arg(inspection.dropped).arg(file) + unchanged;
    }
    return {};
}

}  // namespace ExchangeFileCheck
