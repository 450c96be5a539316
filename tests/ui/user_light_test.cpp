// The user light tab on a connected virtual keyboard: painting keys through
// the colour dialog, the list's rows and menu request, saving a mode to a
// custom slot.
#include "Common/Globals.h"
#include "Common/NotificationCenter.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/LightSQLite.h"
#include "View/CustomMenu/KeySubMenuLightViewController.h"
#include "View/control/MenuItemView.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/MainController.h"
#include "View/control/ButtonView.h"
#include "View/control/KeyView.h"
#include "View/control/KeyboardView.h"
#include "View/control/SelectKeyView.h"
#include "View/control/UserLightTableItemView.h"
#include "support/HexBytes.h"
#include "support/StoreTestSupport.h"
#include "support/VirtualSession.h"
#include "support/WaitUntil.h"

#include <QColorDialog>
#include <QDir>
#include <QImageWriter>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <gtest/gtest.h>

using namespace testing_support;
using Leds = std::map<int, uint32_t>;

namespace {

class UserLight : public ::testing::Test, protected VirtualSession {
protected:
    UserLight()
        : VirtualSession([this](MainController::Environment& env) {
              env.chooseExchangeFile = [this](const ExchangeDialog& dialog) {
                  return QUrl::fromLocalFile(files.path() + "/" + dialog.name).toString();
              };
          })
    {
    }
    void SetUp() override
    {
        ASSERT_TRUE(QTest::qWaitForWindowExposed(controller.get()));
        ASSERT_TRUE(connected());
        controller->action_userlightmode_tab();
    }
    void TearDown() override { StoreSupport::faultHook = {}; }

