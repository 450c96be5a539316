#include "support/CapturedLines.h"
#include "Common/DataPaths.h"
#include "Common/OutputLine.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/StoreSupport.h"
#include "support/CrashVfs.h"
#include "support/StoreTestSupport.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <functional>
#include <thread>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

using namespace testing_support;

namespace {

const QString kFile = "orvane_61k_device.sqlite3";

class DeviceStoreTest : public testing::Test {
protected:
    TempDataFolder folder;
    std::string file = folder.databasePath(kFile);
};

// The settings rows of a new file, written out independently of the store.
Rows expectedSeedRows()
{
    Rows rows{{"currentProfile", "1", "1"}, {"currentUserLightMode", "1", "1"}, {"UserLight1", "1", "0"},
              {"UserLight2", "1", "0"},     {"UserLight3", "1", "0"},           {"UserLight4", "1", "0"},
              {"UserLight5", "1", "0"},     {"deviceType", "1", "1"},           {"keyboardColorMode", "1", "1"}};
    for (const char* p : {"1", "2", "3", "4", "5"})
        for (const char* key :
             {"currentLightMode", "disable_gamemode", "disable_win", "disable_alttab", "disable_altf4"})
            rows.push_back({key, p, key == std::string("currentLightMode") ? "1" : "0"});
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i].insert(rows[i].begin(), std::to_string(i + 1));
    return rows;
}

Rows configRows(SQLite::Database& db)
{
    return queryRows(db, R"(SELECT "keyId", "key", "profId", "value" FROM "t_configdata" ORDER BY rowid)");
}

// Data in every table that a wipe or reset may touch.
void addUserData(SQLite::Database& db)
{
    db.exec(R"(INSERT INTO "t_keyprofile" VALUES (1, 1, 4, 12, 1, 0, 0, 'M1'), (2, 2, 5, 1, 7, 0, 0, 'B');
        INSERT INTO "t_macro_data" VALUES (1, 1, 0, 10, 'Hello');
        INSERT INTO "t_macrorecord" VALUES (1, 1, 1, 0, 'H', 11);
        INSERT INTO "t_userlightdata" VALUES (1, 'Mine', 3, 4); INSERT INTO "t_keyrgbdata" VALUES (1, 1, 1, 4, 16711680);
        UPDATE "t_configdata" SET "value" = '3' WHERE "key" = 'currentProfile')");
}

// The operations of several statements, with the line each prints when it
// fails.
struct Operation {
    const char* name;
    std::function<void(DeviceSQLite&)> run;
    const char* failureLine;
};
const std::vector<Operation> kOperations{
    {"wipe", [](DeviceSQLite& s) { s.dropTable(); }, "dropTable table failed "},
    {"profile reset", [](DeviceSQLite& s) { s.resetProfile(2); }, "resetProfile  fail "},
};

// Runs `body` in a forked child and answers its wait status.
int statusOfChild(const std::function<void()>& body)
{
    const pid_t child = fork();
    if (child == 0) {
        body();
        _exit(0);
    }
    int status = -1;
    if (child == -1 || waitpid(child, &status, 0) != child)
        ADD_FAILURE() << "no child process";
    return status;
}

}  // namespace

TEST(DeviceDatabaseRules, OnlyThe68KeyModelHasAFileOfItsOwnAndOnlyAnotherVersionRebuilds)
{
    EXPECT_EQ(deviceDatabaseFileName(2), "orvane_68k_device.sqlite3");
    for (int type : {0, 1, 3, -1})
        EXPECT_EQ(deviceDatabaseFileName(type), "orvane_61k_device.sqlite3") << type;
    using R = StoreResult;
    using A = VersionAction;
    // An empty row is set in place.
    const std::vector<std::pair<StoreRead, VersionCheck>> cases{
        {{R::Missing, ""}, {true, A::Write}}, {{R::Ok, ""}, {true, A::Update}},
        {{R::Ok, "1.1"}, {false, A::None}}, {{R::Ok, "1.10"}, {true, A::Update}},
        {{R::Ok, " 1.1"}, {true, A::Update}}, {{R::Busy, ""}, {false, A::None}},
        {{R::Damaged, ""}, {false, A::None}}, {{R::Failed, ""}, {false, A::None}}};
    for (const auto& [read, expected] : cases)
        EXPECT_EQ(checkDeviceDatabaseVersion(read), expected) << int(read.result) << read.value.toStdString();
}

