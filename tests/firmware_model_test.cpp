// The keyboard's firmware model, driven report by report with injected times
// 10 ms apart, exactly as the host's transport spaces them.

#include "Simulator/FirmwareModel.h"
#include "support/HexBytes.h"

#include <gtest/gtest.h>

using namespace testing_support;
using namespace std::chrono_literals;
using Protocol::Command;
using Kinds = std::vector<ProtocolError>;

namespace {

std::vector<uint8_t> frame(Command command, uint8_t target = 0, uint8_t count = 0)
{
    return report({0x04, static_cast<uint8_t>(command), target, 0, 0, 0, 0, 0, count});
}

// A block of `size` bytes: a few recognisable bytes up front, the end marker
// at `markerAt`, zeros elsewhere.
std::vector<uint8_t> block(std::size_t size, std::size_t markerAt, uint8_t seed = 0x21)
{
    std::vector<uint8_t> b(size, 0);
    b[0] = seed, b[5] = 0x42, b[markerAt] = 0xAA, b[markerAt + 1] = 0x55;
    return b;
}

class Wire {
public:
    FirmwareModel fw;
    FirmwareModel::Time now{0};

    void set(const std::vector<uint8_t>& bytes) { fw.set(bytes, now += 10ms); }
    std::string get()
    {
        const auto r = fw.get(now += 10ms);
        return hexFromBytes({r.begin(), r.end()});
    }
    // A single report as the host sends it: set, then read the reply.
    std::string exchange(const std::vector<uint8_t>& bytes) { return set(bytes), get(); }
    void sendRun(const std::vector<uint8_t>& data)
    {
        for (std::size_t i = 0; i < data.size(); i += 64)
            set({data.begin() + i, data.begin() + i + 64});
    }
    // An upload in the shape the host sends it: opening command, header,
    // data, 0x02 (and 0xF0 for light); returns the reply to the 0x02.
    std::string upload(Command header, uint8_t target, const std::vector<uint8_t>& data)
    {
        exchange(frame(FirmwareBlocks::requiredOpening(header)));
        exchange(frame(header, target, static_cast<uint8_t>(data.size() / 64)));
        sendRun(data);
        const uint8_t endTarget = FirmwareBlocks::endFrameTarget(header, target);
        const std::string reply = exchange(frame(Command::EndUpload, endTarget));
        if (FirmwareBlocks::isLightUpload(header))
            exchange(frame(Command::ApplyLight, endTarget));
        return reply;
    }
};

// The hex of a 64-byte reply that is all zero but for the given leading bytes.
std::string reply(std::initializer_list<uint8_t> leading) { return hexFromBytes(report(leading)); }

}  // namespace

void PrintTo(ProtocolError kind, std::ostream* os)
{
    static const char* const names[] = {"DataWithoutHeader", "WrongCount", "MissingEndMarker", "TooFast",
                                        "BadReportId", "UnknownCommand", "StrayFrameBytes", "BadTarget",
                                        "MissingOpening", "WrongEndFrame"};
    *os << names[static_cast<int>(kind)];
}