    KeyboardView& view() { return *controller->orvane_keyboardctrl; }
    void settle() { ASSERT_TRUE(controller->transport().waitForIdle(std::chrono::seconds(5))); }
    void menu(int id) { controller->MenuItemMouseUpAction(QVariantMap{{"menuid", id}}); }
    void selectRow(int row)
    {
        QListWidget* list = controller->userlightmode_table;
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
    }
    // Selects the keys `from` to `to` of one row of the picture, by a click
    // or a drag across them, and picks `colour` in the dialog the release
    // opens.
    void select(int from, int to)
    {
        const QPoint start = view().keyGeometry(from).center().toPoint();
        const QPoint end = view().keyGeometry(to).center().toPoint();
        QTest::mouseMove(&view(), start + QPoint(1, 0));
        QTest::mouseMove(&view(), start);
        QTest::mousePress(&view(), Qt::LeftButton, {}, start);
        QTest::mouseMove(&view(), end);
        QTest::mouseRelease(&view(), Qt::LeftButton, {}, end);
    }
    void paint(int from, int to, const QColor& colour)
    {
        select(from, to);
        ASSERT_TRUE(controller->colorPanel && controller->colorPanel->isVisible());
        controller->colorPanel->setCurrentColor(colour);
        QApplication::processEvents();
    }
    int codeOf(int key) { return G_KB_SuperKeyNameMap.at(view().kbKeyArrayHover[size_t(key)].keyname).key_code; }
    int ledOf(int key) { return G_KB_SuperKeyCodeMap.at(codeOf(key)).light_index; }
    Leds slot(int n)
    {
        const auto held = keyboard->firmware().state().userLightLeds;
        return held.count(n) ? held.at(n) : Leds{};
    }
    std::vector<std::string> commandFrames(std::size_t from)
    {
        std::vector<std::string> frames;
        const auto trace = keyboard->recentTrace();
        for (std::size_t i = from; i < trace.size(); ++i)
            if (trace[i].op == TraceRecord::Op::Set && trace[i].data[0] == 0x04 && trace[i].data[1] != 0)
                frames.push_back(hexFromBytes({trace[i].data.begin(), trace[i].data.end()}));
        return frames;
    }
    std::vector<std::string> framesSince(std::size_t from)  // every frame sent, whole
    {
        std::vector<std::string> frames;
        const auto trace = keyboard->recentTrace();
        for (std::size_t i = from; i < trace.size(); ++i)
            if (trace[i].op == TraceRecord::Op::Set)
                frames.push_back(hexFromBytes({trace[i].data.begin(), trace[i].data.end()}));
        return frames;
    }
    std::vector<RGBData> colours(int64_t mode)
    {
        std::vector<RGBData> rows;
        controller->deviceDB->queryKeyRGB(1, mode, rows);
        return rows;
    }
    void clickRowButton(int row, ImageButton* UserLightTableItemView::*button)
    {
        QTest::mouseClick(controller->userLightRowView(row)->*button, Qt::LeftButton);
        QApplication::processEvents();
    }
    QTemporaryDir files;
    void screenshot(const QString& name, const QRect& area)
    {
        // Saved as docs/screenshots/<name>.png when ORVANE_SCREENSHOT_DIR names a folder.
        if (const QString dir = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR"); !dir.isEmpty())
            QImageWriter(QDir(dir).filePath(name + ".png")).write(controller->grab(area).toImage());
    }
};

}  // namespace

TEST_F(UserLight, ASlotGetsExactlyThePaintedKeysOfTheShownModeAndOtherSlotsStayAsTheyWere)
{
    for (int i = 0; i < 2; ++i)
        menu(166);
    ASSERT_EQ(controller->userlightmode_table->count(), 2);
    EXPECT_EQ(controller->userLightRowView(1)->textView->text(), "Light 2");
    // Mode 2, one green key, goes to slots 1 and 3.
    selectRow(1);
    paint(10, 10, Qt::green);
    for (int save : {167, 169})
        menu(save);
    settle();
    const Leds others{{ledOf(10), 0x00FF00}};
    ASSERT_EQ(slot(1), others);

    // Mode 1: three keys in two colours, and a row of a key this model lacks.
    selectRow(0);
    EXPECT_EQ(view().keyView(10)->keyColor, QColor(Qt::black));
    paint(3, 4, QColor(0xFF, 0x80, 0x00));
    paint(20, 20, QColor::fromHsv(240, 255, 255));
    controller->deviceDB->insertKeyRGB({0, 1, 1, 0x7777, 0xABCDEF});
    const std::size_t traced = keyboard->recentTrace().size();
    menu(168);
    settle();
    EXPECT_EQ(slot(2), (Leds{{ledOf(3), 0xFF8000}, {ledOf(4), 0xFF8000}, {ledOf(20), 0x0000FF}}));
    EXPECT_EQ(slot(1), others);
    EXPECT_EQ(slot(3), others);
    const auto frame = [](std::initializer_list<uint8_t> leading) { return hexFromBytes(report(leading)); };
    EXPECT_EQ(commandFrames(traced),
              (std::vector<std::string>{frame({4, 0x18}), frame({4, 0x23, 0x82, 0, 0, 0, 0, 0, 9}), frame({4, 0x02}),
                                        frame({4, 0xf0}), frame({4, 0x18}), frame({4, 0x13, 1, 0, 0, 0, 0, 0, 1}),
                                        frame({4, 0x02, 1}), frame({4, 0xf0, 1})}));
    EXPECT_EQ(keyboard->firmware().lightMode(1)[0], 0x80);
    EXPECT_EQ(controller->deviceDB->getConfigData(1, "currentLightMode"), "1");
    EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();
    screenshot("user-light-list", QRect(900, 50, 260, 620));
}

TEST_F(UserLight, ADragStoresOnlyItsNewestColourAndEachPassIsWhole)
{
    menu(166);
    int passes = 0;
    StoreSupport::faultHook = [&](std::string_view step) { passes += step == "light.pass.1"; };
    paint(5, 6, Qt::red);
    ASSERT_EQ(passes, 1);
    // Reports faster than passes: one pass, for the last colour.
    for (int hue = 0; hue < 300; hue += 10)
        controller->colorPanel->setCurrentColor(QColor::fromHsv(hue, 200, 200));
    QApplication::processEvents();
    EXPECT_EQ(passes, 2);
    std::vector<RGBData> rows;
    controller->deviceDB->queryKeyRGB(1, 1, rows);
    const int last = int(QColor::fromHsv(290, 200, 200).rgb() & 0xFFFFFF);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(std::vector<int>({rows[0].rgbvalue, rows[1].rgbvalue}), std::vector<int>({last, last}));
}

TEST_F(UserLight, RowsRenameAndDeleteTheirModesAndTheMenuRequestIsGated)
{
    for (int i = 0; i < 3; ++i)
        menu(166);
    selectRow(1);
    UserLightTableItemView* row = controller->userLightRowView(1);
    ASSERT_TRUE(row->isDown && !row->textView->isReadOnly());
    EXPECT_FALSE(controller->userLightRowView(0)->isDown);
    row->textView->selectAll();
    QTest::keyClicks(row->textView, "Sunset");
    QTest::keyClick(row->textView, Qt::Key_Return);
    QApplication::processEvents();
    std::vector<userLightData> list;
    controller->deviceDB->queryUserLightList(list);
    EXPECT_EQ(list[1].name, "Sunset");
    EXPECT_EQ(controller->userLightRowView(1)->textView->text(), "Sunset");

    NotificationCenter::defaultCenter().post("UserLightTableViewButton", QVariantMap{{"type", 4}, {"index", 0}});
    clickRowButton(0, &UserLightTableItemView::delBtnView);
    QTest::mouseClick(controller->window()->findChild<QPushButton*>("deleteLightOK"), Qt::LeftButton);
    QApplication::processEvents();
    list.clear();
    controller->deviceDB->queryUserLightList(list);
    EXPECT_EQ(list, (std::vector<userLightData>{{2, "Sunset", 10, 10}, {3, "Light 3", 10, 10}}));
    ASSERT_EQ(controller->userlightmode_table->count(), 2);
    EXPECT_EQ(controller->userLightRowView(1)->tableViewIndex, 1);

    std::vector<int> shown;
    controller->showLightMenu = [&](int type) { shown.push_back(type); };
    controller->timetickcount = 0;
    auto* list_view = controller->userlightmode_table->viewport();
    QTest::mouseClick(list_view, Qt::RightButton, {}, QPoint(20, 10));
    QTest::mouseClick(list_view, Qt::RightButton, {}, QPoint(20, 10));
    controller->timetickcount = 0;
    QTest::mouseClick(list_view, Qt::RightButton, {}, QPoint(20, 400));
    controller->timetickcount = 0;
    NotificationCenter::defaultCenter().post("UserLightTableViewMenu", QString("0"));
    EXPECT_EQ(shown, (std::vector<int>{2, 3}));
}

TEST_F(UserLight, ShowingAModeColoursEachModelsKeysAndSkipsKeysTheModelLacks)
{
    for (int deviceType : {1, 2, 0}) {
        controller->setCurrentDevice(deviceType);
        const int64_t mode = controller->deviceDB->addUserLight("All");
        const int keys = int(view().kbKeyArrayHover.size());
        std::vector<RGBData> pass{{0, mode, 1, 0x7777, 0x123456}};
        for (int i = 0; i < keys; ++i)
            pass.push_back({0, mode, 1, codeOf(i), int(QColor::fromHsv(i * 300 / keys, 220, 255).rgb() & 0xFFFFFF)});
        ASSERT_TRUE(controller->deviceDB->insertKeyRGBPass(pass));
        controller->loadUserLightData(mode);
        // Every key shows one of the painted colours, each colour once.
        std::vector<int> shown;
        std::vector<int> painted;
        for (int i = 0; i < keys; ++i) {
            shown.push_back(int(view().keyView(i)->shownColor().rgb() & 0xFFFFFF));
            painted.push_back(pass[size_t(i) + 1].rgbvalue);
        }
        std::sort(shown.begin(), shown.end());
        std::sort(painted.begin(), painted.end());
        EXPECT_EQ(shown, painted);
        const char* name = deviceType == 2 ? "68k" : deviceType == 1 ? "61k" : "61k-cnc";
        screenshot(QStringLiteral("user-light-painted-%1").arg(name), QRect(195, 105, 700, 350));
    }
}

TEST_F(UserLight, PickingTheSameColourAgainPaintsTheKeysSelectedSince)
{
    menu(166);
    select(5, 5);
    ASSERT_TRUE(controller->colorPanel && controller->colorPanel->isVisible());
    const QPoint placed = controller->colorPanel->pos();
    QWidget* swatches = nullptr;
    for (QWidget* part : controller->colorPanel->findChildren<QWidget*>())
        if (!swatches && part->inherits("QWellArray"))
            swatches = part;
    ASSERT_TRUE(swatches);
    const QPoint cell(swatches->width() * 3 / 16, swatches->height() / 12);  // the second basic colour
    QTest::mouseClick(swatches, Qt::LeftButton, {}, cell);
    QApplication::processEvents();
    const QColor picked = controller->colorPanel->currentColor();
    EXPECT_EQ(view().keyView(5)->keyColor, picked);
    // Another key, the same swatch: no change for the panel, a paint for us.
    select(30, 30);
    QTest::mouseClick(swatches, Qt::LeftButton, {}, cell);
    ASSERT_TRUE(waitUntil([&] { return view().keyView(30)->keyColor == picked; }));
    EXPECT_EQ(view().keyView(30)->keyColor, picked);
    EXPECT_EQ(colours(1).size(), 2u);
    // The panel stays where it was put; a key click does not move it.
    EXPECT_EQ(controller->colorPanel->pos(), placed);
}

TEST_F(UserLight, EachRowActsOnItsOwnLightAndADeletedLightTakesItsColours)
{
    menu(166);
    menu(166);
    // Add Light highlights the new row and paints on it.
    EXPECT_TRUE(controller->userLightRowView(1)->isDown && !controller->userLightRowView(0)->isDown);
    paint(10, 10, Qt::green);
    selectRow(0);
    paint(3, 4, QColor(0xFF, 0x80, 0x00));
    EXPECT_EQ(controller->currentUserLightMode, 1);

    // The second row's export, while the first is highlighted.
    clickRowButton(1, &UserLightTableItemView::exportBtnView);
    const QStringList written = QDir(files.path()).entryList({"*.light"});
    ASSERT_EQ(written.size(), 1);
    LightSQLite file(QUrl::fromLocalFile(QDir(files.path()).filePath(written[0])).toString(), ExchangeAccess::Import);
    QString name, mark1, mark2;
    file.readLightData(name, mark1, mark2);
    std::vector<LEDData> leds;
    file.getlightLedData(leds);
    EXPECT_EQ(std::tuple(name, mark1, mark2), std::tuple(QString("Light 2"), QString("666"), QString("888")));
    ASSERT_EQ(leds.size(), 1u);
    EXPECT_EQ(std::pair(leds[0].keyvalue, leds[0].rgbvalue), std::pair(codeOf(10), 0x00FF00));

    // Delete asks first; Cancel keeps the light, OK takes it and its colours.
    for (const char* answer : {"deleteLightCancel", "deleteLightOK"}) {
        clickRowButton(1, &UserLightTableItemView::delBtnView);
        auto* alert = controller->window()->findChild<QMessageBox*>("deleteLightAlert");
        ASSERT_TRUE(alert && alert->isVisible());
        EXPECT_TRUE(alert->text().contains("Light 2"));
        QTest::mouseClick(alert->findChild<QPushButton*>(answer), Qt::LeftButton);
        QApplication::processEvents();
    }
    ASSERT_EQ(controller->userlightmode_table->count(), 1);
    EXPECT_TRUE(colours(2).empty());
    menu(166);  // comes back under id 2, unpainted
    EXPECT_EQ(controller->currentUserLightMode, 2);
    EXPECT_TRUE(colours(2).empty());
    EXPECT_EQ(view().keyView(10)->keyColor, QColor(Qt::black));
}

TEST_F(UserLight, TheNameRefusesEmptinessAndItsRightClickOpensTheLightMenu)
{
    menu(166);
    std::vector<int> shown;
    controller->showLightMenu = [&](int type) { shown.push_back(type); };
    controller->timetickcount = 0;
    UserLightTableItemView* row = controller->userLightRowView(0);
    ASSERT_TRUE(row->isDown);
    QTest::mouseClick(row->textView, Qt::RightButton, {}, QPoint(5, 5));
    EXPECT_EQ(shown, std::vector<int>{2});
    row->textView->selectAll();
    QTest::keyClick(row->textView, Qt::Key_Delete);
    QTest::keyClick(row->textView, Qt::Key_Return);
    QApplication::processEvents();
    std::vector<userLightData> list;
    controller->deviceDB->queryUserLightList(list);
    EXPECT_EQ(list[0].name, "Light 1");
    EXPECT_EQ(row->textView->text(), "Light 1");
    QWidget* problem = controller->label_problem;
    EXPECT_TRUE(problem && problem->isVisible() && controller->label_problem->text().contains("needs a name"));
    EXPECT_EQ(row->exportBtnView->toolTip(), "Export this light");
}

TEST_F(UserLight, TurnOffClearsTheSelectedKeysAndTheSlotGetsExactlyTheRest)
{
    menu(166);
    paint(3, 6, Qt::red);
    controller->action_func_light();
    controller->action_func_key();
    // Two keys by a band on the key page raise the light menu.
    select(4, 5);
    KeySubMenuLightViewController* lightMenu = controller->kbKeyLightSubMenu;

    ASSERT_TRUE(lightMenu && lightMenu->isVisible() && lightMenu->menuitem_light_reset->isVisible());
    QTest::mouseClick(lightMenu->menuitem_light_reset, Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(colours(1).size(), 2u);
    const std::size_t traced = keyboard->recentTrace().size();
    menu(167);
    settle();
    std::vector<uint8_t> block(576, 0);
    for (int key : {3, 6}) {
        const int led = ledOf(key);
        block[size_t(led) * 4] = uint8_t(led);
        block[size_t(led) * 4 + 1] = 0xFF;
    }
    block[574] = 0xAA;
    block[575] = 0x55;
    const auto frame = [](std::initializer_list<uint8_t> leading) { return hexFromBytes(report(leading)); };
    std::vector<std::string> expected{frame({4, 0x18}), frame({4, 0x23, 0x81, 0, 0, 0, 0, 0, 9})};
    for (int i = 0; i < 9; ++i)
        expected.push_back(hexFromBytes({block.begin() + i * 64, block.begin() + (i + 1) * 64}));
    expected.push_back(frame({4, 0x02}));
    expected.push_back(frame({4, 0xf0}));
    const auto sent = framesSince(traced);
    ASSERT_GE(sent.size(), expected.size());
    EXPECT_EQ(std::vector<std::string>(sent.begin(), sent.begin() + long(expected.size())), expected);
    EXPECT_EQ(controller->findChild<QLabel*>("label_exchange")->text(), "Saved to custom mode 1");

    // Light Up RGB: full white on the selected keys.
    select(4, 5);
    QTest::mouseClick(controller->kbKeyLightSubMenu->menuitem_light_custom, Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(view().keyView(4)->keyColor, QColor(Qt::white));
    EXPECT_EQ(colours(1).size(), 4u);
}

TEST_F(UserLight, The68KeyPictureWithA61KeyKeyboardNeitherPaintsNorSaves)
{
    menu(166);
    controller->setCurrentDevice(2);  // the 68-key picture, the 61-key keyboard connected
    auto* notice = controller->findChild<QLabel*>("userLightNotice");
    ASSERT_TRUE(notice && notice->isVisible());
    EXPECT_TRUE(notice->text().contains("ORVANE M61"));
    select(60, 60);
    EXPECT_FALSE(controller->colorPanel && controller->colorPanel->isVisible());
    EXPECT_TRUE(colours(1).empty());
    const std::size_t traced = keyboard->recentTrace().size();
    menu(167);
    settle();
    EXPECT_TRUE(framesSince(traced).empty());
    // The metal-case picture fits a 61-key keyboard: painting is on again.
    controller->setCurrentDevice(0);
    EXPECT_FALSE(notice->isVisible());
    paint(10, 10, Qt::red);
    EXPECT_EQ(colours(1).size(), 1u);
}

TEST_F(UserLight, TheColourPanelClosesWhenTheWindowHidesAndWhenItAppearsAgain)
{
    menu(166);
    selectRow(0);
    paint(3, 3, Qt::red);
    QWidget* window = controller->window();
    window->hide();
    EXPECT_FALSE(controller->colorPanel->isVisible());
    controller->colorPanel->show();  // opened while the window was away: closed as it comes back
    window->show();
    QApplication::processEvents();
    EXPECT_FALSE(controller->colorPanel->isVisible()) << "no panel of a click made before";
}
