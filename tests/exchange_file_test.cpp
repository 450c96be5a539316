// Exchange files: every refused file names its problem and is left exactly
// as it was; an accepted file yields the rows an import writes, and the
// store writes them as one-by-one adds would, all or nothing.
#include "SQLite/DeviceSQLite.h"
#include "SQLite/ExchangeFileCheck.h"
#include "SQLite/KeyProfileSQLite.h"
#include "SQLite/LightSQLite.h"
#include "support/StoreTestSupport.h"

#include <SQLiteCpp/Transaction.h>

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QUrl>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace testing_support;
using ExchangeFileCheck::Problem;

namespace {

// This model's keys: codes 4 to 99.
bool known(int code) { return code >= 4 && code < 100; }
ExchangeFileCheck::ModelKeys modelKeys()
{
    ExchangeFileCheck::ModelKeys keys;
    for (int code = 4; code < 100; ++code)
        keys.codes.insert(code);
    return keys;
}

// Everything in the folder, pipes and sockets included, with its size.
QStringList listing(const QString& folder)
{
    QStringList entries;
    for (const QFileInfo& info : QDir(folder).entryInfoList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot))
        entries << info.fileName() + ' ' + QString::number(info.isFile() ? info.size() : -1);
    return entries;
}

const std::string kKeyTable = R"(CREATE TABLE "t_keyprofile" ("keyId" INTEGER PRIMARY KEY NOT NULL, "profId", "keyvalue",)"
                              R"( "macroType", "macroValue", "macro2Value", "macro3Value", "macroDesc");)";
const std::string kLightTables = R"(CREATE TABLE "t_lightdata" ("light_name", "value1", "value2");
                                    CREATE TABLE "t_lightleddata" ("ledId" INTEGER PRIMARY KEY, "keyvalue", "rgbvalue");)";

class ExchangeFileTest : public testing::Test {
protected:
    TempDataFolder folder;

    std::string path(const QString& name) const { return (folder.path() + '/' + name).toStdString(); }
    QString url(const QString& name) const { return QUrl::fromLocalFile(folder.path() + '/' + name).toString(); }

    QString made(const QString& name, const std::string& sql)
    {
        SQLite::Database(path(name), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(sql);
        return name;
    }

    // Inspects the file as an import does; the folder must be as it was,
    // nothing written beside the file.
    template <typename Result>
    Result inspect(const QString& name, Result (*check)(const QString&, const ExchangeFileCheck::ModelKeys&))
    {
        const QFileInfo info(folder.path() + '/' + name);
        const bool plain = info.isFile() && info.size() <= ExchangeFileCheck::kLargestFile;
        const QByteArray before = plain ? readAll(path(name)) : QByteArray();
        const QStringList filesBefore = listing(folder.path());
        Result result = check(url(name), modelKeys());
        if (plain)
            EXPECT_EQ(readAll(path(name)), before) << name.toStdString();
        EXPECT_EQ(listing(folder.path()), filesBefore) << name.toStdString();
        return result;
    }
    ExchangeFileCheck::Inspection inspectAny(const QString& name)
    {
        if (name.endsWith(".light"))
            return inspect(name, ExchangeFileCheck::inspectLightFile);
        const auto result = inspect(name, ExchangeFileCheck::inspectKeyFile);
        EXPECT_TRUE(result.ok() || result.rows.empty());
        return result;
    }
};

}  // namespace

