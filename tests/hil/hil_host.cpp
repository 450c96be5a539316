// The computer's side of the USB rig: finds the keyboard through the Linux
// backend on a Qt event loop and drives it through DeviceComm on a transport
// thread, as the application does.
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
//   REPLY <hex>                      a status reply as getDeviceData returned it
//   CHECK ok|FAIL <what>             an observation of the run

#include "Common/Hex.h"
#include "HIDDevice/DeviceComm.h"
#include "HIDDevice/HIDDevice.h"
#include "HIDDevice/Platform/HidManager.h"
#include "Protocol/CommandFrame.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <grp.h>
#include <string>
#include <unistd.h>
#include <thread>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;
using Protocol::Command;

constexpr int kConfigInterface = 1;

Bytes frame(Command c, uint8_t target = 0, uint8_t count = 0) { return CommandFrame(c, target, count).toVector(); }

// A key table upload's buffer: 576 known bytes ending in the 0xAA 0x55
// marker, in a 780-byte buffer whose tail must never be sent.
Bytes keyTableBuffer()
{
    Bytes b(Protocol::kKeyTableBufferSize, 0xEE);
    for (std::size_t i = 0; i < Protocol::kKeyTableBytes; ++i)
        b[i] = uint8_t(i * 7 + 3 + i / 256);  // no two reports alike
    b[574] = Protocol::kEndMarker0;
    b[575] = Protocol::kEndMarker1;
    return b;
}

// The whole conversation: status poll, key table upload for profile 1,
// status poll again (over hidraw, after the driver came back).
struct Script {
    Bytes poll = frame(Command::ReadStatus);
    Bytes endUpload = frame(Command::EndUpload);
    Bytes beginUpload = frame(Command::BeginUpload);
    Bytes keyTable = frame(Command::KeyTable, 1, 9);
    Bytes table = keyTableBuffer();
};

void printExpected()
{
    const Script s;
    auto set = [](const uint8_t* p) { std::printf("WIRE SET 0304 %04x %s\n", kConfigInterface, hexString({p, 64}).c_str()); };
    auto get = [] { std::printf("WIRE GET 0304 %04x\n", kConfigInterface); };
    auto exchange = [&](const Bytes& f) { set(f.data()); get(); };
    exchange(s.poll);
    exchange(s.endUpload);
    exchange(s.beginUpload);
    exchange(s.keyTable);
    for (std::size_t i = 0; i < Protocol::kKeyTableReports; ++i)
        set(s.table.data() + 64 * i);
    exchange(s.endUpload);
    exchange(s.poll);
    exchange(s.endUpload);
}

int failures = 0;
void check(bool ok, const std::string& what)
{
    std::printf("CHECK %s %s\n", ok ? "ok" : "FAIL", what.c_str());
    std::fflush(stdout);
    if (!ok)
        ++failures;
}

void runConversation(const std::shared_ptr<HidDeviceHandle>& handle)
{
    const Script s;
    DeviceComm comm(handle);
    auto poll = [&] {
        Bytes status = s.poll;
        status.resize(Protocol::kFrameBufferSize);
        check(comm.getDeviceData(status), "status poll read");
        std::printf("REPLY %s\n", hexString({status.data(), 64}).c_str());
        check(comm.sendDeviceData(s.endUpload), "status poll closed");
    };
    poll();
    handle->beginSequence(true);
    check(comm.sendDeviceData(s.beginUpload), "upload opened");
    check(comm.sendDeviceData(s.keyTable), "key table header");
    check(comm.sendDeviceData(s.table, int(Protocol::kKeyTableRunLength)), "key table data");
    check(comm.sendDeviceData(s.endUpload), "upload closed");
    handle->endSequence();
    poll();
}

// Without access every step must fail cleanly, and nothing reach the device.
void runWithoutAccess(const std::shared_ptr<HidDeviceHandle>& handle)
{
    const Script s;
    DeviceComm comm(handle);
    Bytes status = s.poll;
    check(!comm.getDeviceData(status), "status poll refused without access");
    handle->beginSequence(true);
    check(!comm.sendDeviceData(s.beginUpload), "upload refused without access");
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
    manager->registerDeviceMatchingCallback([&](const std::shared_ptr<HidDeviceHandle>& handle) {
        ++arrivals;
        const HIDDevice device(handle);
        std::printf("ARRIVAL location=%08x product=\"%s\" input=%d feature=%d\n", unsigned(device.id),
                    device.name.toUtf8().constData(), device.reportSize, device.featureSize);
        if (!isConfigurationInterface(device) || config)
            return;
        config = handle;
        check(device.name == "ORVANE M61", "product string from the USB device");
        transport = std::thread([&app, handle, withoutAccess] {
            if (withoutAccess)
                runWithoutAccess(handle);
            else
                runConversation(handle);
            // Give the monitor time to hear of our own driver detach and
            // re-attach, so that any callback they wrongly cause shows below.
            QMetaObject::invokeMethod(&app, [] { QTimer::singleShot(1000, qApp, &QCoreApplication::quit); },
                                      Qt::QueuedConnection);
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
