// The session as the user sees it: plug, poll, unplug, replug, another model.
#include "support/CapturedLines.h"
#include "Common/NotificationCenter.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "Protocol/UploadSequences.h"
#include "SQLite/DeviceSQLite.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/MainController.h"
#include "View/control/ButtonView.h"
#include "support/HexBytes.h"
#include "support/StoreTestSupport.h"
#include "support/WaitUntil.h"

#include <QApplication>
#include <QFile>
#include <QTimer>
#include <gtest/gtest.h>

using namespace testing_support;
using Model = VirtualKeyboard::Model;

namespace {

class Session : public ::testing::Test {
protected:
    void SetUp() override
    {
        MainController::Environment env;
        env.hidManagerFactory = [bus = bus] { return std::make_unique<VirtualHidManager>(bus); };
        controller = std::make_unique<MainController>(env);
        controller->viewDidLoad();
        controller->show();
    }

    std::shared_ptr<VirtualKeyboard> plug(std::shared_ptr<VirtualKeyboard> keyboard)
    {
        bus->plug(keyboard);
        EXPECT_TRUE(waitUntil([&] { return controller->currentTransport() && !controller->hidcomm_busy(); }));
        return keyboard;
    }
    std::shared_ptr<VirtualKeyboard> plug(Model model) { return plug(std::make_shared<VirtualKeyboard>(model)); }

    void unplug(const std::shared_ptr<VirtualKeyboard>& keyboard)
    {
        bus->unplug(keyboard);
        EXPECT_TRUE(waitUntil([&] { return !controller->connectedDevice() && icon() == "sys_btn_usb_n"; }));
    }

    void pollAndSettle()
    {
        controller->pollKeyboardProfile();
        ASSERT_TRUE(controller->transport().waitForIdle(std::chrono::seconds(5)));
    }

    QString icon() const { return controller->imgbtn_usb->cur_normal_name; }
    QString storedProfile() const { return controller->deviceDB->getConfigData(1, "currentProfile"); }

    TempDataFolder data;
    std::shared_ptr<VirtualBus> bus = std::make_shared<VirtualBus>();
    std::unique_ptr<MainController> controller;
};

}  // namespace

TEST_F(Session, PluggingInOpensTheModelsDatabaseAReplugMakesANewTransportAndTakesTheStoredProfile)
{
    EXPECT_EQ(icon(), "sys_btn_usb_n");
    auto keyboard = plug(Model::M61);
    EXPECT_EQ(icon(), "sys_btn_usb_h");
    EXPECT_TRUE(controller->deviceState);
    EXPECT_EQ(controller->deviceDBfile, "orvane_61k_device.sqlite3");
    EXPECT_EQ(controller->currentProfile, 1);
    const auto firstTransport = controller->currentTransport();
    unplug(keyboard);
    EXPECT_FALSE(controller->deviceState);
    ASSERT_NE(controller->deviceDB, nullptr) << "the database stays open until the next connection";
    controller->deviceDB->updateConfigData(1, "currentProfile", "4");
    plug(keyboard);
    const auto transport = controller->currentTransport();
    EXPECT_NE(transport, firstTransport);
    EXPECT_EQ(icon(), "sys_btn_usb_h");
    EXPECT_EQ(controller->currentProfile, 4) << "the stored profile wins at connection";

    // A repeated arrival of the same keyboard changes nothing.
    ASSERT_TRUE(controller->connectedDevice());
    NotificationCenter::defaultCenter().post(HIDNotification::Connected,
                                             makeDeviceNotificationObject(*controller->connectedDevice()));
    waitUntil([] { return false; }, 100);
    EXPECT_EQ(controller->currentTransport(), transport);
}

TEST_F(Session, ThePollFollowsTheKeyboardButNeverGuesses)
{
    auto keyboard = plug(Model::M61);
    for (int profile : {2, 5}) {  // profile 5 is reached only through the keyboard
        keyboard->setActiveProfile(profile);
        pollAndSettle();
        EXPECT_EQ(controller->currentProfile, profile);
        EXPECT_EQ(storedProfile(), QString::number(profile));
    }
    keyboard->setPlugged(false);  // transfers fail; no removal was announced
    pollAndSettle();
    EXPECT_EQ(controller->currentProfile, 5);
    EXPECT_EQ(storedProfile(), "5");
}

TEST_F(Session, APollOnTheActiveProfileCostsTwoReportsAndStoresNothing)
{
    auto keyboard = plug(Model::M61);
    const std::pair was(keyboard->setCount(), keyboard->getCount());
    controller->deviceDB->updateConfigData(1, "currentProfile", "marker");
    pollAndSettle();
    EXPECT_EQ(std::pair(keyboard->setCount() - was.first, keyboard->getCount() - was.second), std::pair(2, 2));
    EXPECT_EQ(storedProfile(), "marker");
    const auto trace = keyboard->recentTrace();
    ASSERT_GE(trace.size(), 4u);
    const auto& closing = trace[trace.size() - 2].data;
    EXPECT_EQ(hexFromBytes({closing.begin(), closing.end()}), hexFromBytes(report({0x04, 0x02})));
}

