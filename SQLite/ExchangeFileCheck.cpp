#include "SQLite/ExchangeFileCheck.h"

#include "Language/AppText.h"
#include "Common/KeyCombination.h"
#include "Protocol/KeyTableBlock.h"
#include "SQLite/KeyProfileSQLite.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>

#include <QUrl>

#include <filesystem>
#include <initializer_list>
#include <span>
#include <string>

namespace ExchangeFileCheck {
namespace {

enum class Value { Number, Text };

// One column's accepted values, as an SQL test on the value (for a text:
// on its length), and the problem a value that fails it is.
struct Rule {
    const char* column;
    Value value;
    const char* accepted;  // "BETWEEN 0 AND 255"
    Problem broken;
    const char* limit;     // the accepted values, as the message names them
    const char* when = "1";  // the rows the rule applies to
};

// What a kind of file must hold: its table, its columns with their rules,
// which rows of it the import reads (an SQL condition), and whether those
// rows are one per key.
struct TableShape {
    const char* table;
    std::span<const Rule> rules;
    const char* rowsRead;
    bool rowPerKey;
};

constexpr const char* kAnyInt = "BETWEEN -2147483648 AND 2147483647";
constexpr const char* kAnyIntText = "-2147483648 to 2147483647";
constexpr const char* kByte = "BETWEEN 0 AND 255";
constexpr const char* kByteText = "0 to 255";
constexpr const char* kModifiers = "BETWEEN 0 AND 511";
constexpr const char* kModifiersText = "0 to 511";
static_assert(KeyCombination::kMaskFlag == 0x100);
constexpr const char* kShownName = "<= 64";
constexpr const char* kShownNameText = "64";

// The kinds the key table gives an entry (KeyTableBlock::Kind).
constexpr const char* kKnownKinds = "IN (10, 11, 12, 13, 14, 16, 18)";
static_assert(KeyTableBlock::kSystemShortcut == 10 && KeyTableBlock::kMedia == 11 && KeyTableBlock::kMacro == 12
              && KeyTableBlock::kMouse == 13 && KeyTableBlock::kCustomKey == 14 && KeyTableBlock::kFn == 16
              && KeyTableBlock::kDisable == 18);

constexpr Rule kKeyRules[] = {
    {"keyId", Value::Number, "IS NOT NULL", Problem::OutOfRange, ""},
    {"profId", Value::Number, kAnyInt, Problem::OutOfRange, kAnyIntText},
    {"keyvalue", Value::Number, kByte, Problem::OutOfRange, kByteText},
    {"macroType", Value::Number, kKnownKinds, Problem::UnknownKind, ""},
    {"macroValue", Value::Number, kAnyInt, Problem::OutOfRange, kAnyIntText},
    // A custom key's value is the key code it sends.
    {"macroValue", Value::Number, kByte, Problem::OutOfRange, kByteText, R"("macroType" = 14)"},
    // Beside a custom key: a lone modifier's usage, or the flag 0x100 with
    // the mask of several modifiers; elsewhere a byte.
    {"macro2Value", Value::Number, kByte, Problem::OutOfRange, kByteText, R"("macroType" <> 14)"},
    {"macro2Value", Value::Number, kModifiers, Problem::OutOfRange, kModifiersText, R"("macroType" = 14)"},
    {"macro3Value", Value::Number, kAnyInt, Problem::OutOfRange, kAnyIntText},
    {"macroDesc", Value::Text, kShownName, Problem::NameTooLong, kShownNameText},
};
constexpr Rule kHeaderRules[] = {
    {"light_name", Value::Text, kShownName, Problem::NameTooLong, kShownNameText},
    {"value1", Value::Text, kShownName, Problem::NameTooLong, kShownNameText},
    {"value2", Value::Text, kShownName, Problem::NameTooLong, kShownNameText},
};
constexpr Rule kLedRules[] = {
    {"ledId", Value::Number, kAnyInt, Problem::OutOfRange, kAnyIntText},
    {"keyvalue", Value::Number, kByte, Problem::OutOfRange, kByteText},
    {"rgbvalue", Value::Number, "BETWEEN 0 AND 16777215", Problem::OutOfRange, "0 to 0xFFFFFF"},
};

const TableShape kKeyTable{"t_keyprofile", kKeyRules, R"("profId" = 1)", true};
const TableShape kLightHeader{"t_lightdata", kHeaderRules, "1", false};
const TableShape kLightLeds{"t_lightleddata", kLedRules, "1", true};

std::string quoted(const char* identifier)
{
    return std::string("\"") + identifier + "\"";
}

QString qualified(const char* table, const char* column)
{
    return QString::fromStdString(quoted(table) + '.' + quoted(column));
}

bool refuse(Inspection& result, Problem problem, const QString& detail = {})
{
    result.problem = problem;
    result.detail = detail;
    return false;
}

const char* specialKind(std::filesystem::file_type type)
{
    switch (type) {
    case std::filesystem::file_type::directory: return "folder";
    case std::filesystem::file_type::fifo: return "pipe";
    case std::filesystem::file_type::block:
    case std::filesystem::file_type::character: return "device";
    case std::filesystem::file_type::socket: return "socket";
    default: return "special";
    }
}

// Before SQLite sees the path: opening a pipe would wait for a writer
// forever, and a huge file would keep the check busy for long.
bool plainFileOfFairSize(const QString& dbUri, Inspection& result)
{
    const QUrl url(dbUri);
    if (!url.isLocalFile())
        return refuse(result, Problem::CannotOpen, QStringLiteral("not a local file"));
    const std::filesystem::path path = url.toLocalFile().toStdString();
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (error)
        return refuse(result, Problem::CannotOpen, QString::fromStdString(error.message()));
    if (status.type() != std::filesystem::file_type::regular)
        return refuse(result, Problem::NotAFile, QString::fromLatin1(specialKind(status.type())));
    const auto size = std::filesystem::file_size(path, error);
    if (error)
        return refuse(result, Problem::CannotOpen, QString::fromStdString(error.message()));
    if (size > std::uintmax_t(kLargestFile)) {
        result.value = QString::number(size);
        result.limit = QString::number(kLargestFile);
        return refuse(result, Problem::TooLarge);
    }
    return true;
}

// The whole file is read: a damaged page anywhere refuses it.
bool healthy(SQLite::Database& db, Inspection& result)
{
    try {
        const std::string check = db.execAndGet("PRAGMA quick_check").getString();
        if (check == "ok")
            return true;
        return refuse(result, Problem::Damaged, QString::fromStdString(check));
    } catch (const SQLite::Exception& e) {
        const int code = e.getErrorCode();
        return refuse(result,
                      code == SQLITE_NOTADB ? Problem::NotADatabase
                      : code == SQLITE_CORRUPT ? Problem::Damaged
                                               : Problem::CannotOpen,
                      QString::fromUtf8(e.what()));
    }
}

bool hasShape(SQLite::Database& db, const TableShape& shape, Inspection& result)
{
    SQLite::Statement table(db, "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = ? COLLATE NOCASE");
    table.bind(1, shape.table);
    if (!table.executeStep() || table.getColumn(0).getInt() == 0)
        return refuse(result, Problem::MissingTable, QString::fromStdString(quoted(shape.table)));
    for (const Rule& rule : shape.rules) {
        SQLite::Statement find(db, "SELECT count(*) FROM pragma_table_info(?) WHERE name = ? COLLATE NOCASE");
        find.bind(1, shape.table);
        find.bind(2, rule.column);
        if (!find.executeStep() || find.getColumn(0).getInt() == 0)
            return refuse(result, Problem::MissingColumn, qualified(shape.table, rule.column));
    }
    return true;
}

// Counted before any row is read: a file of millions of rows is refused
// without reading them.
bool fewerRowsThanKeys(SQLite::Database& db, const TableShape& shape, const ModelKeys& keys, Inspection& result)
{
    if (!shape.rowPerKey)
        return true;
    const int64_t rows = db.execAndGet("SELECT count(*) FROM " + quoted(shape.table) + " WHERE " + shape.rowsRead).getInt64();
    if (rows <= keys.count())
        return true;
    result.value = QString::number(rows);
    result.limit = QString::number(keys.count());
    return refuse(result, Problem::TooManyRows, QString::fromStdString(quoted(shape.table)));
}

bool followsRule(SQLite::Database& db, const TableShape& shape, const Rule& rule, Inspection& result)
{
    const std::string column = quoted(rule.column);
    const std::string tested = rule.value == Value::Text ? "length(" + column + ")" : column;
    const std::string wrongType = rule.value == Value::Number ? "typeof(" + column + ") <> 'integer' OR " : "";
    SQLite::Statement query(db, "SELECT rowid, typeof(" + column + "), CAST(" + column + " AS TEXT), length(" + column
                                    + ") FROM " + quoted(shape.table) + " WHERE (" + shape.rowsRead + ") AND ("
                                    + rule.when + ") AND (" + wrongType + "NOT (" + tested + ' ' + rule.accepted
                                    + ")) LIMIT 1");
    if (!query.executeStep())
        return true;
    result.row = query.getColumn(0).getInt64();
    const bool number = query.getColumn(1).getString() == "integer";
    const bool text = rule.value == Value::Text;
    result.value = text ? QString::number(query.getColumn(3).getInt64())
                   : query.getColumn(2).isNull() ? QStringLiteral("NULL")
                                                 : QString::fromStdString(query.getColumn(2).getString());
    result.limit = QString::fromLatin1(rule.limit);
    return refuse(result, text || number ? rule.broken : Problem::NotANumber, qualified(shape.table, rule.column));
}

// Health, tables, columns, row counts and values; false with the problem set.
bool trustworthy(SQLite::Database& db, std::initializer_list<const TableShape*> shapes, const ModelKeys& keys,
                 Inspection& result)
{
    if (!healthy(db, result))
        return false;
    try {
        for (const TableShape* shape : shapes) {
            if (!hasShape(db, *shape, result) || !fewerRowsThanKeys(db, *shape, keys, result))
                return false;
            for (const Rule& rule : shape->rules)
                if (!followsRule(db, *shape, rule, result))
                    return false;
        }
    } catch (const SQLite::Exception& e) {
        return refuse(result, Problem::CannotOpen, QString::fromUtf8(e.what()));
    }
    return true;
}

// Leaves out the rows whose key the model lacks, counting them.
template <typename Row, typename KeyOf>
void dropForeignKeys(std::vector<Row>& rows, const ModelKeys& keys, KeyOf keyOf, Inspection& result)
{
    const auto kept = std::erase_if(rows, [&](const Row& row) { return !keys.has(keyOf(row)); });
    result.dropped = static_cast<int>(kept);
    if (rows.empty() && result.dropped > 0)
        result.problem = Problem::NoKnownKeys;
}

// Runs `read` on the opened file inside one read transaction, after the
// checks of `shapes`.
template <typename File, typename Read>
bool readChecked(const File& file, std::initializer_list<const TableShape*> shapes, const ModelKeys& keys,
                 Inspection& result, Read read)
{
    if (!file.db)
        return refuse(result, Problem::CannotOpen, QString::fromStdString(file.failure));
    try {
        SQLite::Transaction transaction(*file.db);
        return trustworthy(*file.db, shapes, keys, result) && read();
    } catch (const SQLite::Exception& e) {
        return refuse(result, Problem::CannotOpen, QString::fromUtf8(e.what()));
    }
}

}  // namespace

KeyFileInspection inspectKeyFile(const QString& dbUri, const ModelKeys& keys)
{
    KeyFileInspection result;
    if (!plainFileOfFairSize(dbUri, result))
        return result;
    const keyProfileSQLite file(dbUri, ExchangeAccess::Import);
    const bool read = readChecked(file, {&kKeyTable}, keys, result, [&] {
        return file.queryKeysProfile(1, result.rows)
               || refuse(result, Problem::CannotOpen, QString::fromStdString(file.failure));
    });
    if (!read)
        return result;
    if (result.rows.empty()) {
        result.problem = Problem::NoProfileRows;
        return result;
    }
    dropForeignKeys(result.rows, keys, [](const ProfileKey& key) { return key.keyValue; }, result);
    return result;
}

LightFileInspection inspectLightFile(const QString& dbUri, const ModelKeys& keys)
{
    LightFileInspection result;
    if (!plainFileOfFairSize(dbUri, result))
        return result;
    const LightSQLite file(dbUri, ExchangeAccess::Import);
    const bool read = readChecked(file, {&kLightHeader, &kLightLeds}, keys, result, [&] {
        if (file.db->execAndGet(R"(SELECT EXISTS (SELECT 1 FROM "t_lightdata"))").getInt() == 0)
            return refuse(result, Problem::NoLightMode);
        QString value1;
        QString value2;
        file.readLightData(result.name, value1, value2);
        file.getlightLedData(result.leds);
        return true;
    });
    if (read)
        dropForeignKeys(result.leds, keys, [](const LEDData& led) { return led.keyvalue; }, result);
    return result;
}

}  // namespace ExchangeFileCheck
