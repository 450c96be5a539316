// The keyboard picture driven by the pointer: hover and its tool tip, click
// and Shift-click selection, the rubber band, the key report on release, a
// rebuild under the pointer and the slide between two pictures.
#include "Common/Globals.h"
#include "Common/NotificationCenter.h"
#include "View/control/KeyView.h"
#include "View/control/KeyboardView.h"
#include "View/control/NamedImageView.h"
#include "View/control/SelectKeyView.h"
#include "support/WaitUntil.h"

#include <QDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

using Keys = std::vector<int>;
const QPoint kAbove(300, 5), kLeftOfEscape(5, 35);  // beside every 61-key key

class KeyboardPointer : public ::testing::Test {
protected:
    void SetUp() override
    {
        window.resize(1160, 720);
        view->setGeometry(215, 720 - 280 - 235, 660, 235);  // the window's picture frame
        build(keyboardModel61k());
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        for (const char* name : {"ShowKeyboardToolTipWnd", "keyboardKeyAction", "KeyboardViewAnimationStop"})
            center.addObserver(name, [this, name](const QVariant& o) { posted.push_back({name, o}); }, this);
        pointTo(kAbove);
        posted.clear();
    }
    void TearDown() override { center.removeObservers(this); shiftKeyStatus = 0; }

    void build(const KeyboardModelLayout& m)
    {
        view->setBoundsSize(QSizeF(m.frame.width, m.frame.height));
        view->initKeyboard(1, m.pictures[0], layoutKeys(*m.layout, *m.yPos, *m.sizes, {}));
        view->setKeyBackgroundColor(Qt::black);  // the white case's legends
    }
    // The cursor only moves when it goes somewhere new, so it steps there.
    void pointTo(QPoint p) { QTest::mouseMove(view, p + QPoint(1, 0)); QTest::mouseMove(view, p); }
    QPoint centre(int key) { return view->keyGeometry(key).center().toPoint(); }
    void click(int key) { pointTo(centre(key)); QTest::mouseClick(view, Qt::LeftButton, {}, centre(key)); }
    Keys keysWhere(const std::function<bool(SelectKeyView*)>& test)
    {
        Keys keys;
        for (int i = 0; i < int(view->kbKeyArraySelect.size()); ++i)
            if (test(view->selectKeyView(i)))
                keys.push_back(i);
        return keys;
    }
    Keys selected() { return keysWhere([](SelectKeyView* k) { return k->keyCheck; }); }
    Keys markers() { return keysWhere([](SelectKeyView* k) { return k->imageView && k->imageView->isVisible(); }); }
    QVariant last(const QString& name)
    {
        for (auto it = posted.rbegin(); it != posted.rend(); ++it)
            if (it->first == name)
                return it->second;
        return {};
    }
    static QVariantMap hiddenTip() { return {{"show", 0}, {"keyDesc", "null"}, {"keyMacro", "null"}, {"keyPoint", QPointF(0, 0)}}; }

    NotificationCenter& center = NotificationCenter::defaultCenter();
    QWidget window;
    KeyboardView* view = new KeyboardView(&window);
    std::vector<std::pair<QString, QVariant>> posted;
};

}  // namespace

TEST_F(KeyboardPointer, HoverShowsTheToolTipAndAMarkerOnlyOnKeysCheckedBefore)
{
    view->kbKeyArraySelect[1].keyMacro = "Mute";
    pointTo(centre(1));  // i1: 54, 180, 42 by 41 in a frame at 215, 280
    EXPECT_EQ(view->hoverKeyItem, 1);
    EXPECT_EQ(last("ShowKeyboardToolTipWnd").toMap(),
              (QVariantMap{{"show", 1}, {"keyDesc", "i1"}, {"keyMacro", "Mute"}, {"keyPoint", QPointF(290, 460)}}));
    EXPECT_EQ(markers(), Keys{});
    pointTo(kAbove);
    EXPECT_EQ(last("ShowKeyboardToolTipWnd").toMap(), hiddenTip());
    EXPECT_EQ(view->hoverKeyItem, -1);

    click(2);  // a click gives every key its marker
    pointTo(centre(1));
    EXPECT_EQ(markers(), (Keys{1, 2}));
    EXPECT_EQ(selected(), Keys{2});
    pointTo(kAbove);
    EXPECT_EQ(markers(), Keys{2});
    // Leaving the picture over the selected key unselects it.
    pointTo(centre(2));
    QTest::mouseMove(&window, QPoint(5, 5));
    EXPECT_EQ(selected(), Keys{});
    EXPECT_EQ(view->hoverKeyItem, -1);
    EXPECT_EQ(last("ShowKeyboardToolTipWnd").toMap(), hiddenTip());
}

