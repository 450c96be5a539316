// The light page and the language switch on a connected virtual keyboard.
#include "Common/Globals.h"
#include "Common/LightModeCatalogue.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "Language/Language.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/LocalSQLite.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/LanguageSwitch.h"
#include "View/MainController.h"
#include "View/control/AppFont.h"
#include "View/control/ButtonView.h"
#include "View/control/LightTableItemView.h"
#include "View/control/MenuItemView.h"
#include "View/control/NamedImage.h"
#include "View/popover/LanguagePopoverViewController.h"
#include "support/HexBytes.h"
#include "support/StoreTestSupport.h"
#include "support/VirtualSession.h"
#include "support/WaitUntil.h"

#include <QListWidget>
#include <QTest>
#include <QTextLayout>
#include <gtest/gtest.h>

using namespace testing_support;
using Kind = LightModeState::Kind;

namespace {

class LightPage : public ::testing::Test, protected VirtualSession {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(connected());
        controller->action_func_light();  // the rows are built when the page shows
    }

    void plug()
    {
        bus->plug(keyboard);
        ASSERT_TRUE(waitUntil([&] { return controller->currentTransport() && !controller->hidcomm_busy(); }));
    }

    void settle() { ASSERT_TRUE(controller->transport().waitForIdle(std::chrono::seconds(5))); }

    void unplug()
    {
        bus->unplug(keyboard);
        ASSERT_TRUE(waitUntil([&] { return !controller->connectedDevice(); }));
    }
    void clickRow(int row)
    {
        QTest::mouseClick(controller->lightModeRowView(row), Qt::LeftButton, {}, QPoint(100, 15));
        settle();
    }

    std::vector<int> markedRows()
    {
        std::vector<int> rows;
        for (int row = 0; row < controller->light_mode_table->count(); ++row)
            if (controller->lightModeRowView(row)->isSelect)
                rows.push_back(row);
        return rows;
    }

    std::optional<LightModeState> running(int profile) { return keyboard->firmware().lightModeState(profile); }

};

}  // namespace

TEST_F(LightPage, ConnectionSendsTheStoredEffectThenTheLocksOfTheProfileAsWholeFrames)
{
    std::vector<std::string> sets;
    for (const TraceRecord& r : keyboard->recentTrace())
        if (r.op == TraceRecord::Op::Set)
            sets.push_back(hexFromBytes({r.data.begin(), r.data.end()}));
    const auto frame = [](std::initializer_list<uint8_t> leading) { return hexFromBytes(report(leading)); };
    const std::vector<std::string> expected{
        frame({0x04, 0x18}), frame({0x04, 0x13, 0x01, 0, 0, 0, 0, 0, 0x01}),
        frame({0x01, 0, 0, 0xff, 0xff, 0, 0x0f, 0x07, 0x01, 0x0f, 0x0f, 0, 0, 0, 0xaa, 0x55}),
        frame({0x04, 0x02, 0x01}), frame({0x04, 0xf0, 0x01}),
        frame({0x04, 0x18}), frame({0x04, 0x17, 0x01, 0, 0, 0, 0, 0, 0x01}), std::string(124, '0') + "aa55",
        frame({0x04, 0x02})};
    EXPECT_EQ(sets, expected);
    EXPECT_EQ(markedRows(), std::vector<int>{0});
    EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();
}

TEST_F(LightPage, PickingEffect32InProfile2ChangesProfile2OnlyAndIsStored)
{
    keyboard->setActiveProfile(2);
    controller->pollKeyboardProfile();
    settle();
    ASSERT_EQ(controller->currentProfile, 2);

    clickRow(15);
    EXPECT_EQ(running(2), (LightModeState{Kind::BuiltIn, 32, true}));
    EXPECT_EQ(running(1), (LightModeState{Kind::BuiltIn, 1, true}));
    EXPECT_EQ(controller->deviceDB->getConfigData(2, "currentLightMode"), "32");
    EXPECT_EQ(controller->deviceDB->getConfigData(1, "currentLightMode"), "1");
    EXPECT_EQ(markedRows(), std::vector<int>{15});
    EXPECT_EQ(controller->lightModeRowView(15)->shownIconName(), "icon_light_shuttle_s");

    // Without a keyboard the choice is stored and nothing goes out.
    unplug();
    const int sets = keyboard->setCount();
    clickRow(3);
    EXPECT_EQ(controller->deviceDB->getConfigData(2, "currentLightMode"), "4");
    EXPECT_EQ(controller->currentLightMode, 4);
    EXPECT_EQ(keyboard->setCount(), sets);
}

