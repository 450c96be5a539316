// The keyboard picture driven by the pointer: hover and its tool tip, click
// Shift-click, Ctrl-click and Shift-band selection, the rubber band, the key report on release, a
// rebuild under the pointer and the slide between two pictures.
#include "Common/Globals.h"
#include "Common/NotificationCenter.h"
#include "View/control/KeyView.h"
#include "View/control/KeyboardView.h"
#include "View/control/NamedImageView.h"
#include "View/control/SelectKeyView.h"
#include "support/WaitUntil.h"

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
            NotificationCenter::defaultCenter().addObserver(name, [this, name](const QVariant& o) { last[name] = o, ++posts; }, this);
        pointTo(kAbove);
        forget();
    }
    void TearDown() override { NotificationCenter::defaultCenter().removeObservers(this), shiftKeyStatus = 0; }
    void forget() { last.clear(), posts = 0; }

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
    Keys keys(bool marker = false)  // the keys selected, or those whose marker shows
    {
        Keys keys;
        for (int i = 0; SelectKeyView* k = view->selectKeyView(i); ++i)
            if (marker ? k->imageView && k->imageView->isVisible() : k->keyCheck)
                keys.push_back(i);
        return keys;
    }
    const QVariantMap hiddenTip{{"show", 0}, {"keyDesc", "null"}, {"keyMacro", "null"}, {"keyPoint", QPointF(0, 0)}};

    QWidget window;
    KeyboardView* view = new KeyboardView(&window);
    QVariantMap last;  // the last object of each notification
    int posts = 0;
};

}  // namespace

TEST_F(KeyboardPointer, HoverShowsTheToolTipAndAMarkerOnlyOnKeysCheckedBefore)
{
    view->kbKeyArraySelect[1].keyMacro = "Mute";
    pointTo(centre(1));  // i1: 54, 180, 42 by 41 in a frame at 215, 280
    EXPECT_EQ(last["ShowKeyboardToolTipWnd"].toMap(),
              (QVariantMap{{"show", 1}, {"keyDesc", "i1"}, {"keyMacro", "Mute"}, {"keyPoint", QPointF(290, 460)}}));
    EXPECT_EQ(std::pair(view->hoverKeyItem, keys(true)), std::pair(1, Keys{}));
    click(2);  // a click gives every key its marker
    pointTo(centre(1));
    EXPECT_EQ(keys(true), (Keys{1, 2}));
    pointTo(kAbove);
    EXPECT_EQ(std::pair(keys(true), keys()), std::pair(Keys{2}, Keys{2}));
    // Leaving the picture over the selected key unselects it.
    pointTo(centre(2));
    QTest::mouseMove(&window, QPoint(5, 5));
    EXPECT_EQ(std::pair(view->hoverKeyItem, keys()), std::pair(-1, Keys{}));
    EXPECT_EQ(last["ShowKeyboardToolTipWnd"].toMap(), hiddenTip);
}