TEST_F(ExchangeFileTest, DamagedAndForeignFilesAreRefusedWithTheirProblemNamedAndLeftUntouched)
{
    {
        keyProfileSQLite file(url("whole.key"));
        std::vector<ProfileKey> rows;
        for (int i = 0; i < 400; ++i)
            rows.push_back({0, 0, 3, 4 + i % 90, 14, 1 + i, 0, 0, "d"});
        ASSERT_TRUE(file.addKeyProfiles(rows));
    }
    struct Case {
        QString name;
        std::vector<Problem> problems;
        QString detail;
        qint64 row = 0;  // the row a refusal names
        QString value;   // the value it names
    };
    std::vector<Case> cases;
    // Cut short: SQLite reads a file shorter than one page as empty.
    const QByteArray whole = readAll(path("whole.key"));
    for (qsizetype length : {qsizetype(1), qsizetype(99), qsizetype(100), qsizetype(4096), whole.size() / 2}) {
        cases.push_back({QStringLiteral("cut-%1.key").arg(length), {Problem::NotADatabase, Problem::Damaged, Problem::MissingTable}, {}});
        overwrite(path(cases.back().name), whole.left(length));
    }
    QRandomGenerator random(14);
    for (int size : {17, 512, 4096, 70000}) {
        QByteArray bytes(size, '\0');
        random.fillRange(reinterpret_cast<quint32*>(bytes.data()), size / 4);
        cases.push_back({QStringLiteral("random-%1.light").arg(size), {Problem::NotADatabase}, {}});
        overwrite(path(cases.back().name), bytes);
    }
    overwrite(path("empty.key"), {});
    cases.push_back({"empty.key", {Problem::MissingTable}, R"("t_keyprofile")"});
    cases.push_back({made("other.key", R"(CREATE TABLE "t_other" ("a");)"), {Problem::MissingTable}, R"("t_keyprofile")"});
    const QStringList keyColumns{"keyId", "profId", "keyvalue", "macroType", "macroValue", "macro2Value", "macro3Value", "macroDesc"};
    for (const QString& left : keyColumns) {
        QStringList columns = keyColumns;
        columns.removeOne(left);
        const QString sql = "CREATE TABLE \"t_keyprofile\" (\"" + columns.join("\", \"") + "\")";
        cases.push_back({made("no-" + left + ".key", sql.toStdString()), {Problem::MissingColumn}, "\"t_keyprofile\".\"" + left + '"'});
    }
    cases.push_back({made("no-rgb.light", R"(CREATE TABLE "t_lightdata" ("light_name", "value1", "value2");
                                              CREATE TABLE "t_lightleddata" ("ledId" INTEGER PRIMARY KEY, "keyvalue");)"),
                     {Problem::MissingColumn}, R"("t_lightleddata"."rgbvalue")"});
    cases.push_back({made("no-leds.light", R"(CREATE TABLE "t_lightdata" ("light_name", "value1", "value2");)"),
                     {Problem::MissingTable}, R"("t_lightleddata")"});
    const auto keyRow = [](const char* values) { return kKeyTable + R"(INSERT INTO "t_keyprofile" VALUES )" + values + ';'; };
    cases.push_back({made("profile2.key", keyRow("(NULL, 2, 4, 14, 5, 0, 0, 'd')")), {Problem::NoProfileRows}, {}});
    cases.push_back({made("foreign.key", keyRow("(NULL, 1, 120, 14, 5, 0, 0, 'd'), (NULL, 1, 0, 14, 5, 0, 0, 'd')")),
                     {Problem::NoKnownKeys}, {}});
    // Values the keyboard cannot hold, each refused with its row named.
    const auto badRow = [&](const char* name, const char* values, Problem problem, const char* column, const char* value) {
        const std::string rows = std::string("(7, 1, 5, 14, 5, 0, 0, 'd'), ") + values;
        cases.push_back({made(name, keyRow(rows.c_str())), {problem}, QString(R"("t_keyprofile"."%1")").arg(column), 9, value});
    };
    badRow("text.key", "(9, 1, 'Esc', 14, 5, 0, 0, 'd')", Problem::NotANumber, "keyvalue", "Esc");
    badRow("null.key", "(9, 1, 4, 14, NULL, 0, 0, 'd')", Problem::NotANumber, "macroValue", "NULL");
    badRow("real.key", "(9, 1, 4, 14, 5, 4.5, 0, 'd')", Problem::NotANumber, "macro2Value", "4.5");
    badRow("huge.key", "(9, 1, 4, 10, 5000000000, 0, 0, 'd')", Problem::OutOfRange, "macroValue", "5000000000");
    badRow("key300.key", "(9, 1, 300, 14, 5, 0, 0, 'd')", Problem::OutOfRange, "keyvalue", "300");
    badRow("modifier.key", "(9, 1, 4, 14, 5, -1, 0, 'd')", Problem::OutOfRange, "macro2Value", "-1");
    badRow("modifiers.key", "(9, 1, 4, 14, 5, 512, 0, 'd')", Problem::OutOfRange, "macro2Value", "512");
    badRow("media.key", "(9, 1, 4, 11, 127, 256, 0, 'd')", Problem::OutOfRange, "macro2Value", "256");
    badRow("custom.key", "(9, 1, 4, 14, 300, 0, 0, 'd')", Problem::OutOfRange, "macroValue", "300");
    badRow("kind.key", "(9, 1, 4, 99, 5, 0, 0, 'd')", Problem::UnknownKind, "macroType", "99");
    badRow("name.key", "(9, 1, 4, 14, 5, 0, 0, printf('%.65c', 'x'))", Problem::NameTooLong, "macroDesc", "65");
    std::string manyRows = kKeyTable;
    for (int i = 0; i <= 96; ++i)
        manyRows += R"(INSERT INTO "t_keyprofile" VALUES (NULL, 1, 4, 14, 5, 0, 0, 'd');)";
    cases.push_back({made("rows.key", manyRows), {Problem::TooManyRows}, R"("t_keyprofile")", 0, "97"});
    cases.push_back({made("no-header.light", kLightTables), {Problem::NoLightMode}, {}});
    cases.push_back({made("colour.light", kLightTables + R"(INSERT INTO "t_lightdata" VALUES ('m', '1', '2');
                                                            INSERT INTO "t_lightleddata" VALUES (3, 4, 16777216);)"),
                     {Problem::OutOfRange}, R"("t_lightleddata"."rgbvalue")", 3, "16777216"});
    cases.push_back({made("name.light", kLightTables + R"(INSERT INTO "t_lightdata" VALUES (printf('%.300c', 'x'), '1', '2');)"),
                     {Problem::NameTooLong}, R"("t_lightdata"."light_name")", 1, "300"});
    // Not files at all, and a file far too large to be one: refused before
    // SQLite opens them (a pipe would hold the opening forever).
    ASSERT_EQ(mkfifo(path("pipe.key").c_str(), 0600), 0);
    cases.push_back({"pipe.key", {Problem::NotAFile}, "pipe"});
    ASSERT_TRUE(QFile::link("/dev/zero", folder.path() + "/device.key"));
    cases.push_back({"device.key", {Problem::NotAFile}, "device"});
    ASSERT_TRUE(QDir(folder.path()).mkdir("folder.key"));
    cases.push_back({"folder.key", {Problem::NotAFile}, "folder"});
    QFile big(folder.path() + "/big.key");
    ASSERT_TRUE(big.open(QIODevice::WriteOnly) && big.resize(qint64(1) << 40));  // sparse: a terabyte, never read
    big.close();
    cases.push_back({"big.key", {Problem::TooLarge}, {}, 0, QString::number(qint64(1) << 40)});
    cases.push_back({"missing.key", {Problem::CannotOpen}, "No such file or directory"});

    for (const Case& c : cases) {
        const auto result = inspectAny(c.name);
        EXPECT_NE(std::find(c.problems.begin(), c.problems.end(), result.problem), c.problems.end()) << c.name.toStdString();
        if (!c.detail.isNull())
            EXPECT_EQ(result.detail, c.detail) << c.name.toStdString();
        EXPECT_EQ(result.row, c.row) << c.name.toStdString();
        if (!c.value.isNull())
            EXPECT_EQ(result.value, c.value) << c.name.toStdString();
        EXPECT_TRUE(ExchangeFileCheck::refusalMessage(result, c.name).endsWith("Nothing was changed.")) << c.name.toStdString();
    }
    EXPECT_FALSE(QFile::exists(folder.path() + "/missing.key")) << "an import creates no file";
    EXPECT_EQ(ExchangeFileCheck::refusalMessage(inspectAny("text.key"), "text.key"),
              "\"text.key\" is damaged: row 9 holds \"Esc\" in \"t_keyprofile\".\"keyvalue\", where a whole number "
              "belongs. Export it again. Nothing was changed.");
    EXPECT_EQ(ExchangeFileCheck::refusalMessage(inspectAny("pipe.key"), "pipe.key"),
              "\"pipe.key\" is not a file but a pipe, so it was not opened. Choose an exported file. Nothing was changed.");
}

