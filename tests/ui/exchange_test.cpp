// Profile and light mode files through the window, on a virtual keyboard:
// what an export writes, what an import merges, what a refused file leaves
// (nothing) and says, and that no import sends a frame to the keyboard.
#include "Common/Globals.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "Language/AppText.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/LightSQLite.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/MainController.h"
#include "View/control/ButtonView.h"
#include "View/control/UserLightTableItemView.h"
#include "View/control/KeyboardView.h"
#include "support/HexBytes.h"
#include "support/StoreTestSupport.h"
#include "support/VirtualSession.h"
#include "support/WaitUntil.h"

#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QUrl>
#include <QCoreApplication>
#include <QThreadPool>
#include <gtest/gtest.h>

using namespace testing_support;
using testing_support::hexFromBytes;

namespace {

// Key codes of the 61-key model; it lacks Up Arrow (82) and Page Up (75).
constexpr int kEscape = 41, kA = 4, kS = 22, kFn = 175;

ProfileKey key(int profile, int code, int value, const char* desc) { return {0, 0, profile, code, 11, value, 0, 0, desc}; }

class ExchangeWindow : public testing::Test, protected VirtualSession {
protected:
    // The file dialog answers `answer` and keeps what it was asked; both
    // are used only once the test runs, after this fixture is made.
    ExchangeWindow()
        : VirtualSession([this](MainController::Environment& env) {
              env.chooseExchangeFile = [this](const ExchangeDialog& dialog) {
                  asked.push_back(dialog);
                  return answer;
              };
          })
    {
    }
    void SetUp() override { ASSERT_TRUE(connected()); }

    void follow(int profile)
    {
        keyboard->setActiveProfile(profile);
        controller->pollKeyboardProfile();
        ASSERT_TRUE(waitUntil([&] { return controller->currentProfile == profile && !controller->hidcomm_busy(); }));
    }
    std::vector<ProfileKey> assignments(int profile)
    {
        std::vector<ProfileKey> rows;
        controller->deviceDB->queryKeysProfile(profile, rows);
        return rows;
    }
    // An import checks its file on another thread; the window goes on meanwhile.
    void checked()
    {
        ASSERT_TRUE(waitUntil([] { return QThreadPool::globalInstance()->activeThreadCount() == 0; }));
        QCoreApplication::processEvents();
    }
    QString fileUrl(const QString& name) const { return QUrl::fromLocalFile(files.path() + '/' + name).toString(); }
    QString result() const { return controller->label_exchange ? controller->label_exchange->text() : QString(); }
    QString refusal() const { return controller->findChild<QMessageBox*>("exchange_refusal")->text(); }

    QTemporaryDir files;
    std::vector<ExchangeDialog> asked;
    QString answer;
};

}  // namespace

