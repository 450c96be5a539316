// The transport thread: order on the wire, the poll's continuation, and
// what happens when the keyboard goes away.
#include "support/CapturedLines.h"
#include "HIDDevice/TransportQueue.h"
#include "Protocol/UploadSequences.h"
#include "support/HexBytes.h"
#include "support/RecordingHidDevice.h"
#include "Simulator/VirtualKeyboard.h"

#include <QCoreApplication>

#include <latch>
#include <optional>
#include <gtest/gtest.h>

using namespace testing_support;
using namespace std::chrono_literals;

namespace {

using Frames = std::vector<std::string>;
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

TEST(TransportQueue, SequencesGoOutWholeInOrderAndTheQueueIsBusyFromHandOverToTheEnd)
{
    Rig rig;
    rig.device->recordBrackets = true;
    std::vector<bool> changes;
    QObject::connect(&rig.queue, &TransportQueue::busyChanged, [&](bool b) { changes.push_back(b); });
    std::vector<bool> verdicts;
    const auto note = [&](bool finished) { verdicts.push_back(finished); };
    captureLines();
    rig.queue.submit(rig.comm, oneFrame("a", Protocol::Command::BeginUpload), {}, note);
    rig.queue.submit(rig.comm, oneFrame("b", Protocol::Command::EndUpload, 1), {}, note);
    rig.queue.submit(rig.comm, UploadSequences::systemSettings(2, UploadSequences::Report{0x81}), {}, note);
    EXPECT_EQ(rig.queue.pending(), 3);
    ASSERT_TRUE(rig.queue.waitForIdle(5s));
    capturedLines();
    // A sequence with data reports, even a single one, asks for the exact path for its whole length.
    EXPECT_EQ(rig.device->sets(), (Frames{"begin", frame({0x04, 0x18}), "end", "begin",
                                          frame({0x04, 0x02, 0x01}), "end", "begin data", frame({0x04, 0x18}),
                                          frame({0x04, 0x17, 0x02, 0, 0, 0, 0, 0, 0x01}), frame({0x81}),
                                          frame({0x04, 0x02}), "end"}));
    EXPECT_EQ(changes, (std::vector<bool>{true, false}));
    EXPECT_EQ(verdicts, (std::vector<bool>{true, true, true})) << "each finished";
    rig.queue.submit(nullptr, oneFrame("no device", Protocol::Command::BeginUpload));
    EXPECT_FALSE(rig.queue.isBusy()) << "nothing is handed over without a transport";
}

TEST(TransportQueue, AValueThatDoesNotFitItsByteIsNotSentAndALineSaysSo)
{
    Rig rig;
    const UploadSequences::Report block{};
    const UploadSequences::NineReports nine{};
    captureLines();
    for (ReportSequence sequence : {UploadSequences::keyTable(256, nine), UploadSequences::lightMode(-1, block),
                                    UploadSequences::systemSettings(300, block),
                                    UploadSequences::userLightColors(128, nine),
                                    UploadSequences::macroStore(std::vector<uint8_t>(256 * 64, 0))})
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
    rig.device->replyProfile = 3;
    int seenProfile = 0;
    rig.queue.submit(rig.comm, UploadSequences::statusPoll(), [&](const TransportQueue::ExchangeResult& r) {
        seenProfile = r.reply[9];
        rig.queue.submit(rig.comm, oneFrame("switch", Protocol::Command::LightMode, 3));
    });
    // Handed over while the poll is in flight: must not cut into it.
    rig.queue.submit(rig.comm, oneFrame("later", Protocol::Command::SystemSet, 9));
    ASSERT_TRUE(rig.queue.waitForIdle(5s));
    EXPECT_EQ(seenProfile, 3);
    EXPECT_EQ(rig.device->sets(), (Frames{frame({0x04, 0x30}), frame({0x04, 0x13, 0x03}), frame({0x04, 0x02}),
                                          frame({0x04, 0x17, 0x09})}));
}

TEST(TransportQueue, AReleasedTransportSkipsEveryStepButTheSequenceStillEnds)
{
    Rig rig;
    rig.device->setGate(false);
    std::optional<TransportQueue::ExchangeResult> seen;
    rig.queue.submit(rig.comm, oneFrame("held", Protocol::Command::BeginUpload));
    rig.queue.submit(rig.comm, UploadSequences::statusPoll(), [&](const TransportQueue::ExchangeResult& r) { seen = r; });
    while (!rig.device->someoneWaitsAtGate())
        std::this_thread::yield();
    rig.comm->release();  // unplugged while the first report is in flight
    rig.device->setGate(true);
    ASSERT_TRUE(rig.queue.waitForIdle(5s));
    EXPECT_EQ(rig.device->sets(), Frames{frame({0x04, 0x18})});
    ASSERT_TRUE(seen) << "the poll learns that it got no reply";
    EXPECT_FALSE(seen->sent);
    EXPECT_FALSE(rig.queue.isBusy());
}

TEST(TransportQueue, AKeyboardAskingForEveryFrameAgainIsAnnouncedOnceAndWhatIsLeftForItIsDropped)
{
    VirtualKeyboard kb(VirtualKeyboard::Model::M61);
    kb.setRepeatForever(true);
    // The real 10 ms pauses, so the keyboard sees the host's pacing.
    const auto comm = std::make_shared<DeviceComm>(kb.interfaceHandle(VirtualKeyboard::Interface::Configuration));
    TransportQueue queue;
    int announced = 0;
    QObject::connect(&queue, &TransportQueue::keyboardNotAnswering, [&] { ++announced; });
    std::vector<bool> verdicts;
    const auto note = [&](bool finished) { verdicts.push_back(finished); };
    queue.submit(comm, UploadSequences::keyTable(1, UploadSequences::NineReports{}), {}, note);
    queue.submit(comm, UploadSequences::lightMode(1, UploadSequences::Report{}), {}, note);
    queue.submit(comm, oneFrame("later", Protocol::Command::SystemSet, 9), {}, note);
    ASSERT_TRUE(queue.waitForIdle(5s));
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(verdicts, (std::vector<bool>{false, false, false})) << "none finished";
    EXPECT_EQ(queue.pending(), 0);
    EXPECT_TRUE(comm->isReleased());
    // The first frame and its one repeat, both answered 0xFF; nothing after.
    Frames wire;
    for (const TraceRecord& r : kb.recentTrace())
        wire.push_back((r.op == TraceRecord::Op::Set ? "set " : "get ") + hexFromBytes({r.data.begin(), r.data.end()}));
    const std::string begin = frame({0x04, 0x18}), asked = frame({0x04, 0x18, 0, 0xFF});
    EXPECT_EQ(wire, (Frames{"set " + begin, "get " + asked, "set " + begin, "get " + asked}));
}

namespace {
// A keyboard whose every read hangs: the latch is never counted down.
struct HangingReadDevice : RecordingHidDevice {
    std::shared_ptr<std::latch> never = std::make_shared<std::latch>(1);
    std::atomic<bool> reading = false;
    HidStatus getFeatureReport(uint8_t, std::span<uint8_t>, std::size_t&) override
    {
        reading = true;
        never->wait();
        return {};
    }
};
}  // namespace

TEST(TransportQueue, ShutdownDoesNotWaitForATransferThatNeverReturns)
{
    const auto device = std::make_shared<HangingReadDevice>();
    auto queue = std::make_unique<TransportQueue>();
    bool destroyed = false;
    QObject::connect(queue.get(), &QObject::destroyed, [&] { destroyed = true; });
    queue->submit(std::make_shared<DeviceComm>(device, [](std::chrono::milliseconds) {}), UploadSequences::statusPoll(),
                  [](const TransportQueue::ExchangeResult&) { ADD_FAILURE() << "no reply can come"; });
    while (!device->reading)
        std::this_thread::yield();
    queue.reset();  // without the bounded wait this never returns, and the test's timeout fails it
    EXPECT_TRUE(destroyed);
    EXPECT_EQ(device->sets(), Frames{frame({0x04, 0x30})});
}