TEST_F(DeviceStoreTest, NewFileHasTheNineTablesAndTheSettingsRowsSeededOnce)
{
    DataPaths::setDataFolderOverride(folder.path() + "/not/yet/there");
    captureLines();
    DeviceSQLite store("orvane_68k_device.sqlite3", false);
    EXPECT_EQ(capturedLines(), "createTable success\ninit: connect success\n");
    ASSERT_TRUE(store.db);
    EXPECT_TRUE(QFileInfo::exists(folder.path() + "/not/yet/there/db/orvane_68k_device.sqlite3"));

    // Every column as name:type:notnull:pk, the tables in creation order.
    std::string bytes;
    for (int i = 1; i <= 11; ++i)
        bytes += " byte" + std::to_string(i) + ":INTEGER:1:0";
    const Rows schema{
        {"t_profile", "profId:INTEGER:1:1 name:TEXT:0:0"},
        {"t_configdata", "keyId:INTEGER:1:1 key:TEXT:1:0 profId:INTEGER:1:0 value:TEXT:1:0"},
        {"t_lightdata",
         "lightId:INTEGER:1:1 profId:INTEGER:1:0 name:TEXT:0:0 mode:INTEGER:1:0" + bytes + " status:INTEGER:1:0"},
        {"t_userlightdata", "userlightId:INTEGER:1:1 lightName:TEXT:1:0 speed:INTEGER:1:0 brightness:INTEGER:1:0"},
        {"t_keyrgbdata",
         "rgbId:INTEGER:1:1 lightId:INTEGER:1:0 profId:INTEGER:1:0 keyvalue:INTEGER:1:0 rgbvalue:INTEGER:1:0"},
        {"t_keyprofile",
         "keyId:INTEGER:1:1 profId:INTEGER:1:0 keyvalue:INTEGER:1:0 macroType:INTEGER:1:0 macroValue:INTEGER:1:0 "
         "macro2Value:INTEGER:1:0 macro3Value:INTEGER:1:0 macroDesc:TEXT:1:0"},
        {"t_macro_data",
         "macro_id:INTEGER:1:1 play_times:INTEGER:1:0 delay_type:INTEGER:1:0 delay_time:INTEGER:1:0 "
         "macro_name:TEXT:1:0"},
        {"t_macrorecord",
         "record_id:INTEGER:1:1 macro_id:INTEGER:1:0 record_type:INTEGER:1:0 record_index:INTEGER:1:0 "
         "record_desc:TEXT:1:0 record_value:INTEGER:1:0"},
        {"t_apprule", "ruleId:INTEGER:1:1 app:TEXT:1:0 profId:INTEGER:1:0"},
    };
    EXPECT_EQ(queryRows(*store.db, R"(SELECT m.name, group_concat(c.name || ':' || c.type || ':' || c."notnull"
        || ':' || c.pk, ' ') FROM sqlite_master AS m, pragma_table_info(m.name) AS c WHERE m.type = 'table'
        GROUP BY m.name ORDER BY m.rowid)"), schema);
    for (const auto& table : schema)
        EXPECT_EQ(countRows(*store.db, table[0]), table[0] == "t_configdata" ? 34 : 0) << table[0];
    EXPECT_EQ(configRows(*store.db), expectedSeedRows());

    store.db->exec(R"(DELETE FROM "t_configdata" WHERE "keyId" <> 20)");
    DeviceSQLite again("orvane_68k_device.sqlite3", false);
    EXPECT_EQ(configRows(*again.db), (Rows{{"20", "currentLightMode", "3", "1"}}));
}