TEST_F(Session, ATwoSecondUploadLeavesTheWindowFreeAndPollTicksMeanwhileAreSkipped)
{
    auto keyboard = plug(Model::M61);
    keyboard->setActiveProfile(4);
    const int statusPollsBefore = keyboard->firmware().commandCount(Protocol::Command::ReadStatus);
    // Fourteen key table uploads at the keyboard's pace: over two seconds.
    UploadSequences::NineReports table{};
    table[574] = 0xAA, table[575] = 0x55;
    captureLines();
    for (int i = 0; i < 14; ++i)
        controller->submitSequence(UploadSequences::keyTable(1, table));
    int ticksWhileBusy = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        if (controller->hidcomm_busy() && ++ticksWhileBusy)
            controller->pollKeyboardProfile();
    });
    ticker.start(50);
    const bool settled = waitUntil([&] { return !controller->hidcomm_busy(); }, 10000);
    capturedLines();
    ASSERT_TRUE(settled);
    EXPECT_GT(ticksWhileBusy, 10) << "the event loop kept turning during the upload";
    EXPECT_EQ(keyboard->firmware().commandCount(Protocol::Command::ReadStatus), statusPollsBefore)
        << "no status poll went out while the upload ran";
    EXPECT_EQ(controller->currentProfile, 1);
    EXPECT_TRUE(keyboard->protocolErrors().isEmpty()) << keyboard->protocolErrors().join("\n").toStdString();
}

TEST_F(Session, ASecondKeyboardWaitsUntilTheOneInSessionIsUnplugged)
{
    auto first = plug(Model::M61);
    const auto transport = controller->currentTransport();
    auto second = std::make_shared<VirtualKeyboard>(Model::K68);
    bus->plug(second);
    waitUntil([] { return false; }, 200);
    EXPECT_EQ(controller->currentTransport(), transport);
    EXPECT_EQ(controller->deviceName(), "ORVANE M61");
    EXPECT_EQ(controller->announcement()->deviceType, 1);
    EXPECT_EQ(second->setCount(), 0);

    bus->unplug(first);
    ASSERT_TRUE(waitUntil([&] {
        const auto now = controller->currentTransport();
        return now && now != transport && !controller->hidcomm_busy();
    }));
    EXPECT_TRUE(transport->isReleased()) << "unplugging the one in session ends its session";
    EXPECT_EQ(controller->deviceName(), "ORVANE K68");
    EXPECT_EQ(controller->keyboardType, 0);
    EXPECT_EQ(controller->deviceDBfile, "orvane_68k_device.sqlite3");
    EXPECT_TRUE(QFile::exists(QString::fromStdString(data.databasePath("orvane_68k_device.sqlite3"))));
}

TEST_F(Session, AProfilePickedWhileAPollIsOutIsKeptAfterTheKeyboardsReply)
{
    auto keyboard = plug(Model::M61);
    keyboard->setActiveProfile(3);
    // The poll's reply reaches this thread as a queued call, held until the
    // event loop turns: the pick below is made while that reply is owed.
    controller->pollKeyboardProfile();
    controller->pickProfile(2);
    EXPECT_EQ(controller->currentProfile, 1) << "the pick waits for the poll's reply";
    ASSERT_TRUE(waitUntil([&] { return controller->currentProfile == 2 && !controller->hidcomm_busy(); }));
    ASSERT_TRUE(controller->transport().waitForIdle(std::chrono::seconds(5)));
    EXPECT_EQ(controller->currentProfile, 2);
    EXPECT_EQ(storedProfile(), "2");
    // On the wire, as one thread would have sent it: the poll, the keyboard's
    // profile 3 taken up (its light effect and locks), the poll's closing 0x02, and
    // only then the user's profile 2.
    std::vector<std::string> frames;
    for (const auto& record : keyboard->recentTrace())
        if (record.op == TraceRecord::Op::Set || record.data[1] == 0x30)
            frames.push_back(hexFromBytes({record.data.begin(), record.data.begin() + 3}));
    const auto poll = std::find(frames.rbegin(), frames.rend(), "043000");
    ASSERT_NE(poll, frames.rend());
    const std::vector<std::string> tail(poll.base() - 1, frames.end());
    const std::vector<std::string> expected{
        "043000", "041800", "041303", "010000", "040203", "04f003", "041800", "041703", "000000", "040200",
        "040200", "041800", "041302", "010000", "040202", "04f002", "041800", "041702", "000000", "040200"};
    EXPECT_EQ(tail, expected);
}
