// The Linux backend's bookkeeping, over a fake sysfs tree in a temp folder.
#include "HIDDevice/HIDDevice.h"
#include "HIDDevice/Platform/Linux/LinuxHidRegistry.h"
#include "HIDDevice/Platform/Linux/PermissionNotice.h"
#include "HIDDevice/Platform/Linux/UsbfsTransport.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <fstream>

namespace fs = std::filesystem;

namespace {

void writeFile(const fs::path& file, const std::string& text)
{
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

// Feature report 4 with 63 data bytes: the configuration interface.
const std::string kConfigDescriptor = {'\x06', '\x00', '\xFF', '\x09', '\x01', '\xA1', '\x01', '\x85', '\x04',
                                       '\x75', '\x08', '\x95', '\x3F', '\xB1', '\x02', '\xC0'};
// Eight bytes of input, no feature report: the typing interface.
const std::string kTypingDescriptor = {'\x05', '\x01', '\x09', '\x06', '\xA1', '\x01', '\x75', '\x08',
                                       '\x95', '\x08', '\x81', '\x02', '\xC0'};

// A keyboard on bus 3, hub port 1, port 4, with a typing and a configuration
// interface, as the kernel lays it out under /sys/devices.
class FakeSysfs : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(tmp.isValid());
        usbDir = fs::path(tmp.path().toStdString()) / "devices/usb3/3-1.4";
        writeFile(usbDir / "idVendor", "0c45\n");
        writeFile(usbDir / "idProduct", "8075\n");
        writeFile(usbDir / "busnum", "3\n");
        writeFile(usbDir / "devnum", "7\n");
        writeFile(usbDir / "devpath", "1.4\n");
        writeFile(usbDir / "product", "ORVANE M61\n");
        typingNode = bindHid(0, "0001", kTypingDescriptor, "hidraw2");
        configNode = bindHid(1, "0002", kConfigDescriptor, "hidraw3");
    }

    // usbhid bound to interface `n`: a hid device with a hidraw node below it.
    fs::path bindHid(int n, const std::string& seq, const std::string& descriptor, const std::string& node)
    {
        const fs::path intf = usbDir / ("3-1.4:1." + std::to_string(n));
        writeFile(intf / "bInterfaceNumber", "0" + std::to_string(n) + "\n");
        const fs::path hid = intf / ("0003:0C45:8075." + seq);
        writeFile(hid / "report_descriptor", descriptor);
        fs::create_directories(hid / "hidraw" / node);
        return hid / "hidraw" / node;
    }

    static DeviceEvent event(DeviceEvent::Action action, const std::string& subsystem, const fs::path& path,
                             const std::string& devtype = {})
    {
        return {action, subsystem, devtype, path};
    }

    QTemporaryDir tmp;
    fs::path usbDir, typingNode, configNode;
};

}  // namespace

TEST_F(FakeSysfs, PropertiesAreReadAsTheDeviceModelExpectsThem)
{
    const auto info = readUsbHidInterface(configNode);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->identity, "3-1.4:1.1");
    EXPECT_EQ(info->interfaceNumber, 1);
    EXPECT_EQ(usbfsNode("/dev", info->busNumber, info->deviceAddress), fs::path("/dev/bus/usb/003/007"));

    const HIDDevice config(std::make_shared<LinuxHidDevice>(*info, "/dev", nullptr));
    EXPECT_EQ(config.id, 0x03140000);
    EXPECT_EQ(config.vendorId, 0x0C45);
    EXPECT_EQ(config.productId, 0x8075);
    EXPECT_EQ(config.featureSize, 64);
    EXPECT_EQ(config.reportSize, 0);
    EXPECT_EQ(config.name, "ORVANE M61");
    EXPECT_TRUE(isConfigurationInterface(config));

    // Only the line feed sysfs adds goes; a trailing blank makes another model.
    writeFile(usbDir / "product", "ORVANE M61 \n");
    EXPECT_EQ(HIDDevice(std::make_shared<LinuxHidDevice>(*readUsbHidInterface(configNode), "/dev", nullptr)).name,
              "ORVANE M61 ");

    fs::remove(usbDir / "product");
    const HIDDevice typing(std::make_shared<LinuxHidDevice>(*readUsbHidInterface(typingNode), "/dev", nullptr));
    EXPECT_EQ(typing.reportSize, 8);
    EXPECT_EQ(typing.featureSize, 0);
    EXPECT_EQ(typing.name, "");
    EXPECT_FALSE(isConfigurationInterface(typing));

    fs::remove(usbDir / "idVendor");  // not a USB device we can place
    EXPECT_FALSE(readUsbHidInterface(configNode));
}

