// The window itself: its size and frame, and the title row's buttons.
#include "View/MainController.h"
#include "View/MainWindowController.h"
#include "View/control/ButtonView.h"
#include "support/StoreTestSupport.h"

#include <QApplication>
#include <QTest>
#include <gtest/gtest.h>

TEST(Window, IsAFramelessWindowOf1160By720WhoseCloseButtonClosesIt)
{
    testing_support::TempDataFolder data;
    auto* controller = new MainController(MainController::Environment{[] { return std::unique_ptr<HidManager>(); }, {}});
    MainWindowController windowController(controller);  // owns the controller through the window
    controller->viewDidLoad();
    windowController.window()->show();
    QApplication::processEvents();

    EXPECT_EQ(windowController.window()->size(), QSize(1160, 720));
    EXPECT_TRUE(windowController.window()->windowFlags() & Qt::FramelessWindowHint);
    EXPECT_EQ(controller->imgbtn_usb->cur_normal_name, "sys_btn_usb_n");

    QTest::mouseMove(controller->imgbtn_close);
    QApplication::processEvents();
    QTest::mouseClick(controller->imgbtn_close, Qt::LeftButton);
    EXPECT_FALSE(windowController.window()->isVisible());
}