// A rebuild moves the file aside as old, a damaged table root page as damaged;
// a file that is not a database at all is met in the session tests.
TEST_F(DeviceStoreTest, AnOldOrMalformedFileIsMovedAsideAsItWasAndNeverOverwritten)
{
    for (const bool rebuild : {true, false}) {
        QFile::remove(QString::fromStdString(file));
        addUserData(*DeviceSQLite(kFile, false).db);
        if (!rebuild)
            overwrite(file, readAll(file).replace(2 * 4096, 4096, QByteArray(4096, '\xff')));
        const QByteArray before = readAll(file);
        captureLines();
        DeviceSQLite store(kFile, rebuild);
        EXPECT_TRUE(!capturedLines().empty() && store.isReady());
        EXPECT_EQ(configRows(*store.db), expectedSeedRows());
        EXPECT_EQ(countRows(*store.db, "t_macro_data"), 0);
        const QStringList moved = movedAside(kFile, rebuild ? "old" : "damaged");
        ASSERT_EQ(moved.size(), 1);
        const QRegularExpression name(R"(^orvane_61k_device\.sqlite3\.(old|damaged)-\d{8}-\d{6}$)");
        EXPECT_TRUE(name.match(moved[0]).hasMatch()) << moved[0].toStdString();
        EXPECT_EQ(readAll((DataPaths::databaseFolder() + moved[0]).toStdString()), before);
        EXPECT_TRUE(storeProblemMessage(store.health, "Settings").contains("kept as " + store.health.movedAside));
        if (rebuild) {
            DeviceSQLite again(kFile, true);
            EXPECT_EQ(movedAside(kFile, "old").size(), 2) << "a second rebuild within the same second keeps both";
        }
    }
}