TEST_F(ExchangeFileTest, ALargeKeyFileImportsAsOneByOneAddsWouldWriteItAllOrNothing)
{
    // Profiles 1 and 2, repeated keys, key 0, value 0 (a removal) and keys
    // this model lacks, as a file from another machine may hold.
    QRandomGenerator random(3);
    std::vector<ProfileKey> rows;
    {
        keyProfileSQLite file(url("large.key"));
        SQLite::Transaction transaction(*file.db);
        for (int i = 0; i < 150; ++i) {
            rows.push_back({0, 0, 1 + int(random.bounded(2)), int(random.bounded(120)), 14, int(random.bounded(4)), 2, 3, "r"});
            file.addKeyProfile(rows.back());
        }
        transaction.commit();
    }
    const auto result = inspect("large.key", ExchangeFileCheck::inspectKeyFile);
    ASSERT_TRUE(result.ok());
    std::erase_if(rows, [](const ProfileKey& k) { return k.profId != 1; });
    EXPECT_EQ(result.dropped, std::erase_if(rows, [](const ProfileKey& k) { return !known(k.keyValue); }));
    ASSERT_EQ(result.rows.size(), rows.size());

    DeviceSQLite one("one_by_one.sqlite3", false);
    DeviceSQLite all("all_at_once.sqlite3", false);
    one.db->exec("PRAGMA synchronous = OFF");  // one commit per row: spare the disk
    std::vector<ProfileKey> imported = result.rows;
    for (ProfileKey& row : imported) {
        row.profId = 2;
        one.addKeyProfile(row);
    }
    ASSERT_TRUE(all.addKeyProfiles(imported));
    EXPECT_EQ(dumpDatabase(*all.db), dumpDatabase(*one.db));

    const std::string before = dumpDatabase(*all.db);
    ScopedFault fault("keys.add.delete");
    EXPECT_FALSE(all.addKeyProfiles(imported));
    EXPECT_EQ(dumpDatabase(*all.db), before);
}