TEST_F(KeyboardPointer, AClickSelectsOneKeyShiftAddsCtrlTogglesAndReleaseReportsTheLastClicked)
{
    click(16);
    EXPECT_EQ(keys(), Keys{16});
    EXPECT_EQ(last["keyboardKeyAction"], QVariant("w"));
    pointTo(centre(17));
    QTest::mouseClick(view, Qt::LeftButton, Qt::ShiftModifier, centre(17));
    EXPECT_EQ(keys(), (Keys{16, 17}));
    shiftKeyStatus = 1;  // Left Shift as the input capture sees it adds too
    click(18);
    shiftKeyStatus = 0;
    EXPECT_EQ(keys(), (Keys{16, 17, 18}));
    pointTo(centre(17));
    QTest::mouseClick(view, Qt::LeftButton, Qt::ControlModifier, centre(17));
    EXPECT_EQ(keys(), (Keys{16, 18}));
    // The key Ctrl took out is not painted as the last clicked key.
    view->setCheckItemColor(Qt::red);
    EXPECT_EQ(std::tuple(view->keyView(16)->keyColor, view->keyView(17)->keyColor, view->keyView(18)->keyColor),
              std::tuple(QColor(Qt::red), QColor(Qt::black), QColor(Qt::red)));
    QTest::mouseClick(view, Qt::LeftButton, Qt::ControlModifier, centre(17));
    EXPECT_EQ(keys(), (Keys{16, 17, 18}));
    click(16);

    pointTo(kLeftOfEscape);
    QTest::mousePress(view, Qt::LeftButton, {}, kLeftOfEscape);
    QTest::mouseMove(view, kLeftOfEscape + QPoint(6, 0));
    EXPECT_EQ(keys(), Keys{16});  // 6 units is still a click
    QTest::mouseMove(view, kLeftOfEscape + QPoint(7, 0));
    EXPECT_EQ(std::pair(view->frameSelect, keys()), std::pair(QRectF(5, 200, 7, 0), Keys{0}));  // a flat band
    QTest::mouseMove(view, QPoint(100, 85));
    // Row 1 to i2, row 2 to q, whatever was selected before.
    EXPECT_EQ(std::pair(keys(), view->frameSelectView->geometry()), std::pair(Keys{0, 1, 2, 14, 15}, QRect(5, 35, 95, 50)));
    QTest::mouseMove(view, QPoint(330, 160));
    if (const QString dir = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR"); !dir.isEmpty())
        window.grab(view->geometry().adjusted(-20, -20, 20, 20)).save(dir + "/kb-rubber-band.png");
    QTest::mouseMove(view, QPoint(100, 85));
    QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(100, 85));
    // The release reports the last clicked key, though the band dropped it,
    // and a colour then goes to the band's keys alone.
    EXPECT_EQ(std::pair(view->frameSelectView->geometry(), last["keyboardKeyAction"]), std::pair(QRect(), QVariant("w")));
    view->setCheckItemColor(Qt::yellow);
    EXPECT_EQ(std::pair(view->keyView(0)->keyColor, view->keyView(16)->keyColor), std::pair(QColor(Qt::yellow), QColor(Qt::red)));

    // A band drawn with Shift adds its keys to those selected.
    pointTo(QPoint(300, 230));
    QTest::mousePress(view, Qt::LeftButton, Qt::ShiftModifier, QPoint(300, 230));
    QTest::mouseMove(view, QPoint(360, 200));
    QTest::mouseRelease(view, Qt::LeftButton, Qt::ShiftModifier, QPoint(360, 200));
    EXPECT_EQ(keys(), (Keys{0, 1, 2, 14, 15, 56}));
}

TEST_F(KeyboardPointer, ARebuildUnderThePointerForgetsTheKeysOfTheLargerModel)
{
    build(keyboardModel68k());
    click(67);
    build(keyboardModel61k());
    EXPECT_EQ(std::pair(view->hoverKeyItem, view->selectKeyItem), std::pair(-1, -1));
    EXPECT_EQ(last["ShowKeyboardToolTipWnd"].toMap(), hiddenTip);
    forget();
    QTest::mouseClick(view, Qt::LeftButton, {}, centre(60));  // no move: no key under the pointer yet
    EXPECT_EQ(posts, 0);
}

TEST_F(KeyboardPointer, ASlideMovesBothPicturesOverHiddenKeysAndEndsOnce)
{
    const QPoint newFrom[] = {{0, -235}, {0, 235}, {-660, 0}, {660, 0}};  // above, below, left, right
    for (int type = 0; type < 4; ++type) {
        view->animationMoveKBView("kb_61k_black", "kb_61k", type);
        EXPECT_EQ(std::pair(view->kbNewView->geometry(), view->kbOldView->geometry()),
                  std::pair(QRect(newFrom[type], QSize(660, 235)), view->rect()));
    }
    EXPECT_FALSE(view->kbImageView->isVisible() || view->selectKeyView(0)->isVisible());
    ASSERT_TRUE(waitUntil([&] { return posts > 0; }));
    EXPECT_EQ(std::pair(posts, last.keys()), std::pair(1, QStringList{"KeyboardViewAnimationStop"}));
    EXPECT_TRUE(view->kbImageView->isVisible() && view->selectKeyView(0)->isVisible() && !view->kbNewView->isVisible());
}