TEST_F(ExchangeWindow, AProfileExportedFromProfileDIsNamedAfterItReplacedWholeAndSentWhenImportedIntoB)
{
    DeviceSQLite& store = *controller->deviceDB;
    store.addKeyProfile(key(4, kA, 127, "Mute"));
    store.addKeyProfile(key(4, kEscape, 1, "Fn"));
    store.addKeyProfile(key(2, kS, 5, "Old S"));
    store.addKeyProfile(key(2, kA, 6, "Old A"));
    follow(4);

    // The dialog offers the profile's name in the language shown.
    G_Language = kLanguageChinese;
    answer = fileUrl("模式 D.key");
    controller->exportKeyProfile();
    EXPECT_EQ(result(), "已将 2 项按键设置导出到“模式 D.key”。");
    G_Language = kLanguageEnglish;
    answer = fileUrl("Profile D.key");
    controller->exportKeyProfile();
    // A second export onto the file replaces it whole: nothing is added
    // behind the first export's rows, and no temporary is left beside it.
    store.addKeyProfile(key(4, kS, 3, "Prev"));
    controller->exportKeyProfile();
    EXPECT_EQ(result(), "Exported 3 key assignments to \"Profile D.key\".");
    {
        SQLite::Database file((files.path() + "/Profile D.key").toStdString());
        EXPECT_EQ(queryRows(file, R"(SELECT * FROM "t_keyprofile")"),
                  (Rows{{"1", "1", "4", "11", "127", "0", "0", "Mute"}, {"2", "1", "41", "11", "1", "0", "0", "Fn"},
                        {"3", "1", "22", "11", "3", "0", "0", "Prev"}}));
    }
    EXPECT_EQ(QDir(files.path()).entryList(QDir::Files), (QStringList{"Profile D.key", "模式 D.key"}));
    EXPECT_EQ(asked, (std::vector<ExchangeDialog>{{{}, ExchangeDialog::Pick::NewFile, "key", "模式 D.key"},
                                                  {{}, ExchangeDialog::Pick::NewFile, "key", "Profile D.key"},
                                                  {{}, ExchangeDialog::Pick::NewFile, "key", "Profile D.key"}}));

    // Imported into profile B: merged there, and B's table goes to the
    // keyboard at once (A plays Mute, Esc and S the file's values).
    follow(2);
    answer = fileUrl("Profile D.key");
    const int tables = keyboard->firmware().commandCount(Protocol::Command::KeyTable);
    controller->importKeyProfile();
    ASSERT_TRUE(waitUntil([&] { return keyboard->firmware().commandCount(Protocol::Command::KeyTable) == tables + 1
                                       && !controller->hidcomm_busy(); }));
    std::string table = std::string(2 * 574, '0') + "aa55";
    table.replace(2 * 4 * 1, 8, "03000000");   // Escape, slot 1
    table.replace(2 * 4 * 56, 8, "03e20000");  // A, slot 56
    table.replace(2 * 4 * 57, 8, "03000000");  // S, slot 57
    EXPECT_EQ(hexFromBytes(keyboard->firmware().keyTable(2)), table);
    EXPECT_EQ(result(), "Imported 3 key assignments from \"Profile D.key\" into Profile B.");
    EXPECT_EQ(assignments(2), (std::vector<ProfileKey>{{6, 0, 2, kA, 11, 127, 0, 0, "Mute"},
                                                        {7, 0, 2, kEscape, 11, 1, 0, 0, "Fn"},
                                                        {8, 0, 2, kS, 11, 3, 0, 0, "Prev"}}));
    EXPECT_EQ(assignments(4).size(), 3u);
    const auto legend = [&](int code) {
        return controller->orvane_keyboardctrl->kbKeyArraySelect[std::size_t(*picturePosition(code, 61))].keyMacro;
    };
    EXPECT_EQ(legend(kA) + legend(kEscape) + legend(kS), "MuteFnPrev");
    EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();
}

TEST_F(ExchangeWindow, RefusedFilesChangeNothingAndSayWhyForeignKeysAreLeftOut)
{
    DeviceSQLite& store = *controller->deviceDB;
    store.addKeyProfile(key(1, kS, 5, "S"));
    const std::string before = dumpDatabase(*store.db);
    overwrite((files.path() + "/noise.key").toStdString(), QByteArray(3000, '\x5a'));
    answer = fileUrl("noise.key");
    const int framesBefore = keyboard->setCount();
    controller->importKeyProfile();
    checked();
    EXPECT_EQ(refusal(), "\"noise.key\" is not an exchange file: it is not a database at all. Choose a file "
                         "exported by Orvane Keyboard Studio. Nothing was changed.");
    EXPECT_EQ(dumpDatabase(*store.db), before);

    {
        SQLite::Database file((files.path() + "/k68.key").toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        file.exec(R"(CREATE TABLE "t_keyprofile" ("keyId" INTEGER PRIMARY KEY, "profId", "keyvalue", "macroType",
                     "macroValue", "macro2Value", "macro3Value", "macroDesc");
                     INSERT INTO "t_keyprofile" VALUES (NULL, 1, 82, 11, 3, 0, 0, 'Up'), (NULL, 1, 75, 11, 4, 0, 0, 'PgUp'),
                                                       (NULL, 1, 175, 11, 127, 0, 0, 'Mute');)");
    }
    answer = fileUrl("k68.key");
    controller->importKeyProfile();
    checked();
    EXPECT_EQ(result(), "Imported 1 key assignment from \"k68.key\" into Profile A. 2 rows were left out: "
                        "their keys are not on this keyboard.");
    EXPECT_EQ(assignments(1), (std::vector<ProfileKey>{{1, 0, 1, kS, 11, 5, 0, 0, "S"}, {2, 0, 1, kFn, 11, 127, 0, 0, "Mute"}}));
    EXPECT_EQ(keyboard->setCount(), framesBefore);

    // A cancelled dialog, and no keyboard: nothing happens.
    answer.clear();
    controller->importKeyProfile();
    controller->exportKeyProfile();
    bus->unplug(keyboard);
    ASSERT_TRUE(waitUntil([&] { return !controller->deviceState; }));
    const size_t dialogs = asked.size();
    controller->importKeyProfile();
    controller->exportKeyProfile();
    EXPECT_EQ(asked.size(), dialogs);
}

