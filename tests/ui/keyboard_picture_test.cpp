// The keyboard picture in the window: which picture and key colours each
// model and case colour shows, where keys are hit, and what the pictures
// leave open for the key colours.
#include "SQLite/LocalSQLite.h"
#include "View/MainController.h"
#include "View/control/CaseColorButton.h"
#include "View/control/FlippedRect.h"
#include "View/control/KeyView.h"
#include "View/control/KeyboardView.h"
#include "View/control/NamedImage.h"
#include "View/control/NamedImageView.h"
#include "support/StoreTestSupport.h"
#include "support/WaitUntil.h"

#include <QDir>
#include <QImageWriter>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class KeyboardPicture : public ::testing::Test {
protected:
    void start()
    {
        controller = std::make_unique<MainController>(
            MainController::Environment{[] { return std::unique_ptr<HidManager>(); }, {}});
        controller->viewDidLoad();
        controller->show();
        QApplication::processEvents();
    }

    KeyboardView& view() { return *controller->orvane_keyboardctrl; }
    QString picture() { return view().kbImageView->imageName(); }
    QString stored(const QString& key) { return controller->localDB->getLocalData(kLocalOwner, key); }
    QColor keyColour(int index) { return view().keyView(index)->shownColor(); }

    // Saves the picture and its colour selector as the window shows them,
    // when ORVANE_SCREENSHOT_DIR names a folder.
    void screenshot(const QString& name)
    {
        const QString dir = qEnvironmentVariable("ORVANE_SCREENSHOT_DIR");
        if (dir.isEmpty())
            return;
        waitUntil([&] { return !view().isSliding(); });
        QApplication::processEvents();
        QImageWriter writer(QDir(dir).filePath(name + ".png"));
        writer.setQuality(0);  // smallest file
        writer.write(controller->grab(QRect(195, 105, 700, 350)).toImage().convertToFormat(QImage::Format_RGB888));
    }

    testing_support::TempDataFolder data;
    std::unique_ptr<MainController> controller;
};

}  // namespace

TEST_F(KeyboardPicture, AFirstStartShowsTheWhite61KeyThenEachModelItsCaseColoursAndKeepsTheChoice)
{
    start();
    EXPECT_EQ(stored("kb_61k"), "1");
    EXPECT_EQ(picture(), "kb_61k");
    EXPECT_EQ(view().geometry(), QRect(215, 720 - 280 - 235, 660, 235));
    ASSERT_EQ(view().kbKeyArrayHover.size(), 61u);
    EXPECT_EQ(keyColour(0), QColor(Qt::black));
    EXPECT_FALSE(controller->kb_bluecolor_btn->isVisible() || controller->kb_purplecolor_btn->isVisible());
    using C = MainController;
    struct Step { int deviceType; CaseColorButton* C::*button; QString picture, key, digit; };
    const std::vector<Step> steps{{1, &C::kb_whitecolor_btn, "kb_61k", "kb_61k", "1"},
                                  {1, &C::kb_blackcolor_btn, "kb_61k_black", "kb_61k", "2"},
                                  {2, &C::kb_whitecolor_btn, "kb_68k", "kb_68k", "1"},
                                  {2, &C::kb_blackcolor_btn, "kb_68k_black", "kb_68k", "2"},
                                  {0, &C::kb_whitecolor_btn, "kb_61k_cnc", "kb_61k_cnc", "1"},
                                  {0, &C::kb_blackcolor_btn, "kb_61k_cnc_black", "kb_61k_cnc", "2"},
                                  {0, &C::kb_bluecolor_btn, "kb_61k_cnc_blue", "kb_61k_cnc", "3"},
                                  {0, &C::kb_purplecolor_btn, "kb_61k_cnc_purple", "kb_61k_cnc", "4"}};
    for (const Step& step : steps) {
        SCOPED_TRACE(step.picture.toStdString());
        controller->setCurrentDevice(step.deviceType);
        CaseColorButton* button = (*controller).*step.button;
        ASSERT_TRUE(button->isVisible());
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_EQ(picture(), step.picture);
        EXPECT_EQ(stored(step.key), step.digit);
        EXPECT_EQ(keyColour(5), step.digit == "1" ? QColor(Qt::black) : QColor(Qt::white));
        EXPECT_TRUE(button->looksSelected());
        // Saved as docs/screenshots/kb-61k-white.png and the like.
        screenshot(QString(step.picture).replace('_', '-') + (step.digit == "1" ? "-white" : ""));
    }
    // Blue and purple are the CNC model's only; each model keeps its colour.
    controller->setCurrentDevice(2);
    EXPECT_FALSE(controller->kb_bluecolor_btn->isVisible());
    EXPECT_EQ(picture(), "kb_68k_black");
    EXPECT_EQ(view().kbKeyArrayHover.size(), 68u);
    controller->setCurrentDevice(0);
    EXPECT_EQ(picture(), "kb_61k_cnc_purple");
    EXPECT_EQ(controller->keyboardColorType, 4);
    EXPECT_TRUE(controller->kb_purplecolor_btn->looksSelected());
    EXPECT_FALSE(controller->kb_whitecolor_btn->looksSelected());
}

