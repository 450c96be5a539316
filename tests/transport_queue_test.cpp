// The transport thread: order on the wire, the poll's continuation, and
// what happens when the keyboard goes away.
#include "support/CapturedLines.h"
#include "HIDDevice/TransportQueue.h"
#include "Protocol/UploadSequences.h"
#include "support/HexBytes.h"
#include "support/RecordingHidDevice.h"
#include "support/ScriptedHidDevice.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

using namespace testing_support;
using namespace std::chrono_literals;

namespace {

std::string frame(std::initializer_list<uint8_t> leading) { return hexFromBytes(report(leading)); }
ReportSequence oneFrame(const char* name, Protocol::Command command, uint8_t target = 0)
{
    return {name, {ReportStep::single(CommandFrame(command, target))}};
}

struct Rig {
    std::shared_ptr<RecordingHidDevice> device = std::make_shared<RecordingHidDevice>();
    std::shared_ptr<DeviceComm> comm = std::make_shared<DeviceComm>(device, [](std::chrono::milliseconds) {});
    TransportQueue queue;
};

}  // namespace

TEST(TransportQueue, SequencesGoOutWholeInTheOrderTheyWereHandedOver)
{
    Rig rig;
    rig.device->recordBrackets = true;
    std::array<uint8_t, 576> table{};
    table[574] = 0xAA;
    table[575] = 0x55;
    captureLines();
    rig.queue.submit(rig.comm, oneFrame("a", Protocol::Command::BeginUpload));
    rig.queue.submit(rig.comm, UploadSequences::keyTable(1, table));
    UploadSequences::Report settings{0x81};
    rig.queue.submit(rig.comm, UploadSequences::systemSettings(2, settings));
    EXPECT_EQ(rig.queue.pending(), 3);
    ASSERT_TRUE(rig.queue.waitForIdle(5s));
    capturedLines();
    const auto sets = rig.device->sets();
    ASSERT_EQ(sets.size(), 3u + 14 + 6);
    EXPECT_EQ(sets[0], "begin");
    EXPECT_EQ(sets[1], frame({0x04, 0x18}));
    EXPECT_EQ(sets[2], "end");
    EXPECT_EQ(sets[3], "begin data") << "a sequence with data reports asks for the exact path";
    EXPECT_EQ(sets[4], frame({0x04, 0x18}));
    EXPECT_EQ(sets[5], frame({0x04, 0x11, 0x01, 0, 0, 0, 0, 0, 0x09}));
    EXPECT_EQ(sets[15], frame({0x04, 0x02, 0x01}));
    EXPECT_EQ(sets[16], "end");
    EXPECT_EQ(sets[17], "begin data") << "a single data report holds the exact path for its whole sequence";
    EXPECT_EQ(sets[20], frame({0x81}));
    EXPECT_EQ(sets[21], frame({0x04, 0x02}));
    EXPECT_EQ(sets[22], "end");
}

TEST(TransportQueue, AValueThatDoesNotFitItsByteIsNotSentAndALineSaysSo)
{
    Rig rig;
    const UploadSequences::Report block{};
    const UploadSequences::NineReports nine{};
    std::vector<ReportSequence> refused;
    refused.push_back(UploadSequences::keyTable(256, nine));
    refused.push_back(UploadSequences::lightMode(-1, block));
    refused.push_back(UploadSequences::systemSettings(300, block));
    refused.push_back(UploadSequences::userLightColors(128, nine));
    refused.push_back(UploadSequences::macroStore(std::vector<uint8_t>(256 * 64, 0)));
    captureLines();
    for (ReportSequence& sequence : refused)
        EXPECT_FALSE(rig.queue.submit(rig.comm, std::move(sequence)));
    ASSERT_TRUE(rig.queue.waitForIdle(5s));
    EXPECT_EQ(capturedLines(), "not sent: key table 256: profile 256 does not fit a byte\n"
                               "not sent: light mode -1: profile -1 does not fit a byte\n"
                               "not sent: system settings 300: profile 300 does not fit a byte\n"
                               "not sent: user light slot 128: target 256 does not fit a byte\n"
                               "not sent: macro store: count 256 does not fit a byte\n");
    EXPECT_TRUE(rig.device->sets().empty());
}

TEST(TransportQueue, WhatAReplyHandlerHandsOverRunsBeforeTheRestOfThePollAndBeforeLaterWork)
{
    Rig rig;
    rig.device->setReplyProfile(3);
    int seenProfile = 0;
    rig.queue.submit(rig.comm, UploadSequences::statusPoll(), [&](const TransportQueue::ExchangeResult& r) {
        seenProfile = r.reply[9];
        rig.queue.submit(rig.comm, oneFrame("switch", Protocol::Command::LightMode, 3));
    });
    // Handed over while the poll is in flight: must not cut into it.
    rig.queue.submit(rig.comm, oneFrame("later", Protocol::Command::SystemSet, 9));
    ASSERT_TRUE(rig.queue.waitForIdle(5s));
    EXPECT_EQ(seenProfile, 3);
    EXPECT_EQ(rig.device->sets(), (std::vector<std::string>{frame({0x04, 0x30}), frame({0x04, 0x13, 0x03}),
                                                           frame({0x04, 0x02}), frame({0x04, 0x17, 0x09})}));
}

TEST(TransportQueue, AReleasedTransportSkipsEveryStepButTheSequenceStillEnds)
{
    Rig rig;
    rig.device->closeGate();
    bool replied = false;
    TransportQueue::ExchangeResult seen;
    rig.queue.submit(rig.comm, oneFrame("held", Protocol::Command::BeginUpload));
    rig.queue.submit(rig.comm, UploadSequences::statusPoll(), [&](const TransportQueue::ExchangeResult& r) {
        replied = true;
        seen = r;
    });
    while (!rig.device->someoneWaitsAtGate())
        std::this_thread::yield();
    rig.comm->release();  // unplugged while the first report is in flight
    rig.device->openGate();
    ASSERT_TRUE(rig.queue.waitForIdle(5s));
    EXPECT_EQ(rig.device->sets(), (std::vector<std::string>{frame({0x04, 0x18})}));
    EXPECT_TRUE(replied) << "the poll learns that it got no reply";
    EXPECT_FALSE(seen.sent);
    EXPECT_FALSE(rig.queue.isBusy());
}

TEST(TransportQueue, BusyFromHandOverToTheEndOfTheLastSequence)
{
    Rig rig;
    std::vector<bool> changes;
    QObject::connect(&rig.queue, &TransportQueue::busyChanged, [&](bool b) { changes.push_back(b); });
    rig.queue.submit(rig.comm, oneFrame("a", Protocol::Command::BeginUpload));
    rig.queue.submit(rig.comm, oneFrame("b", Protocol::Command::EndUpload));
    ASSERT_TRUE(rig.queue.waitForIdle(5s));
    EXPECT_EQ(changes, (std::vector<bool>{true, false}));
    rig.queue.submit(nullptr, oneFrame("no device", Protocol::Command::BeginUpload));
    EXPECT_FALSE(rig.queue.isBusy()) << "nothing is handed over without a transport";
}
