// The user's files through locks, damage, rebuilds and read-only folders, as
// a session on the virtual keyboard meets them.
#include "support/CapturedLines.h"
#include "Common/DataPaths.h"
#include "Common/Globals.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/LocalSQLite.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/MacroController.h"
#include "View/MacroWindowController.h"
#include "View/MainController.h"
#include "View/control/ButtonView.h"
#include "View/control/CaseColorButton.h"
#include "support/CrashVfs.h"
#include "support/StoreTestSupport.h"
#include "support/WaitUntil.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QTest>
#include <gtest/gtest.h>

#include <unistd.h>

using namespace testing_support;

namespace {

const QString kDeviceFile = "orvane_61k_device.sqlite3";

class DataSafety : public ::testing::Test {
protected:
    DataSafety()
    {
        // A device file with the user's own macro in it, and local settings
        // without a version row.
        DeviceSQLite(kDeviceFile, false).db->exec(R"(INSERT INTO "t_macro_data" VALUES (1, 1, 0, 10, 'marker'))");
        LocalSQLite local(kLocalDatabaseFile);
    }

    void start()
    {
        MainController::Environment env;
        env.hidManagerFactory = [bus = bus] { return std::make_unique<VirtualHidManager>(bus); };
        controller = std::make_unique<MainController>(env);
        controller->viewDidLoad();
        controller->show();
    }

    void plug()
    {
        keyboard = std::make_shared<VirtualKeyboard>(VirtualKeyboard::Model::M61);
        bus->plug(keyboard);
        ASSERT_TRUE(waitUntil([&] { return controller->currentTransport() && !controller->hidcomm_busy(); }));
    }

    void replug()
    {
        bus->unplug(keyboard);
        ASSERT_TRUE(waitUntil([&] { return !controller->connectedDevice(); }));
        plug();
    }
    void startAndPlug() { start(); plug(); }
    // Also past a status poll's reply, so that what follows runs at once.
    void settle() { ASSERT_TRUE(waitUntil([&] { return !controller->hidcomm_busy() && !controller->pollReplyOwed(); })); }

    // Local settings with the given version row.
    static void setVersion(const std::string& version)
    {
        select(kLocalDatabaseFile, R"(INSERT INTO "t_localdata" VALUES ('orvane', 'version', ')" + version + "')");
    }

    // Runs `sql` past the stores on a file in the database folder.
    static Rows select(const QString& file, const std::string& sql)
    {
        SQLite::Database db((DataPaths::databaseFolder() + file).toStdString(), SQLite::OPEN_READWRITE);
        return queryRows(db, sql);
    }
    static Rows versionRows()
    {
        return select(kLocalDatabaseFile, R"(SELECT "value" FROM "t_localdata" WHERE "key" = 'version')");
    }
    static Rows macros(const QString& file = kDeviceFile)
    {
        return select(file, R"(SELECT "macro_name" FROM "t_macro_data")");
    }

    QString shown() const { return controller->label_problem->isVisible() ? controller->label_problem->text() : ""; }

    TempDataFolder folder;
    std::shared_ptr<VirtualBus> bus = std::make_shared<VirtualBus>();
    std::shared_ptr<VirtualKeyboard> keyboard;
    std::unique_ptr<MainController> controller;
};

}  // namespace

