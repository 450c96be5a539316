// The whole window on a virtual 61-key keyboard, driven by mouse clicks as a
// user goes: the pages, the popovers, the model list, and a profile written
// to a file and read back into another profile, with every frame the
// keyboard receives checked. With ORVANE_SCREENSHOT_DIR set, the window of
// every page of each model in both languages is written there too.
#include "Language/Language.h"
#include "SQLite/DeviceSQLite.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/control/ButtonView.h"
#include "View/control/FuncButton.h"
#include "View/control/ImageTitleButton.h"
#include "View/control/KeyboardView.h"
#include "View/control/SelectKeyView.h"
#include "View/control/MenuItemView.h"
#include "View/control/NamedImageView.h"
#include "View/popover/LanguagePopoverViewController.h"
#include "View/popover/MenuPopoverViewController.h"
#include "View/popover/PofilePopoverViewController.h"
#include "support/HexBytes.h"
#include "support/VirtualSession.h"

#include <QAbstractAnimation>
#include <QAnimationGroup>
#include <QDir>
#include <QImageWriter>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <gtest/gtest.h>

using namespace testing_support;

namespace {

class WholeApp : public testing::Test, protected VirtualSession {
protected:
    WholeApp()
        : VirtualSession([this](MainController::Environment& env) {
              env.chooseExchangeFile = [this](const ExchangeDialog&) { return answer; };
          })
    {
    }
    void SetUp() override
    {
        ASSERT_TRUE(connected());
        controller->urlOpener = [this](const QUrl& url) {
            opened.append(url);
            return true;
        };
    }
    void TearDown() override { EXPECT_TRUE(keyboard->protocolErrors().isEmpty()); }

    void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
    // A menu command; the one-a-second guard is told the last was long ago.
    void command(QWidget* item)
    {
        controller->timetickcount = 0;
        click(item);
    }
    int settledSetCount()
    {
        EXPECT_TRUE(controller->transport().waitForIdle(std::chrono::seconds(10)));
        return keyboard->setCount();
    }
    // The frames sent to the keyboard since it had received `from`, as hex;
    // the two frames of each status poll are left out.
    std::vector<std::string> framesSince(int from)
    {
        const int count = settledSetCount() - from;
        std::vector<TraceRecord> sets;
        for (const TraceRecord& r : keyboard->recentTrace())
            if (r.op == TraceRecord::Op::Set)
                sets.push_back(r);
        std::vector<std::string> out;
        bool afterPoll = false;
        for (auto r = sets.end() - count; r != sets.end(); ++r) {
            const bool poll = r->data[0] == 0x04 && r->data[1] == 0x30;
            if (!poll && !afterPoll)
                out.push_back(hexFromBytes({r->data.begin(), r->data.end()}));
            afterPoll = poll;
        }
        return out;
    }
    QList<QPointer<QAbstractAnimation>> runningMoves()
    {
        QList<QPointer<QAbstractAnimation>> running;
        for (QAbstractAnimation* a : controller->findChildren<QAbstractAnimation*>())
            if (!a->group() && a->state() == QAbstractAnimation::Running)
                running.append(a);
        return running;
    }
    // Brings every running move of the window to `fraction` of its way;
    // 1 ends them, as the clock would.
    void advanceMoves(double fraction)
    {
        for (const QPointer<QAbstractAnimation>& a : runningMoves())
            if (a)
                a->setCurrentTime(int(fraction * a->totalDuration()));
    }
    // The pages on show, the selected function buttons and `viewType`.
    std::string pageState()
    {
        const MainController& c = *controller;
        QStringList out;
        for (const auto& [name, view] : {std::pair{"keys", c.macro_view}, {"light", c.light_view},
                                         {"user-light", c.userlight_view}, {"system", c.sysset_view}})
            if (view->isVisible())
                out << name;
        for (FuncButton* button : {c.func_keyset, c.func_light, c.func_set, c.func_store})
            if (button->isSelect)
                out << button->objectName();
        return (out.join(' ') + ' ' + QString::number(c.viewType)).toStdString();
    }
    // Where the 68-key, 61-key and CNC buttons of the model list stand.
    std::vector<QRect> listFrames()
    {
        const MainController& c = *controller;
        return {c.device_select_up->geometry(), c.device_select_current->geometry(), c.device_select_down->geometry()};
    }
    QString picture() { return controller->orvane_keyboardctrl->kbImageView->imageName(); }

    QTemporaryDir files;
    QString answer;
    QList<QUrl> opened;
};

std::string frame(std::initializer_list<uint8_t> leading) { return hexFromBytes(report(leading)); }

}  // namespace