TEST_F(KeyboardPointer, AClickSelectsOneKeyShiftAddsToABandAndReleaseReportsTheLastClicked)
{
    QTest::mouseClick(view, Qt::LeftButton, {}, kAbove);
    EXPECT_FALSE(last("keyboardKeyAction").isValid());  // no key clicked yet
    click(15);
    click(16);
    EXPECT_EQ(selected(), Keys{16});
    EXPECT_EQ(last("keyboardKeyAction"), QVariant("w"));
    shiftKeyStatus = 1;
    click(17);
    EXPECT_EQ(selected(), Keys{17});  // the earlier click's key leaves the selection
    shiftKeyStatus = 0;

    pointTo(kLeftOfEscape);
    QTest::mousePress(view, Qt::LeftButton, {}, kLeftOfEscape);
    QTest::mouseMove(view, kLeftOfEscape + QPoint(6, 0));
    EXPECT_EQ(selected(), Keys{17});  // 6 units is still a click
    view->isEvent = false;  // the band draws even before the view takes events
    QTest::mouseMove(view, kLeftOfEscape + QPoint(7, 0));
    EXPECT_EQ(view->frameSelect, QRectF(5, 200, 7, 0));
    EXPECT_EQ(selected(), Keys{0});  // the flat band touches escape
    view->isEvent = true;
    QTest::mouseMove(view, QPoint(100, 85));
    EXPECT_EQ(selected(), (Keys{0, 1, 2, 14, 15}));  // row 1 to i2, row 2 to q
    EXPECT_EQ(view->frameSelectView->geometry(), QRect(5, 35, 95, 50));
    QTest::mouseMove(view, QPoint(330, 160));
    if (const QString dir = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR"); !dir.isEmpty())
        window.grab(view->geometry().adjusted(-20, -20, 20, 20)).save(QDir(dir).filePath("kb-rubber-band.png"));
    QTest::mouseMove(view, QPoint(100, 85));
    QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(100, 85));
    EXPECT_EQ(view->frameSelectView->geometry(), QRect(0, 0, 0, 0));
    EXPECT_EQ(last("keyboardKeyAction"), QVariant("e"));  // the band's keys lack it

    shiftKeyStatus = 1;
    click(30);
    EXPECT_EQ(selected(), (Keys{0, 1, 2, 14, 15, 30}));
}

TEST_F(KeyboardPointer, ARebuildUnderThePointerForgetsTheKeysOfTheLargerModel)
{
    build(keyboardModel68k());
    click(67);
    build(keyboardModel61k());
    EXPECT_EQ(std::pair(view->hoverKeyItem, view->selectKeyItem), std::pair(-1, -1));
    EXPECT_EQ(last("ShowKeyboardToolTipWnd").toMap(), hiddenTip());
    posted.clear();
    QTest::mouseClick(view, Qt::LeftButton, {}, centre(60));  // no move: no key under the pointer yet
    EXPECT_TRUE(posted.empty());
    click(60);
    EXPECT_EQ(last("keyboardKeyAction"), QVariant("fn"));
}

TEST_F(KeyboardPointer, ASlideMovesBothPicturesOverHiddenKeysAndEndsOnce)
{
    const std::vector<std::pair<QRect, QRect>> starts{{{0, -235, 660, 235}, {0, 0, 660, 235}},
                                                      {{0, 235, 660, 235}, {0, 0, 660, 235}},
                                                      {{-660, 0, 660, 235}, {0, 0, 660, 235}},
                                                      {{660, 0, 660, 235}, {0, 0, 660, 235}}};
    for (int type = 0; type < 4; ++type) {
        view->animationMoveKBView("kb_61k_black", "kb_61k", type);
        EXPECT_EQ(std::pair(view->kbNewView->geometry(), view->kbOldView->geometry()), starts[size_t(type)]);
    }
    EXPECT_FALSE(view->kbImageView->isVisible() || view->keyView(0)->isVisible() || view->selectKeyView(0)->isVisible());
    ASSERT_TRUE(waitUntil([&] { return !posted.empty(); }));
    EXPECT_EQ(posted.size(), 1u);
    EXPECT_EQ(posted[0].first, "KeyboardViewAnimationStop");
    EXPECT_TRUE(view->kbImageView->isVisible() && view->keyView(0)->isVisible() && !view->kbNewView->isVisible());
    view->animationMoveKBView("kb_61k_black", "kb_61k", 4);
    EXPECT_TRUE(view->kbNewView->isVisible() && !view->kbImageView->isVisible());
    EXPECT_FALSE(view->isSliding());
}