TEST_F(DeviceStoreTest, ALockedFileIsLeftAsItIsAndALaterWriteFailsSayingWhoHoldsIt)
{
    addUserData(*DeviceSQLite(kFile, false).db);
    const std::string before = dumpDatabaseFile(file);
    SQLite::Database other(file, SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    {
        ScopedBusyTimeout shortWait(50);
        DeviceSQLite locked(kFile, true);  // even where a rebuild is due
        EXPECT_EQ(locked.health.opening.result, StoreResult::Busy);
        EXPECT_TRUE(storeProblemMessage(locked.health, "Settings").contains("in use by another program"));
    }
    other.exec("COMMIT");
    EXPECT_TRUE(movedAside(kFile, "damaged").isEmpty());
    EXPECT_EQ(dumpDatabaseFile(file), before);

    DeviceSQLite store(kFile, false);
    std::vector<StoreResult> told;
    store.health.onFailure = [&](const StoreStatus& status) { told.push_back(status.result); };
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_FALSE(store.updateConfigData(1, "currentProfile", "4"));
    EXPECT_EQ(store.addKeyProfile({0, 0, 1, 6, 11, 127, 0, 0, "Mute"}), 0);
    EXPECT_EQ(told, (std::vector<StoreResult>{StoreResult::Busy, StoreResult::Busy}));
    const QString holder = QStringLiteral("process %1 (").arg(::getpid());
    EXPECT_TRUE(store.health.holder.startsWith(holder)) << store.health.holder.toStdString();
    EXPECT_TRUE(storeProblemMessage(store.health, "Settings").contains("are locked by " + holder))
        << storeProblemMessage(store.health, "Settings").toStdString();
    other.exec("COMMIT");
    EXPECT_TRUE(store.updateConfigData(1, "currentProfile", "4"));
    EXPECT_EQ(store.getConfigData(1, "currentProfile"), "4");
}

// A journal left by a crash belongs to the file it was written for: the
// copy kept aside must open to what the file held before the crash, never
// half written, and the new file must not take the journal's pages.
TEST_F(DeviceStoreTest, AnOutdatedFileMovesAsideWithItsHotJournalAndTheMovedCopyOpensToItsOldContent)
{
    addUserData(*DeviceSQLite(kFile, false).db);
    const std::string before = dumpDatabaseFile(file);
    const std::string scratch = file + ".scratch";
    overwrite(scratch, readAll(file));
    copyWithHotJournal(scratch, file);
    ASSERT_TRUE(QFileInfo::exists(QString::fromStdString(file + "-journal")));
    ASSERT_NE(readAll(file), readAll(scratch)) << "changed pages are in the file";
    QFile::remove(QString::fromStdString(scratch));

    DeviceSQLite store(kFile, true);
    EXPECT_TRUE(store.isReady());
    EXPECT_EQ(countRows(*store.db, "t_macro_data"), 0);
    const QStringList moved = movedAside(kFile, "old");
    ASSERT_EQ(moved.size(), 1);
    const std::string movedFile = (DataPaths::databaseFolder() + moved[0]).toStdString();
    EXPECT_EQ(dumpDatabaseFile(movedFile), before);
}

TEST_F(DeviceStoreTest, ADataFolderThatCannotBeOneIsSaidAsSuchWithoutACommandThatCannotHelp)
{
    QFile(folder.path() + "/file").open(QIODevice::WriteOnly);
    const std::pair<QString, StoreResult> cases[] = {{folder.path() + "/file", StoreResult::NotAFolder},
                                                     {"/dev/null", StoreResult::NotAFolder},
                                                     {folder.path() + '/' + QString(300, 'x'), StoreResult::PathTooLong}};
    for (const auto& [dataFolder, result] : cases) {
        DataPaths::setDataFolderOverride(dataFolder);
        DeviceSQLite store(kFile, false);
        const QString message = storeProblemMessage(store.health, "Settings");
        EXPECT_EQ(store.health.opening.result, result) << dataFolder.toStdString();
        EXPECT_TRUE(message.contains(result == StoreResult::PathTooLong ? "longer than the system allows" : "is not a folder")
                    && !message.contains("chown")) << message.toStdString();
    }
}

TEST_F(DeviceStoreTest, UnopenableFolderGivesAUsableStoreWithNeutralAnswers)
{
    QFile(folder.path() + "/blocker").open(QIODevice::WriteOnly);
    DataPaths::setDataFolderOverride(folder.path() + "/blocker");
    captureLines();
    DeviceSQLite store(kFile, true);
    EXPECT_EQ(store.getConfigData(1, "currentProfile"), "");
    EXPECT_TRUE(store.updateConfigData(1, "currentProfile", "2"));
    store.writeConfigInfo(6);
    store.resetProfile(1);
    store.dropTable();
    const std::string out = capturedLines();
    EXPECT_TRUE(!store.db && out.starts_with("init: connect fail ")) << out;
    EXPECT_EQ(out.find('\n'), out.size() - 1) << "only the opening reports: " << out;
}

TEST(StoreOpening, FileUrlOpensAndCreatesTheNamedFile)
{
    QTemporaryDir dir;
    const std::string url = "file://" + dir.path().toStdString() + "/my%20profile.key";
    StoreSupport::openReadWrite(QString::fromStdString(url))->exec("CREATE TABLE t (a)");
    EXPECT_TRUE(QFileInfo::exists(dir.path() + "/my profile.key"));
}

// Seeding runs in one transaction: a failure, or a process killed half way,
// leaves no settings row, and the next opening seeds them all.
TEST_F(DeviceStoreTest, FailedOrKilledSeedingLeavesNoHalfSeededFile)
{
    captureLines();
    {
        ScopedFault fault("device.seed.34");
        DeviceSQLite store(kFile, false);
        EXPECT_EQ(countRows(*store.db, "t_configdata"), 0);
    }
    EXPECT_EQ(capturedLines(), "insertRow  fail injected\ncreateTable success\ninit: connect success\n");

    QFile::remove(QString::fromStdString(file));
    const int status = statusOfChild([] {
        StoreSupport::faultHook = [](std::string_view step) { if (step == "device.seed.12") _exit(1); };
        DeviceSQLite store(kFile, false);
    });
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1) << "the child was not stopped during seeding";
    EXPECT_EQ(countRows(*StoreSupport::openReadWrite(QString::fromStdString(file)), "t_configdata"), 0);
    DeviceSQLite reopened(kFile, false);
    EXPECT_EQ(configRows(*reopened.db), expectedSeedRows());
}