TEST_F(WholeApp, PagesPopoversAndTheModelListChangeTheWindowAndSendNothing)
{
    MainController& c = *controller;
    const int start = settledSetCount();
    EXPECT_EQ(pageState(), "keys func_keyset 1");

    // The light page opens on its built-in tab; its own button does nothing,
    // not even closing the user light tab.
    click(c.func_light);
    EXPECT_EQ(pageState(), "light func_light 2");
    click(c.customlight_mode_tab);
    click(c.func_light);
    EXPECT_EQ(pageState(), "light user-light func_light 2");
    EXPECT_TRUE(c.userlightmode_show);
    click(c.func_set);
    EXPECT_EQ(pageState(), "system func_set 3");
    EXPECT_FALSE(c.userlightmode_show);
    click(c.func_set);
    EXPECT_EQ(pageState(), "system func_set 3");
    click(c.func_light);
    EXPECT_EQ(pageState(), "light func_light 2");
    click(c.func_store);
    EXPECT_EQ(pageState(), "light func_light 2");
    EXPECT_EQ(opened, QList<QUrl>{QUrl("http://forum.orvane.com")});
    click(c.func_keyset);
    EXPECT_EQ(pageState(), "keys func_keyset 1");

    // The language menu: every text and the button's own image follow.
    for (const auto& [row, title, macroButton, image] :
         {std::tuple{&LanguagePopoverViewController::lan2052MenuItem, "按键设置", "创建宏", "sys_btn_cn_n"},
          {&LanguagePopoverViewController::lan1033MenuItem, "Key Set", "Create Macro", "sys_btn_en_n"}}) {
        click(c.imgbtn_language);
        ASSERT_TRUE(c.languagePopover && c.languagePopover->isVisible());
        command(c.languagePopover->*row);
        EXPECT_FALSE(c.languagePopover->isVisible());
        EXPECT_EQ(c.func_keyset->title(), QString::fromUtf8(title));
        EXPECT_EQ(c.btn_macro_newmacro->textView->text(), QString::fromUtf8(macroButton));
        EXPECT_EQ(c.imgbtn_language->cur_normal_name, image);
    }

    // The main menu opens, and a click beside it closes it unused.
    click(c.imgbtn_menu);
    ASSERT_TRUE(c.menuPopover && c.menuPopover->isVisible());
    QTest::mouseClick(c.menuPopover, Qt::LeftButton, {}, QPoint(-40, 10));  // as the popup receives it
    EXPECT_FALSE(c.menuPopover->isVisible());

    // Three steps down the list come back to the 61-key, each button in its
    // slot after each step and the picture following; the centre button is
    // the model on show and does nothing.
    const QRect upper(15, 202, 138, 58), centre(0, 324, 166, 76), lower(15, 472, 138, 58);
    const std::vector<QRect> atStart{upper, centre, lower};
    ASSERT_EQ(listFrames(), atStart);
    for (const auto& [model, shown, frames] : {std::tuple{2, "kb_61k_cnc", std::vector{lower, upper, centre}},
                                               {0, "kb_68k", std::vector{centre, lower, upper}},
                                               {1, "kb_61k", atStart}}) {
        click(c.imgbtn_dev_up);
        advanceMoves(1);
        EXPECT_EQ(c.keyboardType, model);
        EXPECT_EQ(listFrames(), frames) << model;
        EXPECT_EQ(picture(), shown);
    }
    click(c.device_select_current);
    EXPECT_TRUE(runningMoves().isEmpty());
    EXPECT_EQ(listFrames(), atStart);
    EXPECT_TRUE(c.deviceState);
    EXPECT_EQ(g_device_type, 1);
    EXPECT_EQ(framesSince(start), std::vector<std::string>{});
}

