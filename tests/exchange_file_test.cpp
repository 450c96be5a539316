// Exchange files: every refused file names its problem and is left exactly
// as it was; an accepted file yields the rows an import writes, and writes
// them as the one-by-one store operations would, all or nothing.
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

ProfileKey key(int profile, int code, int value) { return {0, 0, profile, code, 14, value, 0, 0, "d"}; }

class ExchangeFileTest : public testing::Test {
protected:
    TempDataFolder folder;

    std::string path(const QString& name) const { return (folder.path() + '/' + name).toStdString(); }
    QString url(const QString& name) const { return QUrl::fromLocalFile(folder.path() + '/' + name).toString(); }

    // A file made by running `sql` on a new database.
    QString made(const QString& name, const std::string& sql)
    {
        SQLite::Database db(path(name), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        db.exec(sql);
        return name;
    }

    // Inspects the file as an import does and checks the file was not touched.
    template <typename File, typename Inspect>
    auto inspect(const QString& name, Inspect check)
    {
        const QByteArray before = readAll(path(name));
        const QStringList filesBefore = QDir(folder.path()).entryList(QDir::Files);
        const File file(url(name), ExchangeAccess::Import);
        auto result = check(file, known);
        EXPECT_EQ(readAll(path(name)), before) << name.toStdString();
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), filesBefore) << name.toStdString();
        return result;
    }
    ExchangeFileCheck::KeyFileInspection inspectKey(const QString& name)
    {
        return inspect<keyProfileSQLite>(name, ExchangeFileCheck::inspectKeyFile);
    }
    ExchangeFileCheck::LightFileInspection inspectLight(const QString& name)
    {
        return inspect<LightSQLite>(name, ExchangeFileCheck::inspectLightFile);
    }
};

const std::string kKeyTable = R"(CREATE TABLE "t_keyprofile" ("keyId" INTEGER PRIMARY KEY NOT NULL, "profId" INTEGER, )"
                              R"("keyvalue" INTEGER, "macroType" INTEGER, "macroValue" INTEGER, "macro2Value" INTEGER, )"
                              R"("macro3Value" INTEGER, "macroDesc" TEXT);)";

}  // namespace

