#include "support/CapturedLines.h"
#include "HIDDevice/DeviceComm.h"
#include "support/HexBytes.h"
#include "support/ScriptedHidDevice.h"

#include <gtest/gtest.h>

using namespace testing_support;
using Log = std::vector<std::string>;

namespace {

struct Rig {
    std::shared_ptr<ScriptedHidDevice> device = std::make_shared<ScriptedHidDevice>();
    DeviceComm comm{device, device->sleeper()};
};

std::vector<uint8_t> frame65(std::initializer_list<uint8_t> leading) { return report(leading, 65); }
std::vector<uint8_t> slice(const std::vector<uint8_t>& v, std::size_t at = 0)
{
    return {v.begin() + at, v.begin() + at + 64};
}
// Every step comes 10 ms after the one before it.
Log sent(const std::vector<uint8_t>& bytes) { return {"pause 10", "set " + hexFromBytes(bytes)}; }
Log exchanged(const std::vector<uint8_t>& bytes, int times = 1)
{
    Log log;
    while (times-- > 0)
        log.insert(log.end(), {"pause 10", "set " + hexFromBytes(bytes), "pause 10", "get"});
    return log;
}
Log operator+(Log a, const Log& b) { a.insert(a.end(), b.begin(), b.end()); return a; }

// A numbered payload so that a report taken from the wrong offset shows.
std::vector<uint8_t> numbered(std::size_t size)
{
    std::vector<uint8_t> v(size);
    for (std::size_t i = 0; i < size; ++i)
        v[i] = static_cast<uint8_t>(i * 7 + i / 64);
    return v;
}

}  // namespace

TEST(DeviceCommExchange, ARepeatGoesOutOnceWhenTheReplyOrTheUnreadRequestAsksAndItsReplyIsKept)
{
    struct Case {
        std::deque<ScriptedHidDevice::Reply> replies;
        std::vector<uint8_t> request;
        Log expected;
    };
    const Case cases[] = {
        {{{report({0x04, 0x18, 0, 0x00})}}, frame65({0x04, 0x18}), exchanged(report({0x04, 0x18}))},
        {{{report({0x04, 0x18, 0, 0x01})}}, frame65({0x04, 0x18}), exchanged(report({0x04, 0x18}))},
        {{{report({0x04, 0x18, 0, 0xFE})}}, frame65({0x04, 0x18}), exchanged(report({0x04, 0x18}))},
        // The repeat uses the length the first read reported.
        {{{{0x04, 0x30, 0x00, 0xFF}}, {report({0x04, 0x30, 0, 1})}}, frame65({0x04, 0x30}),
         exchanged(report({0x04, 0x30})) + exchanged({0x04, 0x30, 0x00, 0x00})},
        // A failed read: the untouched copy holds the request, so its byte 3 decides.
        {{{{}, HidResult::NotResponding}, {report({0x04, 0x02, 0, 1})}}, frame65({0x04, 0x02, 0x00, 0xFF}),
         exchanged(report({0x04, 0x02, 0x00, 0xFF}), 2)},
    };
    for (const Case& c : cases) {
        Rig rig;
        rig.device->replies = c.replies;
        EXPECT_TRUE(rig.comm.sendDeviceData(c.request));
        EXPECT_EQ(rig.device->log, c.expected);
    }

    // A read that asks for a repeat: the second reply lands in the buffer's head, byte 64 untouched;
    // a repeat that is asked for again is a failure (the keyboard will not take the frame).
    Rig rig;
    auto request = frame65({0x04, 0x11, 0x03, 0, 0, 0, 0, 0, 0x09});
    request[64] = 0x77;
    const auto second = report({0x04, 0x11, 0x03, 0xFF, 0, 0, 0, 0, 0, 0x04});
    rig.device->replies = {{report({0x04, 0x11, 0x03, 0xFF})}, {second}};
    EXPECT_FALSE(rig.comm.getDeviceData(request));
    // Once more and no more.
    EXPECT_EQ(rig.device->log, exchanged(report({0x04, 0x11, 0x03, 0, 0, 0, 0, 0, 0x09}), 2));
    EXPECT_EQ(hexFromBytes(slice(request)), hexFromBytes(second));
    EXPECT_EQ(request[64], 0x77) << "byte 64 is never touched";
}

TEST(DeviceCommFailures, AFailedSetOrReadOrAStoppedTransportReportsFalseAndLeavesTheRequest)
{
    for (bool setFails : {true, false}) {
        Rig rig;
        auto buffer = frame65({0x04, 0x30});
        if (setFails)
            rig.device->setResults = {HidResult::NotResponding};
        EXPECT_FALSE(rig.comm.getDeviceData(buffer));
        EXPECT_EQ(rig.device->log, setFails ? sent(slice(buffer)) : exchanged(slice(buffer)));
        EXPECT_EQ(hexFromBytes(buffer), hexFromBytes(frame65({0x04, 0x30})));
    }

    // A stopped transport makes no device call.
    Rig rig;
    rig.comm.setDeviceStatus(0);
    auto buffer = frame65({0x04, 0x30});
    EXPECT_FALSE(rig.comm.sendDeviceData(buffer));
    EXPECT_FALSE(rig.comm.getDeviceData(buffer));
    EXPECT_FALSE(rig.comm.sendDeviceData(numbered(780), 640));
    EXPECT_TRUE(rig.device->log.empty());
}

TEST(DeviceCommRun, SendsOneReportFewerThanTheLengthSpansAndStopsAtAFailedOne)
{
    const auto data = numbered(780);
    Log nine;
    for (std::size_t i = 0; i < 9; ++i)
        nine = nine + sent(slice(data, i * 64));
    Rig rig;
    captureLines();
    EXPECT_TRUE(rig.comm.sendDeviceData(data, 640));
    EXPECT_EQ(rig.device->log, nine);
    const std::string out = capturedLines();
    EXPECT_EQ(out.substr(0, 13), "newArr-0[0, 7");
    EXPECT_NE(out.find("newArr-8["), std::string::npos);
    EXPECT_EQ(out.find("newArr-9"), std::string::npos) << "bytes from 576 on are never sent";

    Rig failing;  // the result stays true
    failing.device->setResults = {HidResult::Success, HidResult::Success, HidResult::NotResponding};
    captureLines();
    EXPECT_TRUE(failing.comm.sendDeviceData(data, 640));
    capturedLines();
    EXPECT_EQ(failing.device->log, Log(nine.begin(), nine.begin() + 6));

    Rig brief;  // a length under two reports sends nothing, two reports only the first
    captureLines();
    EXPECT_TRUE(brief.comm.sendDeviceData(data, 64));
    EXPECT_TRUE(brief.comm.sendDeviceData(data, 127));
    EXPECT_TRUE(brief.device->log.empty());
    EXPECT_TRUE(brief.comm.sendDeviceData(data, 128));
    capturedLines();
    EXPECT_EQ(brief.device->log, sent(slice(data)));
}