TEST(FirmwareModel, EachUploadLandsWhereItsHeaderSaysAndTheEndReplyCarriesTheDataSum)
{
    Wire w;
    const auto table = block(576, 574, 0x02);  // 0x02 + 0x42 + 0xAA + 0x55 = 0x0143
    EXPECT_EQ(w.exchange(frame(Command::BeginUpload)), reply({0x04, 0x18, 0, 0x01}));
    EXPECT_EQ(w.exchange(frame(Command::KeyTable, 3, 9)), reply({0x04, 0x11, 3, 0x01, 0, 0, 0, 0, 9}));
    w.sendRun(table);
    EXPECT_EQ(w.exchange(frame(Command::EndUpload, 3)), reply({0x04, 0x02, 3, 0x01, 0x43, 0x01}));

    const auto light = block(64, 14, 0x04);  // mode 4: byte 0 is the report id's value
    w.upload(Command::LightMode, 2, light);
    const auto colours = block(576, 574, 0x07);
    w.upload(Command::UserLightData, 0x80 + 2, colours);
    const auto settings = block(64, 62, 0x83);
    w.upload(Command::SystemSet, 4, settings);

    // 50 reports of 0xFF but for the marker: the sum wraps past 16 bits,
    // 3198 * 255 + 0xAA + 0x55 = 815745 = 12 * 65536 + 0x7281.
    std::vector<uint8_t> macros(50 * 64, 0xFF);
    macros[50 * 64 - 2] = 0xAA, macros[50 * 64 - 1] = 0x55;
    EXPECT_EQ(w.upload(Command::MacroData, 0, macros), reply({0x04, 0x02, 0, 0x01, 0x81, 0x72}));

    EXPECT_EQ(w.fw.keyTable(3), table);
    EXPECT_TRUE(w.fw.keyTable(1).empty() && w.fw.userLight(1).empty());
    EXPECT_EQ(w.fw.lightMode(2), light);
    EXPECT_EQ(w.fw.userLight(2), colours);
    EXPECT_EQ(w.fw.systemSettings(4), settings);
    EXPECT_EQ(w.fw.state().profile(4).locks, (LockSettings{true, true, false}));
    EXPECT_EQ(w.fw.macroStore(), macros);
    EXPECT_EQ(w.fw.applyLightCount(), 2);
    EXPECT_EQ(w.fw.commandCount(Command::BeginUpload), 4);
    EXPECT_EQ(w.fw.commandCount(Command::BeginMacro), 1);
    EXPECT_TRUE(w.fw.protocolErrors().isEmpty()) << w.fw.protocolErrors().join('\n').toStdString();
}

TEST(FirmwareModel, RepliesEchoTheFrameWithItsStatusAndTheActiveProfileOnAPoll)
{
    Wire w;
    EXPECT_EQ(w.get(), reply({}));  // nothing sent yet
    for (uint8_t profile : {1, 4}) {  // 1 until a key chooses another
        EXPECT_EQ(w.exchange(frame(Command::ReadStatus)), reply({0x04, 0x30, 0, 1, 0, 0, 0, 0, 0, profile}));
        EXPECT_EQ(w.exchange(frame(Command::EndUpload)), reply({0x04, 0x02, 0, 0x01}));
        w.fw.setActiveProfile(4);
    }
    w.exchange(frame(Command::BeginUpload));
    w.exchange(frame(Command::SystemSet, 1, 1));
    // The host reads after the settings block too; byte 3 must not ask again.
    EXPECT_EQ(w.exchange(block(64, 62, 0x81)), reply({0x04, 0x17, 1, 0x01, 0, 0, 0, 0, 1}));
    EXPECT_TRUE(w.fw.protocolErrors().isEmpty());
}

TEST(FirmwareModel, BlocksWithoutTheirEndMarkerAreFlaggedAndNotStored)
{
    struct Case { Command header; uint8_t target; std::size_t size, markerAt; };
    for (const Case& c : {Case{Command::KeyTable, 1, 576, 574}, Case{Command::UserLightData, 0x81, 576, 574},
                          Case{Command::LightMode, 1, 64, 14}, Case{Command::SystemSet, 1, 64, 62},
                          Case{Command::MacroData, 0, 192, 190}}) {
        SCOPED_TRACE(static_cast<int>(c.header));
        Wire w;
        w.upload(c.header, c.target, block(c.size, c.markerAt - 1));  // the marker one byte too early
        EXPECT_EQ(w.fw.protocolErrorKinds(), Kinds{ProtocolError::MissingEndMarker});
        EXPECT_TRUE(w.fw.keyTable(1).empty() && w.fw.userLight(1).empty() && w.fw.lightMode(1).empty()
                    && w.fw.systemSettings(1).empty() && w.fw.macroStore().empty());
    }
}

TEST(FirmwareModel, MalformedFramesAndHastyReportsAreFlagged)
{
    Wire w;
    w.set(report({0x05, 0x18}));  // a command under report id 5
    w.set(report({0x04, 0x77}));  // no such command
    w.set(report({0x04, 0x18, 0, 0x01}));  // a reply's status byte left in a frame
    w.set(frame(Command::KeyTable, 9, 9));  // there is no profile 9
    EXPECT_EQ(w.fw.protocolErrorKinds(), (Kinds{ProtocolError::BadReportId, ProtocolError::UnknownCommand,
                                                ProtocolError::StrayFrameBytes, ProtocolError::BadTarget}));
    EXPECT_EQ(w.fw.commandCount(Command::BeginUpload), 1);  // the one with report id 4

    Wire quick;
    quick.set(frame(Command::ReadStatus));
    quick.fw.get(quick.now + 9ms);
    quick.fw.set(frame(Command::EndUpload), quick.now + 19ms);  // exactly 10 ms later is fine
    EXPECT_EQ(quick.fw.protocolErrorKinds(), Kinds{ProtocolError::TooFast});
    EXPECT_TRUE(quick.fw.protocolErrors().front().contains(QStringLiteral("9.0 ms")));
}

