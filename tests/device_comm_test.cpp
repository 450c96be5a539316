#include "support/CapturedLines.h"
#include "HIDDevice/DeviceComm.h"
#include "support/HexBytes.h"
#include "support/ScriptedHidDevice.h"

#include <gtest/gtest.h>

using namespace testing_support;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds kDelay{10};

struct Rig {
    std::shared_ptr<ScriptedHidDevice> device = std::make_shared<ScriptedHidDevice>();
    DeviceComm comm{device, device->sleeper()};
};

std::vector<uint8_t> frame65(std::initializer_list<uint8_t> leading) { return report(leading, 65); }
std::vector<uint8_t> first64(const std::vector<uint8_t>& v) { return {v.begin(), v.begin() + 64}; }

// A numbered payload so that a report taken from the wrong offset shows.
std::vector<uint8_t> numbered(std::size_t size)
{
    std::vector<uint8_t> v(size);
    for (std::size_t i = 0; i < size; ++i)
        v[i] = static_cast<uint8_t>(i * 7 + i / 64);
    return v;
}

std::vector<uint8_t> slice(const std::vector<uint8_t>& v, std::size_t from) { return {v.begin() + from, v.begin() + from + 64}; }

}  // namespace

TEST(DeviceCommExchange, OneSetAndOneReadWhenTheReplyDoesNotAskForARepeat)
{
    for (uint8_t status : {uint8_t{0x00}, uint8_t{0x01}, uint8_t{0xFE}}) {
        Rig rig;
        const auto request = frame65({0x04, 0x18});
        rig.device->expectSleep(kDelay).expectSet(first64(request)).expectSleep(kDelay).expectGet(report({0x04, 0x18, 0, status}));
        EXPECT_TRUE(rig.comm.sendDeviceData(request));
        EXPECT_EQ(hexFromBytes(request), hexFromBytes(frame65({0x04, 0x18}))) << "the caller's buffer is not changed";
    }
}

TEST(DeviceCommExchange, ARepeatRequestSendsTheFrameOnceMoreAndNoMoreAndKeepsTheSecondReply)
{
    Rig rig;
    auto request = frame65({0x04, 0x11, 0x03, 0, 0, 0, 0, 0, 0x09});
    const auto sent = first64(request);
    auto second = report({0x04, 0x11, 0x03, 0xFF});
    second[9] = 0x04;
    rig.device->expectSleep(kDelay).expectSet(sent).expectSleep(kDelay).expectGet(report({0x04, 0x11, 0x03, 0xFF}))
        .expectSleep(kDelay).expectSet(sent).expectSleep(kDelay).expectGet(second);
    EXPECT_TRUE(rig.comm.getDeviceData(request));
    EXPECT_EQ(hexFromBytes(first64(request)), hexFromBytes(second));
}

TEST(DeviceCommExchange, TheRepeatUsesTheLengthTheFirstReadReported)
{
    Rig rig;
    const auto request = frame65({0x04, 0x30});
    std::vector<uint8_t> shortReply = {0x04, 0x30, 0x00, 0xFF};
    rig.device->expectSleep(kDelay).expectSet(first64(request)).expectSleep(kDelay).expectGet(shortReply)
        .expectSleep(kDelay).expectSet({0x04, 0x30, 0x00, 0x00}).expectSleep(kDelay).expectGet(report({0x04, 0x30, 0, 1}));
    EXPECT_TRUE(rig.comm.sendDeviceData(request));
}

TEST(DeviceCommExchange, GetDeviceDataPutsTheReplyAtTheStartOfTheCallersBuffer)
{
    Rig rig;
    auto buffer = frame65({0x04, 0x30});
    buffer[64] = 0x77;
    auto reply = report({0x04, 0x30, 0x00, 0x01, 0, 0, 0, 0, 0, 0x03});
    reply[63] = 0x5A;
    rig.device->expectSleep(kDelay).expectSet(first64(buffer)).expectSleep(kDelay).expectGet(reply);
    EXPECT_TRUE(rig.comm.getDeviceData(buffer));
    EXPECT_EQ(hexFromBytes(first64(buffer)), hexFromBytes(reply));
    EXPECT_EQ(buffer[64], 0x77) << "byte 64 is never touched";
}