// Files written by earlier versions could hold a second light behind the first.
TEST_F(ExchangeFileTest, ALightFileIsNamedSafelyAndOnlyItsFirstLightIsRead)
{
    const QString fileUrl = QUrl::fromLocalFile(folder.path() + '/' + ExchangeFile::safeFileName("Sun/set?#%") + ".light")
                                .toString(QUrl::FullyEncoded);
    EXPECT_EQ(ExchangeFile::displayName(fileUrl), "Sun_set___.light");
    ASSERT_TRUE(LightSQLite(fileUrl).addLightMode("Sun/set?#%", {{0, 41, 0xff0000}, {0, 120, 7}, {0, 5, 0}}));
    ASSERT_TRUE(LightSQLite(fileUrl).addLightMode("Later", {{0, 6, 9}}));

    const auto result = inspect("Sun_set___.light", ExchangeFileCheck::inspectLightFile);
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(result.name, "Sun/set?#%") << "the older header wins";
    EXPECT_EQ(result.dropped, 1);
    EXPECT_EQ(result.leds, (std::vector<LEDData>{{1, 41, 0xff0000}, {3, 5, 0}, {4, 6, 9}}));
}

TEST_F(ExchangeFileTest, AWalFileAndAFileWithALeftoverJournalAreReadWithNothingWrittenBesideThem)
{
    const std::string rows = kKeyTable + R"(INSERT INTO "t_keyprofile" VALUES (NULL, 1, 4, 14, 5, 0, 0, 'd'), (NULL, 1, 6, 11, 127, 0, 0, 'm');)";
    {
        SQLite::Database wal(path("wal.key"), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        wal.exec("PRAGMA journal_mode = WAL");
        wal.exec(rows);
    }  // closing folds the "-wal" in and removes it; the file stays in WAL mode
    made("scratch.sqlite3", rows);
    const QByteArray whole = readAll(path("scratch.sqlite3"));
    copyWithHotJournal(path("scratch.sqlite3"), path("journal.key"));
    overwrite(path("journal.key"), whole);
    QFile::remove(folder.path() + "/scratch.sqlite3");
    ASSERT_TRUE(QFile::exists(folder.path() + "/journal.key-journal"));

    for (const QString name : {"wal.key", "journal.key"}) {
        const auto result = inspect(name, ExchangeFileCheck::inspectKeyFile);
        EXPECT_TRUE(result.ok()) << name.toStdString() << ' ' << result.detail.toStdString();
        EXPECT_EQ(result.rows, (std::vector<ProfileKey>{{1, 0, 1, 4, 14, 5, 0, 0, "d"}, {2, 0, 1, 6, 11, 127, 0, 0, "m"}}))
            << name.toStdString();
    }
}
