// The window itself: its size and frame, and the title row's buttons.
#include "Common/Globals.h"
#include "View/MainController.h"
#include "View/MainWindowController.h"
#include "View/control/ButtonView.h"
#include "View/control/FuncButton.h"
#include "View/control/KeyboardView.h"
#include "support/StoreTestSupport.h"
#include "support/WaitUntil.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QToolButton>
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

// Five messages: one panel below the page buttons and the picture, newest on
// top, each closed by its own button, in the language of the moment.
TEST(Window, MessagesShareOnePanelBelowThePageButtonsNewestFirstEachWithItsCloseButton)
{
    testing_support::TempDataFolder data;
    MainController controller(MainController::Environment{[] { return std::unique_ptr<HidManager>(); }, {}});
    controller.viewDidLoad();
    controller.show();
    for (int i = 1; i <= 4; ++i)
        controller.showProblem(QStringLiteral("Message %1, long enough to wrap onto a second line of the panel, which it "
                                              "would if the panel were as narrow as the page buttons are.").arg(i),
                               QString::number(i));
    controller.showProblem([] { return G_Language == kLanguageChinese ? QStringLiteral("中文") : QStringLiteral("English"); }, "5");
    controller.showProblem("Message 1 again", "1");
    MessagePanel* panel = controller.label_problem;
    ASSERT_EQ(panel->count(), 5);
    EXPECT_TRUE(panel->text().startsWith("English\n\nMessage 4")) << panel->text().toStdString();
    const QWidget* covered[] = {controller.func_keyset, controller.func_light, controller.func_set, controller.orvane_keyboardctrl};
    for (const QWidget* widget : covered)
        EXPECT_FALSE(panel->geometry().intersects(widget->geometry())) << widget->objectName().toStdString();
    controller.switchLanguage(kLanguageChinese);
    EXPECT_TRUE(panel->text().startsWith("中文")) << panel->text().toStdString();
    controller.switchLanguage(kLanguageEnglish);

    for (int left = 4; left >= 0; --left) {
        const auto closes = panel->findChildren<QToolButton*>("message_close");
        const auto shown = std::find_if(closes.begin(), closes.end(), [](QToolButton* b) { return b->isVisibleTo(b->window()); });
        ASSERT_NE(shown, closes.end());
        (*shown)->click();
        QApplication::processEvents();
        EXPECT_EQ(panel->count(), left);
    }
    EXPECT_FALSE(panel->isVisible());
}
