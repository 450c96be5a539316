// The virtual keyboard as the app meets it: three HID interfaces on the
// virtual bus, feature reports through HidDeviceHandle, unplugging, the trace.

#include "HIDDevice/HIDDevice.h"
#include "Simulator/VirtualKeyboard.h"
#include "support/HexBytes.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>


using namespace testing_support;
using namespace std::chrono_literals;
using Iface = VirtualKeyboard::Interface;

namespace {

std::vector<uint8_t> reply(HidDeviceHandle& h, HidStatus* result = nullptr)
{
    std::vector<uint8_t> buffer(64, 0xEE);
    std::size_t length = buffer.size();
    const HidStatus r = h.getFeatureReport(4, buffer, length);
    if (result)
        *result = r;
    buffer.resize(length);
    return buffer;
}

HidStatus readStatus(HidDeviceHandle& h) { HidStatus r; reply(h, &r); return r; }

}  // namespace

TEST(VirtualKeyboard, ShowsTheThreeInterfacesOfARealKeyboardAndOnlyTheLastSpeaksTheProtocol)
{
    VirtualKeyboard kb(VirtualKeyboard::Model::K68);
    const auto ifaces = kb.interfaces();
    ASSERT_EQ(ifaces.size(), 3u);
    const std::pair<int, int> sizes[] = {{8, 0}, {3, 0}, {64, 64}};
    for (int i = 0; i < 3; ++i) {
        const HIDDevice d(ifaces[i]);
        EXPECT_EQ(std::tuple(d.id, d.vendorId, d.productId, d.name),
                  std::tuple(kb.locationId(), 3141, 32885, QStringLiteral("ORVANE K68")));
        EXPECT_EQ(std::pair(d.reportSize, d.featureSize), sizes[i]);
        EXPECT_EQ(isConfigurationInterface(d), i == 2);
        if (i < 2) {
            EXPECT_EQ(ifaces[i]->setFeatureReport(4, report({0x04, 0x30})), HidResult::BadArgument);
            EXPECT_EQ(readStatus(*ifaces[i]), HidResult::BadArgument);
        }
    }
    EXPECT_FALSE(ifaces[2]->property(QStringLiteral("SerialNumber")).isValid());
    EXPECT_EQ(kb.setCount() + kb.getCount(), 0);
    EXPECT_NE(VirtualKeyboard(VirtualKeyboard::Model::K68).locationId(), kb.locationId());

    // Demo names pick the model.
    EXPECT_EQ(HIDDevice(VirtualKeyboard::fromDemoName("m61")->interfaces()[2]).name, QStringLiteral("ORVANE M61"));
    EXPECT_EQ(VirtualKeyboard::fromDemoName("w61")->model(), VirtualKeyboard::Model::W61);
    EXPECT_EQ(VirtualKeyboard::fromDemoName("k70"), nullptr);
}

TEST(VirtualKeyboard, UnplugFailsTransfersWhileRemovalListenersCanStillReadProperties)
{
    auto bus = std::make_shared<VirtualBus>();
    auto kb = std::make_shared<VirtualKeyboard>(VirtualKeyboard::Model::M61);
    QStringList removed;
    bus->addListener([&](const std::shared_ptr<HidDeviceHandle>& iface, bool arrived) {
        if (!arrived)
            removed << iface->property(QStringLiteral("Product")).toString();
    });
    bus->plug(kb);
    const auto config = kb->interfaceHandle(Iface::Configuration);
    EXPECT_EQ(config->setFeatureReport(4, report({0x04, 0x30})), HidResult::Success);

    bus->unplug(kb);
    EXPECT_EQ(removed, QStringList(3, QStringLiteral("ORVANE M61")));
    EXPECT_EQ(config->setFeatureReport(4, report({0x04, 0x02})), HidResult::NotResponding);
    EXPECT_EQ(readStatus(*config), HidResult::NotResponding);
    EXPECT_EQ(kb->setCount(), 1);

    bus->plug(kb);
    EXPECT_EQ(config->setFeatureReport(4, report({0x04, 0x02})), HidResult::Success);
}