TEST_F(DataSafety, ALockedOrDamagedLocalStoreLeavesTheKeyboardsFileAsItIsAndSaysSo)
{
    const std::string localFile = folder.databasePath(kLocalDatabaseFile);
    SQLite::Database other(localFile, SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    ScopedBusyTimeout shortWait(50);
    startAndPlug();
    EXPECT_EQ(macros(), (Rows{{"marker"}}));
    EXPECT_TRUE(movedAside(kDeviceFile, "old").isEmpty());
    EXPECT_TRUE(shown().contains("in use by another program")) << shown().toStdString();
    other.exec("ROLLBACK");
    controller.reset();

    overwrite(localFile, QByteArray(4096, 'x'));
    startAndPlug();
    EXPECT_EQ(macros(), (Rows{{"marker"}}));
    EXPECT_TRUE(movedAside(kDeviceFile, "old").isEmpty());
    ASSERT_EQ(movedAside(kLocalDatabaseFile, "damaged").size(), 1);
    EXPECT_TRUE(shown().contains(movedAside(kLocalDatabaseFile, "damaged")[0])) << shown().toStdString();
    EXPECT_EQ(versionRows(), (Rows{{"1.1"}})) << "the new settings file takes the current version";
}

TEST_F(DataSafety, AnEmptyVersionIsSetInPlaceAndTheOldKeyboardFileIsKeptAsideOnce)
{
    setVersion("");
    startAndPlug();
    EXPECT_EQ(versionRows(), (Rows{{"1.1"}}));
    const QStringList old = movedAside(kDeviceFile, "old");
    ASSERT_EQ(old.size(), 1);
    EXPECT_EQ(macros(old[0]), (Rows{{"marker"}}));
    EXPECT_EQ(macros(), Rows{});
    EXPECT_EQ(controller->deviceDB->getConfigData(1, "currentProfile"), "1");
    EXPECT_TRUE(shown().contains(old[0])) << shown().toStdString();

    const QString message = shown();
    replug();
    EXPECT_EQ(movedAside(kDeviceFile, "old").size(), 1) << "the version now matches";
    EXPECT_EQ(shown(), message) << "each problem is shown once";
}

TEST_F(DataSafety, AKeyboardFileThatCannotBeMovedAsideIsAFailedOpeningAndIsTriedAgainNextTime)
{
    setVersion("1.0");
    start();
    { ScopedReadOnlyFolder readOnly(DataPaths::databaseFolder()); plug(); }
    EXPECT_FALSE(controller->deviceDB->db);
    EXPECT_TRUE(shown().contains("could not be moved aside")) << shown().toStdString();
    EXPECT_EQ(versionRows(), (Rows{{"1.0"}}));
    EXPECT_EQ(macros(), (Rows{{"marker"}}));

    replug();
    EXPECT_TRUE(controller->deviceDB->isReady());
    EXPECT_EQ(versionRows(), (Rows{{"1.1"}}));
    EXPECT_EQ(movedAside(kDeviceFile, "old").size(), 1);
}

TEST_F(DataSafety, ADamagedKeyboardFileIsFoundBesideTheFreshOne)
{
    setVersion("1.1");
    const QByteArray notADatabase = "these are not the settings you are looking for";
    overwrite(folder.databasePath(kDeviceFile), notADatabase);
    startAndPlug();
    const QStringList damaged = movedAside(kDeviceFile, "damaged");
    ASSERT_EQ(damaged.size(), 1);
    EXPECT_EQ(readAll((DataPaths::databaseFolder() + damaged[0]).toStdString()), notADatabase);
    EXPECT_TRUE(controller->deviceDB->isReady());
    EXPECT_TRUE(shown().contains(DataPaths::databaseFolder() + damaged[0])) << shown().toStdString();
}

TEST_F(DataSafety, AReadOnlyDataFolderIsExplainedWithTheCommandThatFixesIt)
{
    { ScopedReadOnlyFolder readOnly(DataPaths::databaseFolder()); start(); }
    EXPECT_TRUE(shown().contains("may not write")) << shown().toStdString();
    EXPECT_EQ(controller->localDB->getLocalData("orvane", "kb_61k"), "1") << "what is there can still be read";
    EXPECT_TRUE(shown().contains("chmod -R u+w '" + QDir(DataPaths::databaseFolder()).absolutePath() + "'")) << shown().toStdString();
}

// A user action on a store another connection holds, or on a full disk:
// the window says why, the control shows what is stored, and nothing
// unstored goes to the keyboard.
TEST_F(DataSafety, ALockedOrFullStoreFailsEachActionSaysWhyAndItsControlShowsTheStoredState)
{
    CrashVfs::install();  // the stores open through the test layer, which can fill the disk
    startAndPlug();
    QAbstractButton* lock = controller->lockSwitches[0];
    struct Action {
        const char* name;
        QString file;
        std::function<void()> act;
        std::function<QString()> shows;  // the control, "1" when it shows the stored state
    };
    const Action actions[] = {
        {"lock switch", kDeviceFile, [&] { lock->click(); }, [&] { return QString::number(!lock->isChecked()); }},
        {"profile", kDeviceFile, [&] { controller->pickProfile(3); },
         [&] { return QString::number(controller->currentProfile == 1 && controller->imgbtn_profile->text() == "Profile A"); }},
        {"user light", kDeviceFile, [&] { controller->UserLightTableMenuMsg(166); },
         [&] { return QString::number(controller->userlightmode_table->count() == 0); }},
        {"language", kLocalDatabaseFile, [&] { controller->switchLanguage(kLanguageChinese); },
         [&] { return QString::number(G_Language == kLanguageEnglish); }},
        {"case colour", kLocalDatabaseFile, [&] { controller->kb_blackcolor_btn->click(); },
         [&] { return QString::number(controller->keyboardColorType == 1); }},
    };
    const int frames = keyboard->setCount();
    for (const Action& action : actions) {
        SCOPED_TRACE(action.name);
        for (StoreResult said : {StoreResult::Busy, StoreResult::DiskFull})
            controller->withdrawProblem(DataPaths::databaseFolder() + action.file + ':' + QString::number(int(said)));
        settle();
        {
            SQLite::Database other(folder.databasePath(action.file), SQLite::OPEN_READWRITE);
            other.exec("BEGIN EXCLUSIVE");
            action.act();
            QCoreApplication::processEvents();
            EXPECT_EQ(action.shows(), "1");
            EXPECT_TRUE(shown().contains(QStringLiteral("are locked by process %1 (").arg(::getpid()))) << shown().toStdString();
        }
        settle();
        CrashVfs::arm(1, CrashVfs::Action::DiskFull);
        action.act();
        QCoreApplication::processEvents();
        CrashVfs::arm(0, CrashVfs::Action::None);
        EXPECT_EQ(action.shows(), "1");
        EXPECT_TRUE(shown().contains("is full. Free some space")) << shown().toStdString();
    }
    CrashVfs::uninstall();
    settle();
    EXPECT_EQ(keyboard->setCount(), frames) << "what is not stored is not sent";

    lock->click();
    settle();
    EXPECT_TRUE(lock->isChecked());
    EXPECT_EQ(controller->deviceDB->getConfigData(1, "disable_win"), "1");
    EXPECT_GT(keyboard->setCount(), frames);
}

TEST_F(DataSafety, AResetTheStoreCouldNotMakeSendsNothingAndSaysSo)
{
    startAndPlug();
    settle();
    for (const char* step : {"device.wipe.commit", "device.reset.commit"}) {
        const int frames = keyboard->setCount();
        ScopedFault fault(step);
        std::string(step) == "device.wipe.commit" ? controller->resetAllData() : controller->resetCurrent();
        QCoreApplication::processEvents();
        settle();
        EXPECT_EQ(keyboard->setCount(), frames) << step;
        EXPECT_TRUE(shown().contains("could not be saved (injected)")) << step << ' ' << shown().toStdString();
    }
}

// A failed read is no default: profile 1's settings, default lights and
// unlocked keys would overwrite what the keyboard holds.
TEST_F(DataSafety, SettingsTheStoreCannotReadAreNeverSentAsDefaults)
{
    start();
    {
        ScopedFault fault("device.read.config");
        plug();
        QCoreApplication::processEvents();
        settle();
        EXPECT_EQ(keyboard->setCount(), 0) << "connection";
        EXPECT_TRUE(shown().contains("could not be read from the database (injected)")) << shown().toStdString();
    }
    replug();
    settle();
    ASSERT_GT(keyboard->setCount(), 0);

    int frames = keyboard->setCount();
    {
        ScopedFault fault("device.read.config");
        controller->pickProfile(3);
        QCoreApplication::processEvents();
        settle();
        EXPECT_EQ(keyboard->setCount(), frames) << "profile switch";
    }
    // Steps that cannot be read would go out as an empty macro.
    const int64_t greeting = controller->deviceDB->saveMacro({0, 1, 1, 0, "Greeting"}, {RecordInfo{0, 0, 1, 0, 4, "A"}});
    ASSERT_GT(greeting, 0);
    frames = keyboard->setCount();
    {
        ScopedFault fault("macro.read.steps");
        controller->SaveMacroToKeyboard();
        settle();
        EXPECT_EQ(keyboard->setCount(), frames) << "macro store";
        EXPECT_TRUE(shown().contains("The steps of the macro \"Greeting\" could not be read")) << shown().toStdString();

        // Nor does the editor offer them as an empty macro to save over them.
        controller->SubMenuItemMacroAction(QVariantMap{{"type", 1}, {"macroid", QVariant::fromValue<qint64>(greeting)}});
        MaroController& editor = *controller->macroWindow->controller();
        EXPECT_TRUE(editor.label_status->text().startsWith("This macro's steps could not be read"));
        QTest::mouseClick(editor.btn_saverecord, Qt::LeftButton);
    }
    std::vector<RecordInfo> kept;
    EXPECT_EQ(controller->deviceDB->queryMacroRecord(greeting, kept), 1) << "the stored step survives the save";
}
