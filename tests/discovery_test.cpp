// Finding the keyboard: which interfaces are announced, and how a product
// string is read.
#include "Common/DeviceModel.h"
#include "Common/NotificationCenter.h"
#include "HIDDevice/HIDDeviceMonitor.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "Simulator/VirtualKeyboard.h"
#include "support/RecordingHidDevice.h"
#include "support/WaitUntil.h"

#include <QCoreApplication>
#include <QThread>
#include <gtest/gtest.h>

#include <mutex>

using namespace testing_support;

namespace {

// A device with one interface of our ids and the given feature size.
class OneInterfaceDevice : public VirtualUsbDevice {
public:
    explicit OneInterfaceDevice(int featureSize, int vendor = 3141, int product = 32774)
    {
        iface_->properties = {{"VendorID", vendor}, {"ProductID", product}, {"MaxFeatureReportSize", featureSize},
                              {"Product", QStringLiteral("ORVANE M61")}, {"LocationID", 7}};
    }
    std::vector<std::shared_ptr<HidDeviceHandle>> interfaces() const override { return {iface_}; }
    void setPlugged(bool) override {}

private:
    std::shared_ptr<RecordingHidDevice> iface_ = std::make_shared<RecordingHidDevice>();
};

// Collects the monitor's announcements, which arrive on the monitor thread.
class Announcements {
public:
    Announcements()
    {
        auto& center = NotificationCenter::defaultCenter();
        center.addObserver(HIDNotification::Connected, [this](const QVariant& o) { add("connected", o); }, this);
        center.addObserver(HIDNotification::Disconnected, [this](const QVariant& o) { add("disconnected", o); }, this);
    }
    ~Announcements() { NotificationCenter::defaultCenter().removeObservers(this); }

    std::vector<std::pair<std::string, HIDDevice>> waitFor(std::size_t count, int timeoutMs = 5000)
    {
        waitUntil([&] { std::lock_guard lock(mutex_); return seen_.size() >= count; }, timeoutMs);
        QThread::msleep(50);  // anything more would arrive now
        std::lock_guard lock(mutex_);
        return seen_;
    }

private:
    void add(const char* what, const QVariant& object)
    {
        HIDDevice device;
        ASSERT_TRUE(deviceFromNotificationObject(object, device)) << "the object is {\"device\": HIDDevice}";
        std::lock_guard lock(mutex_);
        seen_.emplace_back(what, device);
    }
    std::mutex mutex_;
    std::vector<std::pair<std::string, HIDDevice>> seen_;
};

// A monitor on its thread watching a bus that may hold a device before it starts.
struct MonitorRig {
    explicit MonitorRig(std::shared_ptr<VirtualUsbDevice> early = nullptr)
        : bus([&] { auto b = std::make_shared<VirtualBus>(); if (early) b->plug(early); return b; }())
    {
        thread.start();
    }
    std::shared_ptr<VirtualBus> bus;
    HIDDeviceMonitor monitor{{{3141, 32885}, {3141, 32774}}, 64, [bus = bus] { return std::make_unique<VirtualHidManager>(bus); }};
    HIDMonitorThread thread{monitor};
    ~MonitorRig() { thread.quit(), thread.wait(); }
};

}  // namespace

// The K68 is on the bus before the monitor starts and is announced like a new one; of
// the devices plugged after it only the M61's configuration interface comes and goes.
TEST(Discovery, OnlyA64ByteConfigurationInterfaceOfOurIdsQualifiesAndComesAndGoes)
{
    Announcements seen;
    MonitorRig rig(std::make_shared<VirtualKeyboard>(VirtualKeyboard::Model::K68));
    ASSERT_EQ(seen.waitFor(1).size(), 1u);
    rig.bus->plug(std::make_shared<OneInterfaceDevice>(65));
    rig.bus->plug(std::make_shared<OneInterfaceDevice>(0));
    rig.bus->plug(std::make_shared<OneInterfaceDevice>(64, 3141, 12345));  // let through by nothing
    auto keyboard = std::make_shared<VirtualKeyboard>(VirtualKeyboard::Model::M61);
    rig.bus->plug(keyboard);
    ASSERT_EQ(seen.waitFor(2).size(), 2u);
    rig.bus->unplug(keyboard);
    const auto all = seen.waitFor(3);
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[0].second.name, QStringLiteral("ORVANE K68"));
    EXPECT_EQ(std::tuple(all[1].first, all[1].second.featureSize, all[1].second.name, all[1].second.device),
              std::tuple(std::string("connected"), 64, QStringLiteral("ORVANE M61"),
                         keyboard->interfaceHandle(VirtualKeyboard::Interface::Configuration)));
    EXPECT_EQ(all[2].first, "disconnected");
    EXPECT_TRUE(all[2].second.isSameDevice(all[1].second)) << "properties are read from the departing device";

    // Even a device the matching lets through is rejected by the id test.
    HIDDeviceMonitor lenient{{{1, 2}}, 64, [] { return std::unique_ptr<HidManager>(); }};
    auto foreign = std::make_shared<OneInterfaceDevice>(64, 1, 2);
    EXPECT_TRUE(lenient.rawDeviceAdded(0, nullptr, foreign->interfaces()[0]));
    auto ours = std::make_shared<OneInterfaceDevice>(64);
    EXPECT_FALSE(lenient.rawDeviceAdded(0, nullptr, ours->interfaces()[0]));
    EXPECT_EQ(seen.waitFor(4).size(), 4u);
}

TEST(DeviceModelRules, OnlyTheTwo61KeyNamesSpeltExactlyAreThe61KeyModel)
{
    EXPECT_EQ(DeviceModel::deviceTypeForProduct("ORVANE M61"), 1);
    EXPECT_EQ(DeviceModel::deviceTypeForProduct("ORVANE W61"), 1);
    for (const char* other : {"ORVANE M61 ", "orvane m61", "ORVANE K68", "", "ORVANE CNC61"})
        EXPECT_EQ(DeviceModel::deviceTypeForProduct(other), 2) << other;
    EXPECT_EQ(std::tuple(DeviceModel::keyboardTypeForDeviceType(0), DeviceModel::keyboardTypeForDeviceType(1),
                         DeviceModel::keyboardTypeForDeviceType(2)), std::tuple(2, 1, 0));
    for (int deviceType : {0, 1, 2})
        EXPECT_EQ(DeviceModel::deviceTypeForKeyboardType(DeviceModel::keyboardTypeForDeviceType(deviceType)), deviceType);
}