TEST(VirtualKeyboard, TraceWritesOneFlushedJsonLinePerReport)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("trace.jsonl"));
    // A clock the test moves by hand: every report 10 ms after the one before.
    const auto now = std::make_shared<FirmwareModel::Time>(0);
    VirtualKeyboard kb(VirtualKeyboard::Model::M61, {path, 2, [now] { return *now += 10ms; }});
    const auto config = kb.interfaceHandle(Iface::Configuration);

    kb.setActiveProfile(3);
    config->setFeatureReport(4, report({0x04, 0x30}));
    EXPECT_EQ(hexFromBytes(reply(*config)), hexFromBytes(report({0x04, 0x30, 0, 0x01, 0, 0, 0, 0, 0, 3})));
    *now = 1234567us;
    config->setFeatureReport(4, report({0x04, 0x02}));

    // Read while the keyboard is still alive: each line is on disk at once.
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto line = [](const char* t, const char* op, const char* head) {
        return QStringLiteral("{\"t\": %1, \"op\": \"%2\", \"report\": 4, \"data\": \"%3%4\"}\n")
            .arg(QLatin1String(t), QLatin1String(op), QLatin1String(head), QString(108, QLatin1Char('0')));
    };
    EXPECT_EQ(QString::fromUtf8(file.readAll()), line("0.010", "set", "04300000000000000000")
                                                     + line("0.020", "get", "04300001000000000003")
                                                     + line("1.244", "set", "04020000000000000000"));

    const auto recent = kb.recentTrace();  // memory keeps the last two
    ASSERT_EQ(recent.size(), 2u);
    EXPECT_EQ(recent[0].op, TraceRecord::Op::Get);
    EXPECT_EQ(recent[1].data[1], 0x02);
}

TEST(VirtualKeyboard, KeyTableUploadOnTheRealClockWithTheHostsPacing)
{
    VirtualKeyboard kb(VirtualKeyboard::Model::W61);
    const auto config = kb.interfaceHandle(Iface::Configuration);
    // The host sleeps 10 ms before every step; nothing here may arrive sooner.
    const auto send = [&](const std::vector<uint8_t>& bytes) {
        std::this_thread::sleep_for(10ms);
        EXPECT_EQ(config->setFeatureReport(4, bytes), HidResult::Success);
    };
    const auto exchange = [&](const std::vector<uint8_t>& bytes) {
        send(bytes);
        std::this_thread::sleep_for(10ms);
        return hexFromBytes(reply(*config));
    };
    std::vector<uint8_t> table(576, 0);
    table[4] = 2, table[6] = 175, table[574] = 0xAA, table[575] = 0x55;  // sum 0x01b0
    // Opens a key table upload to profile 5 and sends `reports` of its nine.
    const auto sendTable = [&](std::size_t reports) {
        exchange(report({0x04, 0x18}));
        exchange(report({0x04, 0x11, 5, 0, 0, 0, 0, 0, 9}));
        for (std::size_t i = 0; i < reports * 64; i += 64)
            send({table.begin() + i, table.begin() + i + 64});
    };
    // An upload cut short by unplugging is forgotten, not continued.
    sendTable(3);
    kb.setPlugged(false);
    kb.setPlugged(true);
    kb.requestRepeatOnce();
    EXPECT_EQ(exchange(report({0x04, 0x18})), hexFromBytes(report({0x04, 0x18, 0, 0xFF})));
    sendTable(9);
    EXPECT_EQ(exchange(report({0x04, 0x02, 5})), hexFromBytes(report({0x04, 0x02, 5, 0x01, 0xB0, 0x01})));

    const FirmwareModel fw = kb.firmware();
    EXPECT_EQ(fw.keyTable(5), table);
    EXPECT_EQ(fw.state().profile(5).keys[1], (KeyEntry{2, 0, 175, 0}));
    EXPECT_EQ(fw.commandCount(Protocol::Command::BeginUpload), 2);
    EXPECT_EQ(kb.setCount(), 18);
    EXPECT_TRUE(kb.protocolErrors().isEmpty()) << kb.protocolErrors().join('\n').toStdString();
}