TEST(FirmwareModel, StrayMiscountedAndOutOfShapeUploadsAreFlaggedAsTheFirmwareSeesThem)
{
    using Reports = std::vector<std::vector<uint8_t>>;
    const auto light = block(64, 14, 0x04);
    const auto settings = block(64, 62, 0x81);
    const auto colours = block(576, 574);
    const auto begin = frame(Command::BeginUpload);
    const auto end1 = frame(Command::EndUpload, 1);
    struct Case { const char* what; Reports reports; Kinds expected; };
    const Case cases[] = {
        {"data with no header in front", {begin, settings}, {ProtocolError::DataWithoutHeader}},
        {"frames after 4 of 9 reports are taken as data, by the count",
         {begin, frame(Command::KeyTable, 1, 9), std::vector<uint8_t>(256, 0x21), end1, end1, end1, end1, end1},
         {ProtocolError::MissingEndMarker}},
        {"one report more than announced, and one after the closed sequence",
         {begin, frame(Command::SystemSet, 1, 1), settings, settings, frame(Command::EndUpload), settings},
         {ProtocolError::WrongCount, ProtocolError::DataWithoutHeader}},
        {"light header without 0x18", {frame(Command::LightMode, 1, 1), light, frame(Command::EndUpload, 1),
                                       frame(Command::ApplyLight, 1)}, {ProtocolError::MissingOpening}},
        {"macro store opened by 0x18", {begin, frame(Command::MacroData, 0, 1), settings, frame(Command::EndUpload)},
         {ProtocolError::MissingOpening}},
        {"0xf0 after system settings", {begin, frame(Command::SystemSet, 1, 1), settings, frame(Command::EndUpload),
                                        frame(Command::ApplyLight)}, {ProtocolError::WrongEndFrame}},
        {"light without 0xf0", {begin, frame(Command::LightMode, 1, 1), light, frame(Command::EndUpload, 1), begin},
         {ProtocolError::WrongEndFrame}},
        {"0x02 of system settings keeps the profile",
         {begin, frame(Command::SystemSet, 2, 1), settings, frame(Command::EndUpload, 2)}, {ProtocolError::WrongEndFrame}},
        {"0x02 of a key table drops the profile",
         {begin, frame(Command::KeyTable, 2, 9), colours, frame(Command::EndUpload)}, {ProtocolError::WrongEndFrame}},
        {"user light slot 7", {begin, frame(Command::UserLightData, 0x87, 9), colours}, {ProtocolError::BadTarget}},
        {"user light slot 0", {begin, frame(Command::UserLightData, 0x80, 9), colours}, {ProtocolError::BadTarget}},
        {"key table of 8 reports", {begin, frame(Command::KeyTable, 1, 8), block(512, 510)}, {ProtocolError::WrongCount}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Wire w;
        for (const auto& r : c.reports)
            r.size() > 64 ? w.sendRun(r) : void(w.exchange(r));
        EXPECT_EQ(w.fw.protocolErrorKinds(), c.expected);
        EXPECT_TRUE(w.fw.userLight(7).empty() && w.fw.userLight(0).empty() && w.fw.keyTable(1).empty());
    }
}

TEST(FirmwareModel, AReportWhileDataIsDueIsDataEvenWhenItLooksLikeACommand)
{
    Wire w;
    std::vector<uint8_t> store = frame(Command::EndUpload);  // a macro body that reads 04 02 00 ...
    const auto tail = block(64, 62, 0x09);
    store.insert(store.end(), tail.begin(), tail.end());
    w.upload(Command::MacroData, 0, store);
    EXPECT_EQ(w.fw.macroStore(), store);
    EXPECT_EQ(w.fw.commandCount(Command::EndUpload), 1);
    EXPECT_TRUE(w.fw.protocolErrors().isEmpty()) << w.fw.protocolErrors().join('\n').toStdString();
}