TEST_F(FakeSysfs, AFailedReadLeavesTheCallersBufferAndLengthAndSaysWhy)
{
    // No node under this /dev: the read fails, and a repeat that follows
    // must still find all 64 bytes of the request.
    LinuxHidDevice handle(*readUsbHidInterface(configNode), fs::path(tmp.path().toStdString()) / "dev", nullptr);
    std::vector<uint8_t> buffer(64, 0x5A);
    std::size_t length = buffer.size();
    const HidStatus status = handle.getFeatureReport(4, buffer, length);
    EXPECT_EQ(status, HidResult::NotResponding);
    EXPECT_NE(status.reason().find("hidraw3"), std::string::npos) << status.reason();
    EXPECT_EQ(length, 64u);
    EXPECT_EQ(buffer, std::vector<uint8_t>(64, 0x5A));
}

TEST(LocationId, BusInTopByteThenOneNibblePerPort)
{
    EXPECT_EQ(locationIdFromUsbPath(1, "1"), 0x01100000u);
    EXPECT_EQ(locationIdFromUsbPath(2, "1.4.2"), 0x02142000u);
    EXPECT_NE(locationIdFromUsbPath(3, "1.4"), locationIdFromUsbPath(3, "1.3"));
}

TEST_F(FakeSysfs, DriverDetachAndReattachIsNotAnUnplug)
{
    LinuxHidRegistry registry("/dev", nullptr);
    registry.setMatches({{0x0C45, 0x8075}, {0x0C45, 0x8006}});
    using A = DeviceEvent::Action;

    const auto typing = registry.handle(event(A::Add, "hidraw", typingNode));
    const auto arrived = registry.handle(event(A::Add, "hidraw", configNode));
    ASSERT_EQ(typing.size(), 1u);
    ASSERT_EQ(arrived.size(), 1u);
    const std::shared_ptr<LinuxHidDevice> handle = arrived[0].device;
    EXPECT_TRUE(registry.handle(event(A::Add, "hidraw", configNode)).empty());  // seen twice: once only

    // usbhid leaves interface 1 and comes back with a new hidraw node; the
    // old node's removal is delivered late, after the new one's arrival.
    const fs::path intf = usbDir / "3-1.4:1.1";
    fs::remove_all(intf / "0003:0C45:8075.0002");
    EXPECT_EQ(findHidrawName(intf), std::nullopt);
    EXPECT_TRUE(registry.handle(event(A::Other, "usb", intf, "usb_interface")).empty());  // unbind
    const fs::path rebound = bindHid(1, "0003", kConfigDescriptor, "hidraw5");
    EXPECT_EQ(findHidrawName(intf), "hidraw5");
    EXPECT_TRUE(registry.handle(event(A::Add, "hidraw", rebound)).empty());
    EXPECT_TRUE(registry.handle(event(A::Remove, "hidraw", configNode)).empty());
    EXPECT_EQ(handle->hidrawName(), "hidraw5");

    // The interface itself going is the unplug: same handle, once, and the
    // device refuses further transfers.
    const auto removed = registry.handle(event(A::Remove, "usb", intf, "usb_interface"));
    ASSERT_EQ(removed.size(), 1u);
    EXPECT_EQ(removed[0].device, handle);
    EXPECT_FALSE(removed[0].arrived);
    const uint8_t frame[64] = {4};
    EXPECT_EQ(handle->setFeatureReport(4, frame), HidResult::NotResponding);

    const auto rest = registry.handle(event(A::Remove, "usb", usbDir, "usb_device"));
    ASSERT_EQ(rest.size(), 1u);
    EXPECT_EQ(rest[0].device, typing[0].device);
}

TEST_F(FakeSysfs, OtherDevicesAreNotReported)
{
    LinuxHidRegistry registry("/dev", nullptr);
    registry.setMatches({{0x0C45, 0x8006}});
    EXPECT_TRUE(registry.handle(event(DeviceEvent::Action::Add, "hidraw", configNode)).empty());
}

TEST(FeatureReportSetup, SetAndGetAddressFeatureReportOnTheInterface)
{
    EXPECT_EQ(setFeatureReportSetup(4, 1, 64), (ControlSetup{0x21, 0x09, 0x0304, 1, 64}));
    EXPECT_EQ(getFeatureReportSetup(4, 2, 64), (ControlSetup{0xA1, 0x01, 0x0304, 2, 64}));
}

TEST(PermissionNotice, NamesTheFixAndIsPostedOnce)
{
    PermissionNotice notice;
    QStringList posted;
    notice.setSink([&](const QString& m) { posted << m; });
    EXPECT_TRUE(notice.report("ORVANE M61", "/dev/hidraw3"));
    EXPECT_FALSE(notice.report("ORVANE M61", "/dev/bus/usb/003/007"));
    ASSERT_EQ(posted.size(), 1);
    EXPECT_TRUE(posted[0].contains("ORVANE M61 (/dev/hidraw3)"));
    EXPECT_TRUE(posted[0].contains("sudo cp packaging/70-orvane.rules /etc/udev/rules.d/ && "
                                   "sudo udevadm control --reload && sudo udevadm trigger"));
    EXPECT_TRUE(posted[0].contains("unplug"));
}
