// The window itself: its size and frame, and the title row's buttons.
#include "View/MainController.h"
#include "View/MainWindowController.h"
#include "View/control/ButtonView.h"
#include "support/StoreTestSupport.h"
#include "support/WaitUntil.h"

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

namespace {
// A platform that cannot open the keyboard it found, and says so twice.
class RefusingManager : public HidManager {
public:
    void setDeviceMatching(std::vector<HidMatch>) override {}
    void registerDeviceMatchingCallback(DeviceCallback) override {}
    void registerDeviceRemovalCallback(DeviceCallback) override {}
    void registerProblemCallback(ProblemCallback callback) override { problem_ = std::move(callback); }
    bool open() override
    {
        problem_("No permission to open /dev/hidraw3. Install the udev rule.");
        problem_("No permission to open /dev/hidraw4. Install the udev rule.");
        return true;
    }

private:
    ProblemCallback problem_;
};
}  // namespace

TEST(Window, APermissionProblemIsShownOnceInPlainWords)
{
    testing_support::TempDataFolder data;
    MainController controller(MainController::Environment{[] { return std::make_unique<RefusingManager>(); }, {}});
    controller.viewDidLoad();
    controller.show();
    ASSERT_TRUE(waitUntil([&] { return controller.label_problem->isVisible(); }, 1000));
    QTest::qWait(50);  // the second problem would be shown by now
    EXPECT_EQ(controller.label_problem->text(), "No permission to open /dev/hidraw3. Install the udev rule.");
}