TEST_F(ExchangeFileTest, DamagedAndForeignFilesAreRefusedWithTheirProblemNamedAndLeftUntouched)
{
    // A valid exported file to cut short.
    {
        keyProfileSQLite file(url("whole.key"));
        std::vector<ProfileKey> rows;
        for (int i = 0; i < 400; ++i)
            rows.push_back(key(3, 4 + i % 90, 1 + i));
        ASSERT_TRUE(file.addKeyProfiles(rows));
    }
    const QByteArray whole = readAll(path("whole.key"));
    QRandomGenerator random(14);
    std::vector<std::pair<QString, std::vector<Problem>>> cases;
    // Cut short: SQLite reads a file shorter than one page as empty.
    for (qsizetype length : {qsizetype(1), qsizetype(99), qsizetype(100), qsizetype(4096), whole.size() / 2}) {
        const QString name = QStringLiteral("cut-%1.key").arg(length);
        overwrite(path(name), whole.left(length));
        cases.push_back({name, {Problem::NotADatabase, Problem::Damaged, Problem::MissingTable}});
    }
    for (int size : {17, 512, 4096, 70000}) {
        QByteArray bytes(size, '\0');
        random.fillRange(reinterpret_cast<quint32*>(bytes.data()), size / 4);
        const QString name = QStringLiteral("random-%1.key").arg(size);
        overwrite(path(name), bytes);
        cases.push_back({name, {Problem::NotADatabase}});
    }
    cases.push_back({made("other.key", R"(CREATE TABLE "t_other" ("a");)"), {Problem::MissingTable}});
    overwrite(path("empty.key"), {});
    cases.push_back({"empty.key", {Problem::MissingTable}});
    cases.push_back({made("profile2.key", kKeyTable + R"(INSERT INTO "t_keyprofile" VALUES (NULL, 2, 4, 14, 5, 0, 0, 'd');)"),
                     {Problem::NoProfileRows}});
    cases.push_back({made("foreign.key", kKeyTable + R"(INSERT INTO "t_keyprofile" VALUES (NULL, 1, 300, 14, 5, 0, 0, 'd');)"
                                                     R"(INSERT INTO "t_keyprofile" VALUES (NULL, 1, 0, 14, 5, 0, 0, 'd');)"),
                     {Problem::NoKnownKeys}});
    cases.push_back({made("text.key", kKeyTable + R"(INSERT INTO "t_keyprofile" VALUES (NULL, 1, 'Esc', 14, 5, 0, 0, 'd');)"),
                     {Problem::NotANumber}});
    cases.push_back({made("huge.key", kKeyTable + R"(INSERT INTO "t_keyprofile" VALUES (NULL, 1, 4, 14, 5000000000, 0, 0, 'd');)"),
                     {Problem::NotANumber}});
    for (const auto& [name, expected] : cases) {
        const auto result = inspectKey(name);
        EXPECT_NE(std::find(expected.begin(), expected.end(), result.problem), expected.end()) << name.toStdString();
        EXPECT_TRUE(result.rows.empty());
        EXPECT_TRUE(ExchangeFileCheck::refusalMessage(result, name).contains("Nothing was changed"));
    }

    EXPECT_EQ(ExchangeFileCheck::refusalMessage(inspectKey("other.key"), "other.key"),
              "\u201cother.key\u201d is not the right kind of exchange file: it has no table \"t_keyprofile\". Choose a "
              "file exported by Orvane Keyboard Studio. Nothing was changed.");
    EXPECT_EQ(ExchangeFileCheck::refusalMessage(inspectKey("foreign.key"), "foreign.key"),
              "None of the 2 keys in \u201cforeign.key\u201d is on this keyboard: the file was made for another model. "
              "Import it with that keyboard connected. Nothing was changed.");
    EXPECT_EQ(inspectKey("text.key").value, "Esc");
    EXPECT_EQ(inspectKey("missing.key").problem, Problem::CannotOpen);
    EXPECT_FALSE(QFile::exists(folder.path() + "/missing.key")) << "an import creates no file";
}

TEST_F(ExchangeFileTest, EachMissingColumnIsNamed)
{
    const std::vector<std::string> keyColumns{"keyId", "profId", "keyvalue", "macroType",
                                              "macroValue", "macro2Value", "macro3Value", "macroDesc"};
    for (const std::string& left : keyColumns) {
        std::string columns;
        for (const std::string& c : keyColumns)
            if (c != left)
                columns += (columns.empty() ? "\"" : ", \"") + c + "\"";
        const QString name = QString::fromStdString("no-" + left + ".key");
        made(name, "CREATE TABLE \"t_keyprofile\" (" + columns + ")");
        const auto result = inspectKey(name);
        EXPECT_EQ(result.problem, Problem::MissingColumn);
        EXPECT_EQ(result.detail.toStdString(), "\"t_keyprofile\".\"" + left + "\"");
    }
    made("no-rgb.light", R"(CREATE TABLE "t_lightdata" ("light_name", "value1", "value2");
                            CREATE TABLE "t_lightleddata" ("ledId" INTEGER PRIMARY KEY, "keyvalue");)");
    EXPECT_EQ(inspectLight("no-rgb.light").detail, R"("t_lightleddata"."rgbvalue")");
    made("no-leds.light", R"(CREATE TABLE "t_lightdata" ("light_name", "value1", "value2");)");
    EXPECT_EQ(inspectLight("no-leds.light").detail, R"("t_lightleddata")");
}