TEST_F(DeviceStoreTest, WipeLeavesAFreshlySeededFileThatReopensUnchanged)
{
    const std::string fresh = dumpDatabase(*DeviceSQLite("orvane_68k_device.sqlite3", false).db);
    {
        DeviceSQLite store(kFile, false);
        addUserData(*store.db);
        captureLines();
        store.dropTable();
        EXPECT_EQ(capturedLines(), "dropTable  success\n");
    }
    EXPECT_EQ(dumpDatabaseFile(file), fresh);
    captureLines();
    { DeviceSQLite reopened(kFile, false); }
    EXPECT_EQ(capturedLines(), "createTable success\ninit: connect success\n");
    EXPECT_EQ(dumpDatabaseFile(file), fresh);
}

TEST_F(DeviceStoreTest, AFaultAtAnyStepOfAWipeOrAProfileResetLeavesTheFileAsItWas)
{
    DeviceSQLite store(kFile, false);
    addUserData(*store.db);
    const std::string before = dumpDatabase(*store.db);
    for (const auto& operation : kOperations) {
        std::vector<std::string> steps;
        DeviceSQLite other("orvane_68k_device.sqlite3", false);
        addUserData(*other.db);
        StoreSupport::faultHook = [&](std::string_view step) { steps.emplace_back(step); };
        operation.run(other);
        StoreSupport::faultHook = {};
        ASSERT_TRUE(steps.back().ends_with(".commit")) << operation.name;
        for (const auto& step : steps) {
            ScopedFault fault(step);
            captureLines();
            operation.run(store);
            EXPECT_EQ(capturedLines(), std::string(operation.failureLine) + "injected\n") << step;
            EXPECT_EQ(dumpDatabase(*store.db), before) << step;
        }
    }
}

// An I/O error, then SIGKILL, at each write, sync and delete of the
// operation in turn, until it runs to its end: each time the next opening
// finds the old or the new file, never a mix, also where a hot journal had to
// be rolled back.
TEST_F(DeviceStoreTest, AnIoErrorOrAKillAtAnyWriteThroughTheCommitLeavesTheOldOrTheNewFile)
{
    for (const auto& operation : kOperations) {
        QFile::remove(QString::fromStdString(file));
        addUserData(*DeviceSQLite(kFile, false).db);
        const QByteArray oldBytes = readAll(file);
        const std::string oldState = dumpDatabaseFile(file);
        { DeviceSQLite store(kFile, false); operation.run(store); }
        const std::string newState = dumpDatabaseFile(file);
        for (const auto action : {CrashVfs::Action::IoError, CrashVfs::Action::Kill}) {
            bool seenOld = false, seenNew = false, seenHotJournal = false;
            for (int at = 1; at < 500; ++at) {
                QFile::remove(QString::fromStdString(file + "-journal"));
                overwrite(file, oldBytes);
                const int status = statusOfChild([&] {
                    OutputLine::setSink([](std::string_view) {});
                    CrashVfs::install();
                    DeviceSQLite store(kFile, false);
                    CrashVfs::arm(at, action);
                    operation.run(store);
                    _exit(CrashVfs::counted() >= at ? 3 : 0);
                });
                const bool killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
                const bool done = WIFEXITED(status) && WEXITSTATUS(status) == 0;
                ASSERT_TRUE(killed || done || (WIFEXITED(status) && WEXITSTATUS(status) == 3)) << at;
                seenHotJournal |= QFileInfo(QString::fromStdString(file + "-journal")).size() > 0
                                  && readAll(file) != oldBytes;
                const std::string state = dumpDatabaseFile(file);
                EXPECT_TRUE(state == oldState || state == newState) << operation.name << " struck at " << at;
                seenOld |= state == oldState;
                seenNew |= state == newState;
                if (done)
                    break;
            }
            EXPECT_TRUE(seenOld && seenNew) << operation.name << ": old " << seenOld << ", new " << seenNew;
            if (action == CrashVfs::Action::Kill)
                EXPECT_TRUE(seenHotJournal) << operation.name;
        }
    }
}
