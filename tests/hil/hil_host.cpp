// The computer's side of the USB rig: finds the keyboard through the Linux
// backend on a Qt event loop and drives it through the transport queue with
// the application's own upload sequences, as the application does.
//
//   orvane_hil_host             run against the device, print what came back
//   orvane_hil_host --expected  print the wire traffic the run must cause
//   orvane_hil_host --as-uid N  run as an unprivileged user without our udev
//                               rule: expect one permission message and no
//                               traffic
//
// Output lines (both modes where they apply):
//   WIRE SET <value> <index> <hex>   a feature report SET the device must see
//   WIRE GET <value> <index>         a GET it must see
//   WIRE BIND                        usbhid binding the configuration interface
//                                    (it fetches the report descriptor): at
//                                    plug-in, and when a sequence that carries
//                                    data reports gives its usbfs claim back
//   REPLY <hex>                      a status reply as getDeviceData returned it
//   CHECK ok|FAIL <what>             an observation of the run

#include "Common/Hex.h"
#include "HIDDevice/DeviceComm.h"
#include "HIDDevice/HIDDevice.h"
#include "HIDDevice/Platform/HidManager.h"
#include "HIDDevice/TransportQueue.h"
#include "Protocol/CommandFrame.h"
#include "Protocol/UploadSequences.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <grp.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;
using Protocol::Command;

constexpr int kConfigInterface = 1;

Bytes frame(Command c, uint8_t target = 0, uint8_t count = 0) { return CommandFrame(c, target, count).toVector(); }

// A key table: 576 known bytes ending in the 0xAA 0x55 marker.
UploadSequences::NineReports keyTable()
{
    UploadSequences::NineReports b{};
    for (std::size_t i = 0; i < b.size(); ++i)
        b[i] = uint8_t(i * 7 + 3 + i / 256);  // no two reports alike
    b[574] = Protocol::kEndMarker0;
    b[575] = Protocol::kEndMarker1;
    return b;
}

// Light mode 4: its block starts with 0x04, the report id's value, which
// must still go out as payload under report 4.
UploadSequences::Report lightBlock()
{
    UploadSequences::Report b{};
    const uint8_t head[] = {0x04, 0x03, 0x02, 0x01, 0x00, 0xFF, 0x80, 0x40};
    std::copy(std::begin(head), std::end(head), b.begin());
    b[14] = Protocol::kEndMarker0;
    b[15] = Protocol::kEndMarker1;
    return b;
}

// Windows key and Alt+Tab locked.
UploadSequences::Report systemBlock()
{
    UploadSequences::Report b{};
    b[0] = 0x83;
    b[62] = Protocol::kEndMarker0;
    b[63] = Protocol::kEndMarker1;
    return b;
}

// The whole conversation: a status poll, then a key table, a light mode and
// a system settings upload for profile 2, then a status poll again (over
// hidraw, after the driver came back).
std::vector<ReportSequence> conversation()
{
    return {UploadSequences::statusPoll(), UploadSequences::keyTable(2, keyTable()),
            UploadSequences::lightMode(2, lightBlock()), UploadSequences::systemSettings(2, systemBlock()),
            UploadSequences::statusPoll()};
}

// What the rig's keyboard does once each: it asks for the first light mode
// header again (byte 3 = 0xFF), and answers the first key table with a wrong
// sum, so that upload goes out twice.
constexpr uint8_t kRepeatedFrameCommand = 0x13;
constexpr uint8_t kWrongSumHeader = 0x11;

void printExpected()
{
    auto set = [](const uint8_t* p) { std::printf("WIRE SET 0304 %04x %s\n", kConfigInterface, hexString({p, 64}).c_str()); };
    auto get = [] { std::printf("WIRE GET 0304 %04x\n", kConfigInterface); };
    std::printf("WIRE BIND\n");
    bool frameRepeated = false, uploadRepeated = false;
    for (const ReportSequence& sequence : conversation()) {
        const bool again = !uploadRepeated && sequence.steps.size() > 1 && sequence.steps[1].data[1] == kWrongSumHeader;
        uploadRepeated = uploadRepeated || again;
        for (int send = 0; send < (again ? 2 : 1); ++send) {
            for (const ReportStep& step : sequence.steps) {
                if (step.kind == ReportStep::Kind::Run) {
                    for (int i = 0; i + 1 < step.length / 64; ++i)
                        set(step.data.data() + 64 * i);
                } else if (step.kind != ReportStep::Kind::Sleep) {
                    const bool twice = !step.dataReport && step.data[1] == kRepeatedFrameCommand && !frameRepeated;
                    frameRepeated = frameRepeated || twice;
                    for (int i = 0; i < (twice ? 2 : 1); ++i) {
                        set(step.data.data());
                        get();
                    }
                }
            }
        }
        if (sequence.carriesDataReports())
            std::printf("WIRE BIND\n");
    }
}

int failures = 0;
void check(bool ok, const std::string& what)
{
    std::printf("CHECK %s %s\n", ok ? "ok" : "FAIL", what.c_str());
    std::fflush(stdout);
    if (!ok)
        ++failures;
}