TEST_F(KeyboardPicture, AStoredColourTheModelLacksShowsWhite)
{
    LocalSQLite(QString::fromLatin1(kLocalDatabaseFile)).updateLocalData(kLocalOwner, "kb_61k", "3");
    start();
    EXPECT_EQ(picture(), "kb_61k");
    EXPECT_EQ(stored("kb_61k"), "3");
    EXPECT_TRUE(controller->kb_whitecolor_btn->looksSelected());
}

TEST_F(KeyboardPicture, HitTestFindsTheKeyUnderAPointAndNothingInTheGaps)
{
    start();
    controller->setCurrentDevice(2);  // 68 keys, bounds scaled up to the view
    const QSizeF bounds(643, 229), shown(660, 235);
    auto at = [&](qreal x, qreal y) { return flippedRect(bounds, shown, QRectF(x, y, 0, 0)).topLeft(); };
    EXPECT_EQ(view().hitTest(at(37.5, 198)), 0);            // escape: 19..56, 180..216
    EXPECT_EQ(view().hitTest(at(600, 49)), 67);             // rightArrow, the last key
    EXPECT_FALSE(view().hitTest(at(56.5, 198)));            // between escape and i1
    EXPECT_FALSE(view().hitTest(at(37.5, 179)));            // between rows 1 and 2
    EXPECT_FALSE(view().hitTest(at(5, 5)));
    for (int i = 0; i < 68; ++i)
        EXPECT_EQ(view().hitTest(view().keyGeometry(i).center()), i);
}

TEST_F(KeyboardPicture, PicturesLeaveEachKeyAWindowAndAreSharpAtDoubleScale)
{
    const QSizeF bounds(660, 235);
    const auto keys = layoutKeys(Orvane61kLayout(), Orvane61K_Y_Pos(), Orvane61K_Size_Conf(), {});
    for (qreal dpr : {1.0, 2.0}) {
        const QImage white = NamedImage::pixmap("kb_61k", QSize(660, 235), dpr).toImage();
        const QImage black = NamedImage::pixmap("kb_61k_black", QSize(660, 235), dpr).toImage();
        ASSERT_EQ(white.size(), QSize(660, 235) * dpr);
        for (const KeyData& key : keys) {
            const QRect r = flippedRect(bounds, bounds, key.rect).toAlignedRect();
            int open = 0;
            for (int y = r.top(); y <= r.bottom(); ++y)
                for (int x = r.left(); x <= r.right(); ++x)
                    open += qAlpha(white.pixel(QPoint(x, y) * dpr)) < 128;
            EXPECT_GT(open, 20) << key.keyname.toStdString();
            const QPoint capCentre = r.center() * dpr + QPoint(0, int(r.height() * 0.4 * dpr));
            EXPECT_EQ(qAlpha(white.pixel(capCentre)), 255) << key.keyname.toStdString();
        }
        // The case between two rows is opaque and takes the case colour.
        const QPoint rim = QPoint(30, 235 - 178 - 1) * dpr;
        EXPECT_EQ(qAlpha(white.pixel(rim)), 255);
        EXPECT_GT(qGray(white.pixel(rim)), 180);
        EXPECT_LT(qGray(black.pixel(rim)), 80);
    }
}
