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
#include <QRandomGenerator>
#include <QUrl>

#include <gtest/gtest.h>

using namespace testing_support;
using ExchangeFileCheck::Problem;

namespace {

// This model's keys: codes 4 to 99.
bool known(int code) { return code >= 4 && code < 100; }

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

    // Inspects the file as an import does; the folder must be as it was.
    template <typename Result>
    Result inspect(const QString& name, Result (*check)(const QString&, const ExchangeFileCheck::KeyFilter&))
    {
        const QByteArray before = readAll(path(name));
        const QStringList filesBefore = QDir(folder.path()).entryList(QDir::Files);
        Result result = check(url(name), known);
        EXPECT_EQ(readAll(path(name)), before) << name.toStdString();
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), filesBefore) << name.toStdString();
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
    cases.push_back({made("foreign.key", keyRow("(NULL, 1, 300, 14, 5, 0, 0, 'd'), (NULL, 1, 0, 14, 5, 0, 0, 'd')")),
                     {Problem::NoKnownKeys}, {}});
    cases.push_back({made("text.key", keyRow("(NULL, 1, 'Esc', 14, 5, 0, 0, 'd')")), {Problem::NotANumber}, R"("t_keyprofile"."keyvalue")"});
    cases.push_back({made("huge.key", keyRow("(NULL, 1, 4, 14, 5000000000, 0, 0, 'd')")), {Problem::NotANumber}, R"("t_keyprofile"."macroValue")"});
    cases.push_back({made("no-header.light", kLightTables), {Problem::NoLightMode}, {}});
    cases.push_back({made("colour.light", kLightTables + R"(INSERT INTO "t_lightdata" VALUES ('m', '1', '2');
                                                            INSERT INTO "t_lightleddata" VALUES (NULL, 4, 16777216);)"),
                     {Problem::NotANumber}, R"("t_lightleddata"."rgbvalue")"});
    cases.push_back({"missing.key", {Problem::CannotOpen}, "unable to open database file"});

    for (const Case& c : cases) {
        const auto result = inspectAny(c.name);
        EXPECT_NE(std::find(c.problems.begin(), c.problems.end(), result.problem), c.problems.end()) << c.name.toStdString();
        if (!c.detail.isNull())
            EXPECT_EQ(result.detail, c.detail) << c.name.toStdString();
        EXPECT_TRUE(ExchangeFileCheck::refusalMessage(result, c.name).endsWith("Nothing was changed.")) << c.name.toStdString();
    }
    EXPECT_FALSE(QFile::exists(folder.path() + "/missing.key")) << "an import creates no file";
    EXPECT_EQ(ExchangeFileCheck::refusalMessage(inspectAny("text.key"), "text.key"),
              "\"text.key\" is damaged: it holds \"Esc\" in \"t_keyprofile\".\"keyvalue\", where a number "
              "belongs. Export it again. Nothing was changed.");
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
        for (int i = 0; i < 20000; ++i) {
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

TEST_F(ExchangeFileTest, ALightFileIsNamedSafelyAndASecondExportAppendsBehindTheFirst)
{
    const QString fileUrl = ExchangeFile::fileUrlInFolder(QUrl::fromLocalFile(folder.path()).toString(), "Sun/set?#%", ".light");
    EXPECT_EQ(ExchangeFile::displayName(fileUrl), "Sun_set___.light");
    ASSERT_TRUE(LightSQLite(fileUrl).addLightMode("Sun/set?#%", {{0, 41, 0xff0000}, {0, 300, 7}, {0, 5, 0}}));
    ASSERT_TRUE(LightSQLite(fileUrl).addLightMode("Later", {{0, 6, 9}}));

    const auto result = inspect("Sun_set___.light", ExchangeFileCheck::inspectLightFile);
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(result.name, "Sun/set?#%") << "the older header wins";
    EXPECT_EQ(result.dropped, 1);
    EXPECT_EQ(result.leds, (std::vector<LEDData>{{1, 41, 0xff0000}, {3, 5, 0}, {4, 6, 9}}));
}