TEST_F(WholeApp, AProfileGoesToAFileAndComesBackIntoAnotherProfileWhoseTableIsSentAtOnce)
{
    MainController& c = *controller;
    constexpr int kEscape = 41;
    c.deviceDB->addKeyProfile({.profId = 1, .keyValue = kEscape, .macroType = 11, .macroValue = 127, .macroDesc = "Mute"});

    answer = QUrl::fromLocalFile(files.path() + "/Profile A.key").toString();
    click(c.imgbtn_menu);
    command(c.menuPopover->importItem);  // the row that exports
    EXPECT_EQ(c.label_exchange->text(), "Exported 1 key assignment to \"Profile A.key\".");

    // Profile B from the profile menu: its light effect and its locks go out.
    const int beforeSwitch = settledSetCount();
    click(c.imgbtn_profile);
    command(c.profilePopover->profileB);
    EXPECT_EQ(c.imgbtn_profile->text(), "Profile B");
    EXPECT_EQ(framesSince(beforeSwitch),
              (std::vector<std::string>{frame({0x04, 0x18}), frame({0x04, 0x13, 0x02, 0, 0, 0, 0, 0, 0x01}),
                                        frame({0x01, 0, 0, 0xff, 0xff, 0, 0x0f, 0x07, 0x01, 0x0f, 0x0f, 0, 0, 0, 0xaa, 0x55}),
                                        frame({0x04, 0x02, 0x02}), frame({0x04, 0xf0, 0x02}), frame({0x04, 0x18}),
                                        frame({0x04, 0x17, 0x02, 0, 0, 0, 0, 0, 0x01}),
                                        std::string(124, '0') + "aa55", frame({0x04, 0x02})}));
    // The keyboard now runs profile B, so the next status poll keeps it.
    EXPECT_EQ(keyboard->firmware().activeProfile(), 2);

    answer = QUrl::fromLocalFile(files.path() + "/Profile A.key").toString();
    const int beforeImport = settledSetCount();
    click(c.imgbtn_menu);
    command(c.menuPopover->exportItem);  // the row that imports
    ASSERT_TRUE(waitUntil([&] { return c.label_exchange && c.label_exchange->text().startsWith("Imported"); }));
    EXPECT_EQ(c.label_exchange->text(), "Imported 1 key assignment from \"Profile A.key\" into Profile B.");
    std::vector<ProfileKey> rows;
    c.deviceDB->queryKeysProfile(2, rows);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].keyValue, kEscape);
    EXPECT_EQ(rows[0].macroDesc, "Mute");
    const auto& keys = c.orvane_keyboardctrl->kbKeyArraySelect;
    EXPECT_EQ(keys[std::size_t(*picturePosition(kEscape, int(keys.size())))].keyMacro, "Mute");
    // Profile B's table: Mute in Escape's slot, nine reports, the end frame.
    std::vector<std::string> table{frame({0x04, 0x18}), frame({0x04, 0x11, 0x02, 0, 0, 0, 0, 0, 0x09}),
                                   frame({0, 0, 0, 0, 0x03, 0xe2})};
    for (int report = 2; report <= 8; ++report)
        table.push_back(std::string(128, '0'));
    table.push_back(std::string(124, '0') + "aa55");
    table.push_back(frame({0x04, 0x02, 0x02}));
    EXPECT_TRUE(waitUntil([&] { return framesSince(beforeImport).size() >= table.size(); }));
    EXPECT_EQ(framesSince(beforeImport), table);
}

// Not a check: the window as a user sees it, saved for the documentation.
TEST_F(WholeApp, ScreenshotsOfEveryPageOfEachModelInBothLanguages)
{
    const QDir folder(qEnvironmentVariable("ORVANE_SCREENSHOT_DIR"));
    if (qEnvironmentVariable("ORVANE_SCREENSHOT_DIR").isEmpty())
        GTEST_SKIP() << "ORVANE_SCREENSHOT_DIR names no folder";
    MainController& c = *controller;
    auto save = [&](const QString& name) {
        QApplication::processEvents();
        QImageWriter writer(folder.filePath(name + ".png"));
        writer.setQuality(0);  // smallest file
        writer.write(c.grab().toImage().convertToFormat(QImage::Format_RGB888));
    };
    using M = MainController;
    const std::pair<QString, void (M::*)()> pages[]{{"keys", &M::action_func_key}, {"light", &M::action_func_light},
                                                   {"user-light", &M::action_userlightmode_tab},
                                                   {"system", &M::action_func_set}};
    for (const char* model : {"61k", "61k-cnc", "68k"}) {
        // English last, so the window turns to the next model in English.
        for (const auto& [language, tag] : {std::pair{kLanguageChinese, "zh"}, {kLanguageEnglish, "en"}}) {
            c.switchLanguage(language);
            for (const auto& [page, show] : pages) {
                (c.*show)();
                save(QString("window-%1-%2-%3").arg(model, page, tag));
            }
        }
        c.action_func_key();
        c.action_device_toup();
        if (model == std::string("61k")) {
            advanceMoves(300.0 / 680);
            save("window-model-list-sliding");
        }
        advanceMoves(1);
    }

    // A light mode of one's own on the CNC keyboard, painted as a rainbow
    // from left to right, one band of keys at a time.
    c.action_device_select_down();
    advanceMoves(1);
    c.action_func_light();
    c.action_userlightmode_tab();
    c.UserLightTableMenuMsg(166);
    c.userlightmode_table->setCurrentRow(0);
    KeyboardView& view = *c.orvane_keyboardctrl;
    const int keys = int(view.kbKeyArraySelect.size());
    for (int band = 0; band < 12; ++band) {
        for (int i = 0; i < keys; ++i)
            view.selectKeyView(i)->setKeyCheck(int(view.keyGeometry(i).center().x() * 12 / view.width()) == band);
        c.changeUserLightColor(QColor::fromHsv(band * 300 / 12, 230, 255));
    }
    for (int i = 0; i < keys; ++i)
        view.selectKeyView(i)->setKeyCheck(false);
    save("window-61k-cnc-painted-en");
    // The one line an export ends with.
    answer = QUrl::fromLocalFile(files.path() + "/Light 1.light").toString();
    c.exportLightData(0);
    save("window-light-exported-en");
}
