// The Linux backend's bookkeeping, over a fake sysfs tree in a temp folder.
#include "HIDDevice/HIDDevice.h"
#include "HIDDevice/Platform/Linux/LinuxHidRegistry.h"
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
        for (const auto& [name, value] : {std::pair{"idVendor", "0c45"}, {"idProduct", "8075"}, {"busnum", "3"},
                                          {"devnum", "7"}, {"devpath", "1.4"}, {"product", "ORVANE M61"}})
            writeFile(usbDir / name, std::string(value) + "\n");
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

    static DeviceEvent hidraw(DeviceEvent::Action a, const fs::path& node) { return {a, "hidraw", {}, node}; }

    QTemporaryDir tmp;
    fs::path usbDir, typingNode, configNode;
};

}  // namespace

TEST_F(FakeSysfs, PropertiesLocationAndReportSetupsAreWhatTheDeviceModelExpects)
{
    const auto info = readUsbHidInterface(configNode);
    ASSERT_TRUE(info);
    EXPECT_EQ(std::tuple(info->identity, info->interfaceNumber), std::tuple("3-1.4:1.1", 1));
    EXPECT_EQ(usbfsNode("/dev", info->busNumber, info->deviceAddress), fs::path("/dev/bus/usb/003/007"));

    const auto device = [](const fs::path& node) {
        return HIDDevice(std::make_shared<LinuxHidDevice>(*readUsbHidInterface(node), "/dev", nullptr)); };
    const HIDDevice config = device(configNode);
    EXPECT_EQ(std::tuple(config.id, config.vendorId, config.productId, config.featureSize),
              std::tuple(0x03140000, 0x0C45, 0x8075, 64));
    EXPECT_EQ(config.name, "ORVANE M61");
    EXPECT_TRUE(isConfigurationInterface(config));

    // Only the line feed sysfs adds goes; a trailing blank makes another model.
    writeFile(usbDir / "product", "ORVANE M61 \n");
    EXPECT_EQ(device(configNode).name, "ORVANE M61 ");

    fs::remove(usbDir / "product");
    EXPECT_EQ(device(typingNode).name, "");
    EXPECT_FALSE(isConfigurationInterface(device(typingNode)));

    fs::remove(usbDir / "idVendor");  // not a USB device we can place
    EXPECT_FALSE(readUsbHidInterface(configNode));

    // Bus in the top byte of the location, then one nibble per port.
    EXPECT_EQ(locationIdFromUsbPath(1, "1"), 0x01100000u);
    EXPECT_EQ(locationIdFromUsbPath(2, "1.4.2"), 0x02142000u);
    EXPECT_EQ(setFeatureReportSetup(4, 1, 64), (ControlSetup{0x21, 0x09, 0x0304, 1, 64}));
    EXPECT_EQ(getFeatureReportSetup(4, 2, 64), (ControlSetup{0xA1, 0x01, 0x0304, 2, 64}));
}

TEST_F(FakeSysfs, AFailedReadLeavesTheCallersBufferAndLengthAndSaysWhy)
{
    // No node under this /dev: the read fails, and a repeat that follows
    // must still find all 64 bytes of the request.
    LinuxHidDevice handle(*readUsbHidInterface(configNode), fs::path(tmp.path().toStdString()) / "dev", nullptr);
    std::vector<uint8_t> buffer(64, 0x5A);
    std::size_t length = 64;
    const HidStatus status = handle.getFeatureReport(4, buffer, length);
    EXPECT_EQ(status, HidResult::NotResponding);
    EXPECT_NE(status.reason().find("hidraw3"), std::string::npos) << status.reason();
    EXPECT_EQ(std::tuple(length, buffer), std::tuple(64u, std::vector<uint8_t>(64, 0x5A)));
}

TEST_F(FakeSysfs, DriverDetachAndReattachIsNotAnUnplug)
{
    LinuxHidRegistry registry("/dev", nullptr);
    using A = DeviceEvent::Action;
    registry.setMatches({{0x0C45, 0x8006}});  // another model: not reported
    EXPECT_TRUE(registry.handle(hidraw(A::Add, configNode)).empty());
    registry.setMatches({{0x0C45, 0x8075}, {0x0C45, 0x8006}});

    const auto typing = registry.handle(hidraw(A::Add, typingNode));
    const auto arrived = registry.handle(hidraw(A::Add, configNode));
    ASSERT_TRUE(typing.size() == 1u && arrived.size() == 1u);
    const std::shared_ptr<LinuxHidDevice> handle = arrived[0].device;
    EXPECT_TRUE(registry.handle(hidraw(A::Add, configNode)).empty());  // seen twice: once only

    // usbhid leaves interface 1 and comes back with a new hidraw node; the
    // old node's removal is delivered late, after the new one's arrival.
    const fs::path intf = usbDir / "3-1.4:1.1";
    fs::remove_all(intf / "0003:0C45:8075.0002");
    EXPECT_TRUE(registry.handle({A::Other, "usb", "usb_interface", intf}).empty());  // unbind
    const fs::path rebound = bindHid(1, "0003", kConfigDescriptor, "hidraw5");
    EXPECT_TRUE(registry.handle(hidraw(A::Add, rebound)).empty());
    EXPECT_TRUE(registry.handle(hidraw(A::Remove, configNode)).empty());
    EXPECT_EQ(handle->hidrawName(), "hidraw5");

    // The interface itself going is the unplug: same handle, once, and the
    // device refuses further transfers.
    const auto removed = registry.handle({A::Remove, "usb", "usb_interface", intf});
    ASSERT_EQ(removed.size(), 1u);
    EXPECT_TRUE(removed[0].device == handle && !removed[0].arrived);
    const uint8_t frame[64] = {4};
    EXPECT_EQ(handle->setFeatureReport(4, frame), HidResult::NotResponding);

    const auto rest = registry.handle({A::Remove, "usb", "usb_device", usbDir});
    ASSERT_EQ(rest.size(), 1u);
    EXPECT_EQ(rest[0].device, typing[0].device);
}