TEST_F(ExchangeFileTest, ALargeKeyFileImportsAsOneByOneAddsWouldWriteIt)
{
    // Rows under profile 1 and 2, repeated keys, key 0, value 0 (a removal)
    // and foreign keys, as a file written on another machine may hold.
    QRandomGenerator random(3);
    std::vector<ProfileKey> rows;
    {
        keyProfileSQLite file(url("large.key"));
        SQLite::Transaction transaction(*file.db);
        for (int i = 0; i < 20000; ++i) {
            const int code = static_cast<int>(random.bounded(120));
            rows.push_back({0, 0, 1 + int(random.bounded(2)), code, 14, int(random.bounded(4)), 2, 3, "r"});
            file.addKeyProfile(rows.back());
        }
        transaction.commit();
    }
    const auto result = inspectKey("large.key");
    ASSERT_TRUE(result.ok());
    std::erase_if(rows, [](const ProfileKey& k) { return k.profId != 1; });
    const auto foreign = std::erase_if(rows, [](const ProfileKey& k) { return !known(k.keyValue); });
    EXPECT_EQ(result.dropped, foreign);
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

    // A failure on the way leaves the profile as it was.
    const std::string before = dumpDatabase(*all.db);
    {
        ScopedFault fault("keys.add.delete");
        EXPECT_FALSE(all.addKeyProfiles(imported));
    }
    EXPECT_EQ(dumpDatabase(*all.db), before);
}

TEST_F(ExchangeFileTest, ALightModeGoesThroughAFileIntoANewModeWithItsColours)
{
    DeviceSQLite store("orvane_61k_device.sqlite3", false);
    const std::vector<LEDData> painted{{0, 41, 0xff0000}, {0, 4, 0x00ff00}, {0, 41, 0x0000ff}, {0, 5, 0}, {0, 300, 7}};
    const int64_t mode = store.addUserLightWithColours("Sunset", painted);
    ASSERT_EQ(mode, 1);
    QString name;
    std::vector<LEDData> colours;
    ASSERT_TRUE(store.queryUserLightExport(1, name, colours));
    EXPECT_EQ(colours, (std::vector<LEDData>{{2, 4, 0x00ff00}, {3, 41, 0x0000ff}, {4, 300, 7}}));

    // The name makes the file name; a second export of the name appends.
    const QString folderUrl = QUrl::fromLocalFile(folder.path()).toString();
    const QString fileUrl = ExchangeFile::fileUrlInFolder(folderUrl, "Sun/set?#%", ".light");
    EXPECT_EQ(ExchangeFile::displayName(fileUrl), "Sun_set___.light");
    ASSERT_TRUE(LightSQLite(fileUrl).addLightMode(name, colours));
    ASSERT_TRUE(LightSQLite(fileUrl).addLightMode("Later", {{0, 6, 9}}));

    const auto result = inspectLight("Sun_set___.light");
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(result.name, "Sunset") << "the older header wins";
    EXPECT_EQ(result.dropped, 1);
    const int64_t copy = store.addUserLightWithColours(result.name, result.leds);
    EXPECT_EQ(copy, 2);
    std::vector<LEDData> copied;
    ASSERT_TRUE(store.queryUserLightExport(2, name, copied));
    EXPECT_EQ(name, "Sunset");
    auto keysAndColours = [](const std::vector<LEDData>& leds) {
        std::vector<std::pair<int, int>> out;
        for (const LEDData& led : leds)
            out.emplace_back(led.keyvalue, led.rgbvalue);
        return out;
    };
    EXPECT_EQ(keysAndColours(copied), (std::vector<std::pair<int, int>>{{4, 0x00ff00}, {41, 0x0000ff}, {6, 9}}));

    made("no-header.light", R"(CREATE TABLE "t_lightdata" ("light_name", "value1", "value2");
                               CREATE TABLE "t_lightleddata" ("ledId" INTEGER PRIMARY KEY, "keyvalue", "rgbvalue");)");
    EXPECT_EQ(inspectLight("no-header.light").problem, Problem::NoLightMode);
    made("colour.light", R"(CREATE TABLE "t_lightdata" ("light_name", "value1", "value2");
                            INSERT INTO "t_lightdata" VALUES ('m', '1', '2');
                            CREATE TABLE "t_lightleddata" ("ledId" INTEGER PRIMARY KEY, "keyvalue", "rgbvalue");
                            INSERT INTO "t_lightleddata" VALUES (NULL, 4, 16777216);)");
    EXPECT_EQ(inspectLight("colour.light").value, "16777216");
}