TEST_F(LightPage, AStoredModeIsMarkedAndSentAndAnUnreadableOneRunsEffect1)
{
    unplug();
    controller->deviceDB->updateConfigData(1, "currentLightMode", "32");
    plug();
    EXPECT_EQ(markedRows(), std::vector<int>{15});
    EXPECT_EQ(running(1)->mode, 32);

    controller->deviceDB->updateConfigData(1, "currentLightMode", "x7");
    controller->swicthProfile(1);
    settle();
    EXPECT_EQ(markedRows(), std::vector<int>{0});
    EXPECT_EQ(running(1)->mode, 1);

    // The effect always goes to the profile in use.
    controller->currentLightMode = 9;
    controller->setHFDBackLightData(4);
    settle();
    EXPECT_EQ(running(1)->mode, 9);
    EXPECT_EQ(running(4), std::nullopt);
}

TEST_F(LightPage, TheLanguageMenuRelabelsEveryTextStoresTheChoiceAndSendsNothing)
{
    clickRow(6);
    const int sets = keyboard->setCount();
    controller->timetickcount = 0;

    QTest::mouseClick(controller->imgbtn_language, Qt::LeftButton);
    ASSERT_TRUE(controller->languagePopover && controller->languagePopover->isVisible());
    EXPECT_EQ(controller->languagePopover->lan2052MenuItem->iconView->imageName(), "icon_lan_1033");
    EXPECT_EQ(controller->languagePopover->lan1033MenuItem->iconView->imageName(), "icon_lan_2052");
    QTest::mouseClick(controller->languagePopover->lan2052MenuItem, Qt::LeftButton);

    EXPECT_EQ(G_Language, kLanguageChinese);
    EXPECT_FALSE(controller->languagePopover->isVisible());
    EXPECT_EQ(controller->imgbtn_language->cur_normal_name, "sys_btn_cn_n");
    EXPECT_EQ(controller->localDB->getLocalData("orvane", "language"), "zh-Hans-CN");
    int labelled = 0;
    for (const LabelledControl& c : labelledControls())
        if (auto* w = controller->findChild<QWidget*>(c.objectName); w && ++labelled)
            EXPECT_EQ(w->property("text").toString(), CHSLanguage::getLan(c.textId)) << c.objectName;
    EXPECT_GE(labelled, 2);
    for (int row = 0; row < kLightModeRows; ++row)
        EXPECT_EQ(controller->lightModeRowView(row)->textView->text(),
                  CHSLanguage::getLan(lightModeCatalogue()[row].textId));
    EXPECT_EQ(markedRows(), std::vector<int>{6});
    EXPECT_EQ(keyboard->setCount(), sets);

    // Chinese is drawn with the simplified Chinese face, and fits its row.
    QLabel* name = controller->lightModeRowView(4)->textView;
    QTextLayout layout(name->text(), name->font());
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    ASSERT_FALSE(layout.glyphRuns().isEmpty());
    EXPECT_TRUE(AppFont::families().contains(layout.glyphRuns().first().rawFont().familyName()));
    EXPECT_LE(name->sizeHint().width(), name->width());

    // A second command within a second is dropped.
    QTest::mouseClick(controller->imgbtn_language, Qt::LeftButton);
    QTest::mouseClick(controller->languagePopover->lan1033MenuItem, Qt::LeftButton);
    EXPECT_EQ(G_Language, kLanguageChinese);
}

TEST(LightRow, KeepsItsSelectedIconUnderThePointerAndIgnoresASecondInit)
{
    LightTableItemView row;
    row.resize(200, LightTableItemView::kRowHeight);
    row.initView("icon_light_tilt_n", "icon_light_tilt_h", "icon_light_tilt_s", "Pointing");
    row.initView("a", "b", "c", "Other");
    EXPECT_EQ(row.textView->text(), "Pointing");

    QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&row, &enter);
    EXPECT_EQ(row.shownIconName(), "icon_light_tilt_h");
    row.setSelect(true);
    QApplication::sendEvent(&row, &leave);
    QApplication::sendEvent(&row, &enter);
    EXPECT_EQ(row.shownIconName(), "icon_light_tilt_s");
    EXPECT_EQ(row.textView->palette().color(QPalette::WindowText), QColor::fromRgbF(0.2235294117647059f, 0.6470588235294118f, 1.0f));
}

TEST(LightImages, EveryNamedImageOfThePageAndTheLanguageMenuExists)
{
    QStringList names{"tab_light", "tab_light_check", "icon_lan_1033", "icon_lan_2052", "menu_row_hover",
                      "sys_btn_en_n", "sys_btn_en_h", "sys_btn_cn_n", "sys_btn_cn_h"};
    for (const LightModeEntry& e : lightModeCatalogue())
        names << e.iconNormal() << e.iconHover() << e.iconSelected();
    for (const QString& name : names)
        EXPECT_FALSE(NamedImage::pixmap(name, QSize(15, 15), 2.0).isNull()) << name.toStdString();
}