// Hands the conversation to the queue; `done` runs once everything went out.
void runConversation(TransportQueue& queue, const std::shared_ptr<HidDeviceHandle>& handle,
                     const std::function<void()>& done)
{
    auto comm = std::make_shared<DeviceComm>(handle);
    auto onReply = [](const TransportQueue::ExchangeResult& r) {
        check(r.ok(), "status poll read" + (r.ok() ? std::string() : ": " + r.status.reason()));
        std::printf("REPLY %s\n", hexString({r.reply.data(), 64}).c_str());
    };
    for (ReportSequence& sequence : conversation()) {
        const bool poll = sequence.name == "status poll";
        const std::string name = sequence.name;
        auto onEnd = [name, poll](bool finished) {
            if (!poll)
                check(finished, name + ": finished, its sum confirmed by the keyboard");
        };
        check(queue.submit(comm, std::move(sequence), poll ? TransportQueue::ReplyHandler(onReply) : nullptr, onEnd),
              "sequence handed over");
    }
    QObject::connect(&queue, &TransportQueue::uploadNotConfirmed, [](int header, int) {
        check(false, "upload with header " + std::to_string(header) + " confirmed");
    });
    QObject::connect(&queue, &TransportQueue::busyChanged, [done](bool busy) {
        if (!busy)
            done();
    });
}

// Without access every step must fail cleanly, and nothing reach the device.
void runWithoutAccess(const std::shared_ptr<HidDeviceHandle>& handle)
{
    DeviceComm comm(handle);
    Bytes status = frame(Command::ReadStatus);
    check(!comm.getDeviceData(status), "status poll refused without access");
    handle->beginSequence(true);
    check(!comm.sendDeviceData(frame(Command::BeginUpload)), "upload refused without access");
    handle->endSequence();
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && std::strcmp(argv[1], "--expected") == 0) {
        printExpected();
        return 0;
    }
    const bool withoutAccess = argc > 2 && std::strcmp(argv[1], "--as-uid") == 0;
    if (withoutAccess) {
        const auto uid = static_cast<uid_t>(std::atoi(argv[2]));
        if (setgroups(0, nullptr) != 0 || setgid(uid) != 0 || setuid(uid) != 0) {
            std::perror("dropping privileges");
            return 1;
        }
    }
    QCoreApplication app(argc, argv);
    std::unique_ptr<HidManager> manager = createPlatformHidManager();
    manager->setDeviceMatching({{OrvaneUsb::kVendorId, OrvaneUsb::kProductIdPrimary},
                                {OrvaneUsb::kVendorId, OrvaneUsb::kProductIdSecondary}});

    int arrivals = 0, removals = 0, problems = 0;
    std::shared_ptr<HidDeviceHandle> config;
    std::thread transport;
    TransportQueue queue;
    manager->registerDeviceMatchingCallback([&](const std::shared_ptr<HidDeviceHandle>& handle) {
        ++arrivals;
        const HIDDevice device(handle);
        std::printf("ARRIVAL location=%08x product=\"%s\" input=%d feature=%d\n", unsigned(device.id),
                    device.name.toUtf8().constData(), device.reportSize, device.featureSize);
        if (!isConfigurationInterface(device) || config)
            return;
        config = handle;
        check(device.name == "ORVANE M61", "product string from the USB device");
        // Give the monitor time to hear of our own driver detach and
        // re-attach, so that any callback they wrongly cause shows below.
        auto finish = [] { QTimer::singleShot(1000, qApp, &QCoreApplication::quit); };
        if (!withoutAccess) {
            runConversation(queue, handle, finish);
            return;
        }
        transport = std::thread([handle, finish] {
            runWithoutAccess(handle);
            QMetaObject::invokeMethod(qApp, finish, Qt::QueuedConnection);
        });
    });
    manager->registerDeviceRemovalCallback([&](const std::shared_ptr<HidDeviceHandle>&) { ++removals; });
    manager->registerProblemCallback([&](const QString& m) {
        ++problems;
        std::printf("PROBLEM %s\n", QString(m).replace('\n', ' ').toUtf8().constData());
        // The VM has the rule but no seat manager, so "uaccess" gives the
        // user nothing: the doctor's findings must say so, with commands.
        check(m.contains("may not open it.") && m.contains("sudo udevadm trigger --action=change --parent-match=/sys/")
                  && m.contains("Neither systemd-logind nor elogind runs") && m.contains("sudo apt-get install")
                  && m.contains("orvane --doctor"),
              "permission message gives the doctor's findings with their commands");
    });
    check(manager->open(), "manager opened");
    QTimer::singleShot(30000, &app, [&] {
        check(false, "keyboard found in time");
        app.quit();
    });
    app.exec();
    if (transport.joinable())
        transport.join();
    check(config != nullptr, "configuration interface found");
    check(arrivals == 2, "two interfaces arrived, once each (" + std::to_string(arrivals) + ")");
    check(removals == 0, "no removal from our own detach and re-attach (" + std::to_string(removals) + ")");
    check(problems == (withoutAccess ? 1 : 0), "permission messages: " + std::to_string(problems));
    std::printf("HOST %s\n", failures ? "FAIL" : "PASS");
    return failures ? 1 : 0;
}