TEST_F(ExchangeWindow, ALightModeExportedImportsAsANewModeWithItsColours)
{
    DeviceSQLite& store = *controller->deviceDB;
    // A painted twice (the later colour stays), S cleared: two colours stored.
    const std::vector<LEDData> painted{{0, kA, 0x123456}, {0, kEscape, 0x0000ff}, {0, kA, 0xff8800}, {0, kS, 0}};
    store.addUserLightWithColours("Dusk/Dawn", painted);
    controller->loadUserlightData();
    controller->userlightmode_table->setCurrentRow(0);
    ASSERT_EQ(controller->currentUserLightMode, 1);

    // Through the row's own buttons, as a user goes.
    // The save dialog offers the light's name; a second export replaces
    // the file whole instead of adding its rows behind the first ones.
    answer = fileUrl("Dusk_Dawn.light");
    for (int i = 0; i < 2; ++i) {
        controller->userLightRowView(0)->exportBtnView->click();
        QCoreApplication::processEvents();  // the row's request is handled on the next turn
    }
    EXPECT_EQ(result(), "Exported the light mode \"Dusk/Dawn\" with 2 key colours to \"Dusk_Dawn.light\".");
    EXPECT_EQ(asked.back(), (ExchangeDialog{{}, ExchangeDialog::Pick::NewFile, "light", "Dusk_Dawn.light"}));
    {
        SQLite::Database file((files.path() + "/Dusk_Dawn.light").toStdString());
        EXPECT_EQ(queryRows(file, R"(SELECT COUNT(*) FROM "t_lightleddata")"), (Rows{{"2"}}));
    }
    EXPECT_EQ(QDir(files.path()).entryList(QDir::Files), QStringList{"Dusk_Dawn.light"});

    answer = fileUrl("Dusk_Dawn.light");
    const int framesBefore = keyboard->setCount();
    controller->userLightRowView(0)->importBtnView->click();
    QCoreApplication::processEvents();
    checked();
    EXPECT_EQ(keyboard->setCount(), framesBefore);
    EXPECT_EQ(controller->currentUserLightMode, 2);
    EXPECT_EQ(controller->userlightmode_datas.last(), (QVariantMap{{"mode", qint64(2)}, {"text", "Dusk/Dawn"}}));
    EXPECT_EQ(controller->userlightmode_table->count(), 2);
    std::vector<RGBData> colours;
    ASSERT_TRUE(store.queryKeyRGB(1, 2, colours));
    EXPECT_EQ(colours, (std::vector<RGBData>{{4, 2, 1, kEscape, 0x0000ff}, {5, 2, 1, kA, 0xff8800}}));
    EXPECT_EQ(asked.back(), (ExchangeDialog{"Select files", ExchangeDialog::Pick::ExistingFile, "light"}));
}

TEST_F(ExchangeWindow, InChineseARefusalAndTheConnectionTipAreChineseAndTheTipFollowsASwitchBack)
{
    controller->switchLanguage(kLanguageChinese);
    overwrite((files.path() + "/noise.key").toStdString(), QByteArray(3000, '\x5a'));
    answer = fileUrl("noise.key");
    controller->importKeyProfile();
    checked();
    EXPECT_EQ(refusal(), "“noise.key”不是可导入的文件：它根本不是数据库。请选择由 Orvane Keyboard Studio "
                         "导出的文件。未做任何更改。");
    bus->unplug(keyboard);
    EXPECT_TRUE(waitUntil([&] { return controller->imgbtn_usb->toolTip() == "未连接键盘"; }))
        << controller->imgbtn_usb->toolTip().toStdString();
    controller->switchLanguage(kLanguageEnglish);
    EXPECT_EQ(controller->imgbtn_usb->toolTip(), "No keyboard connected");

    for (int id = 0; id < int(AppText::Count); ++id)
        for (int language : {kLanguageEnglish, kLanguageChinese})
            EXPECT_FALSE(appText(AppText(id), language).isEmpty()) << "text " << id << " in " << language;
}