TEST(DeviceCommFailures, AFailedSetEndsTheExchangeAndLeavesTheRequestInPlace)
{
    Rig rig;
    auto buffer = frame65({0x04, 0x30});
    rig.device->expectSleep(kDelay).expectSet(first64(buffer), HidResult::NotResponding);
    EXPECT_FALSE(rig.comm.getDeviceData(buffer));
    EXPECT_EQ(hexFromBytes(buffer), hexFromBytes(frame65({0x04, 0x30})));
}

TEST(DeviceCommFailures, AFailedReadReportsFalseAndTheBufferStillHoldsTheRequest)
{
    Rig rig;
    auto buffer = frame65({0x04, 0x30});
    rig.device->expectSleep(kDelay).expectSet(first64(buffer)).expectSleep(kDelay).expectGet({}, HidResult::NotResponding);
    EXPECT_FALSE(rig.comm.getDeviceData(buffer));
    EXPECT_EQ(buffer[9], 0) << "no profile came back";
    EXPECT_EQ(hexFromBytes(buffer), hexFromBytes(frame65({0x04, 0x30})));
}

TEST(DeviceCommFailures, AFailedReadOfARequestWhoseByte3Is255StillRepeatsOnce)
{
    // The untouched copy holds the request, so its byte 3 decides.
    Rig rig;
    const auto request = frame65({0x04, 0x02, 0x00, 0xFF});
    rig.device->expectSleep(kDelay).expectSet(first64(request)).expectSleep(kDelay).expectGet({}, HidResult::NotResponding)
        .expectSleep(kDelay).expectSet(first64(request)).expectSleep(kDelay).expectGet(report({0x04, 0x02, 0, 1}));
    EXPECT_TRUE(rig.comm.sendDeviceData(request));
}

TEST(DeviceCommFailures, AStoppedTransportMakesNoDeviceCall)
{
    Rig rig;
    rig.comm.setDeviceStatus(0);
    auto buffer = frame65({0x04, 0x30});
    EXPECT_FALSE(rig.comm.sendDeviceData(buffer));
    EXPECT_FALSE(rig.comm.getDeviceData(buffer));
    EXPECT_FALSE(rig.comm.sendDeviceData(numbered(780), 640));
}

TEST(DeviceCommRun, SendsOneReportFewerThanTheLengthSpans)
{
    const auto data = numbered(780);
    Rig rig;
    for (std::size_t i = 0; i < 9; ++i)
        rig.device->expectSleep(kDelay).expectSet(slice(data, i * 64));
    captureLines();
    EXPECT_TRUE(rig.comm.sendDeviceData(data, 640));
    const std::string out = capturedLines();
    EXPECT_EQ(out.substr(0, out.find('\n')).substr(0, 13), "newArr-0[0, 7");
    EXPECT_NE(out.find("newArr-8["), std::string::npos);
    EXPECT_EQ(out.find("newArr-9"), std::string::npos) << "bytes from 576 on are never sent";
}

TEST(DeviceCommRun, ShortLengthsSendNothingOrOnlyTheFirstReport)
{
    const auto data = numbered(256);
    {
        Rig rig;  // nothing expected
        captureLines();
        EXPECT_TRUE(rig.comm.sendDeviceData(data, 64));
        EXPECT_TRUE(rig.comm.sendDeviceData(data, 127));
        capturedLines();
    }
    Rig rig;
    rig.device->expectSleep(kDelay).expectSet(slice(data, 0));
    captureLines();
    EXPECT_TRUE(rig.comm.sendDeviceData(data, 128));
    capturedLines();
}

TEST(DeviceCommRun, AFailedReportStopsTheRunButTheResultStaysTrue)
{
    const auto data = numbered(780);
    Rig rig;
    rig.device->expectSleep(kDelay).expectSet(slice(data, 0)).expectSleep(kDelay).expectSet(slice(data, 64))
        .expectSleep(kDelay).expectSet(slice(data, 128), HidResult::NotResponding);
    captureLines();
    EXPECT_TRUE(rig.comm.sendDeviceData(data, 640));
    capturedLines();
}
