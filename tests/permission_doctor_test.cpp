// The permissions doctor over a fake sysfs, /dev and /run tree, judging for
// an injected user through an injected ACL reader.
#include "HIDDevice/Platform/Linux/PermissionDoctor.h"
#include "HIDDevice/Platform/Linux/PermissionNotice.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <algorithm>
#include <fstream>
#include <set>
#include <unistd.h>

namespace fs = std::filesystem;
using Level = DoctorFinding::Level;

namespace {

void writeFile(const fs::path& file, const std::string& text = {})
{
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

// An ORVANE M61 on bus 3, port 1.4, with hidraw2 and hidraw3 and the usbfs
// node 003/007; the rule in /usr/lib; systemd-logind running; one input
// device. Every node belongs to whoever runs the test, mode 0600, and the
// user judged is someone else: only an ACL entry lets them in.
class FakeMachine : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(tmp.isValid());
        const fs::path usb = root / "sys/bus/usb/devices/3-1.4";
        for (const auto& [name, value] : {std::pair{"idVendor", "0c45"}, {"idProduct", "8075"}, {"busnum", "3"},
                                          {"devnum", "7"}, {"product", "ORVANE M61"}})
            writeFile(usb / name, std::string(value) + "\n");
        for (int n : {0, 1}) {
            writeFile(usb / ("3-1.4:1." + std::to_string(n)) / "bInterfaceNumber", "0" + std::to_string(n) + "\n");
            fs::create_directories(usb / ("3-1.4:1." + std::to_string(n)) / "0003:0C45:8075.000A/hidraw"
                                   / ("hidraw" + std::to_string(n + 2)));
        }
        for (const char* node : {"hidraw2", "hidraw3", "bus/usb/003/007", "input/event0"}) {
            writeFile(root / "dev" / node);
            fs::permissions(root / "dev" / node, fs::perms::owner_read | fs::perms::owner_write);
        }
        fs::create_directories(root / "run/systemd/seats");
        writeFile(root / "usr/lib/udev/rules.d/70-orvane.rules");
        fs::create_directory_symlink("usr/lib", root / "lib");  // a merged /usr
        env.sysRoot = root / "sys";
        env.devRoot = root / "dev";
        env.runRoot = root / "run";
        env.rulesDirs = {root / "etc/udev/rules.d", root / "run/udev/rules.d", root / "usr/lib/udev/rules.d",
                         root / "lib/udev/rules.d"};
        env.strayRulesDirs = {root / "usr/local/lib/udev/rules.d"};
        env.user = {::geteuid() == 4242 ? 4243u : 4242u, "alice", {}};
        env.readAcl = [this](const fs::path& node) {
            if (!granted.count(node.filename().string()))
                return std::vector<AclEntry>();
            return std::vector<AclEntry>{{AclEntry::Tag::User, env.user.uid, 6}, {AclEntry::Tag::Mask, 0, 6}};
        };
    }

    // The one finding whose text holds `part`.
    static DoctorFinding finding(const DoctorReport& report, const QString& part)
    {
        std::vector<DoctorFinding> found;
        for (const DoctorSection& s : report.sections)
            std::copy_if(s.findings.begin(), s.findings.end(), std::back_inserter(found),
                         [&](const DoctorFinding& f) { return f.text.contains(part); });
        EXPECT_EQ(found.size(), 1u) << part.toStdString() << "\n" << report.text().toStdString();
        return found.empty() ? DoctorFinding{} : found.front();
    }

    QString path(const std::string& rel) const { return QString::fromStdString((root / rel).string()); }
    QString node(const char* name) const { return path(std::string("dev/") + name); }

    QTemporaryDir tmp;
    fs::path root = tmp.path().toStdString();
    DoctorEnvironment env;
    std::set<std::string> granted{"hidraw2", "hidraw3", "007", "event0"};
};

const QString kTrigger = "sudo udevadm trigger --action=change --parent-match=/sys/bus/usb/devices/3-1.4";

}  // namespace

TEST_F(FakeMachine, AKeyboardWhoseNodesCarryTheUsersAclIsInOrder)
{
    const DoctorReport report = inspectAccess(env);
    EXPECT_EQ(report.problemCount(), 0) << report.text().toStdString();
    EXPECT_TRUE(report.text().contains("ORVANE M61 (0c45:8075) on USB 3-1.4, /sys/bus/usb/devices/3-1.4"));
    const DoctorFinding hidraw = finding(report, node("hidraw3") + " (hidraw, interface 1)");
    EXPECT_EQ(hidraw.level, Level::Ok);
    EXPECT_TRUE(hidraw.text.endsWith(QString(" 0600, ACL user:%1:rw-: alice may open it.").arg(env.user.uid)))
        << hidraw.text.toStdString();
    EXPECT_EQ(finding(report, node("bus/usb/003/007") + " (usbfs, for uploads)").level, Level::Ok);
    EXPECT_EQ(finding(report, "70-orvane.rules: udev reads it.").text,
              path("usr/lib/udev/rules.d/70-orvane.rules: udev reads it."));
    EXPECT_EQ(finding(report, "systemd-logind runs").level, Level::Ok);
    EXPECT_EQ(finding(report, "alice may read all 1 input devices.").level, Level::Ok);
    EXPECT_TRUE(report.text().endsWith("No problems found.\n"));
}

TEST_F(FakeMachine, ANodeOfAnotherOwnerWithoutAclIsAProblemWithItsCommand)
{
    granted = {"hidraw2"};
    const DoctorReport report = inspectAccess(env);
    EXPECT_EQ(report.problemCount(), 2);
    const DoctorFinding hidraw = finding(report, node("hidraw3"));
    EXPECT_EQ(hidraw.level, Level::Problem);
    EXPECT_TRUE(hidraw.text.contains(" 0600, no ACL: alice may not open it.")) << hidraw.text.toStdString();
    EXPECT_EQ(hidraw.command, kTrigger);
    const DoctorFinding usbfs = finding(report, node("bus/usb/003/007"));
    // Optional, so a note and not a problem, but with its command.
    const DoctorFinding input = finding(report, "alice may read 0 of 1 input devices");
    EXPECT_EQ(input.level, Level::Note);
    EXPECT_EQ(input.command, "sudo usermod -aG input alice");
    // What it gives and what it costs, as an option rather than advice.
    for (const char* said : {"Nothing needs more", "An option, not advice", "every program alice runs may then read every keyboard"})
        EXPECT_TRUE(input.text.contains(said)) << input.text.toStdString();

    // The window's message, posted once, carries this keyboard's problems;
    // both nodes share one fix, said once after them.
    PermissionNotice notice([&](const std::string& n) { return report.problemsFor(n); });
    QStringList posted;
    notice.setSink([&](const QString& m) { posted << m; });
    EXPECT_TRUE(notice.report("ORVANE M61", node("hidraw3").toStdString()));
    EXPECT_FALSE(notice.report("ORVANE M61", node("bus/usb/003/007").toStdString()));
    ASSERT_EQ(posted.size(), 1);
    EXPECT_TRUE(posted[0].startsWith(
        QString("Orvane Keyboard Studio is not allowed to talk to ORVANE M61 (%1).").arg(node("hidraw3"))));
    // Both commands are kTrigger: the message says it once, after both nodes.
    EXPECT_TRUE(posted[0].contains("- " + hidraw.text + "\n- " + usbfs.text + "\n    " + kTrigger + "\n"));
    EXPECT_TRUE(posted[0].contains("orvane --doctor"));
    EXPECT_EQ(report.problemsFor("/dev/hidraw9"), "");  // another keyboard's node
    // Without a doctor the message names the rule to install.
    PermissionNotice plain;
    plain.setSink([&](const QString& m) { posted = {m}; });
    plain.report("ORVANE M61", "/dev/hidraw3");
    EXPECT_TRUE(posted[0].contains("ORVANE M61 (/dev/hidraw3)") && posted[0].contains("unplug"));
    EXPECT_TRUE(posted[0].contains("sudo cp packaging/70-orvane.rules /etc/udev/rules.d/ && "
                                   "sudo udevadm control --reload && sudo udevadm trigger"));

    // Root opens every node, which says nothing of the desktop user.
    env.user = {0, "root", {0}};
    const DoctorReport asRoot = inspectAccess(env);
    EXPECT_EQ(finding(asRoot, node("hidraw3")).level, Level::Ok);
    EXPECT_EQ(finding(asRoot, "Checking for root").command, "sudo orvane --doctor");
    EXPECT_EQ(asRoot.problemCount(), 1);
}

TEST_F(FakeMachine, TheRuleCountsOnlyWhereUdevReadsItAndASeatManagerMustRun)
{
    const QString reload = "sudo udevadm control --reload", etc = path("etc/udev/rules.d");
    const QString triggerAll = "sudo udevadm trigger --action=change --subsystem-match=usb --subsystem-match=hidraw";
    fs::remove(root / "usr/lib/udev/rules.d/70-orvane.rules");
    EXPECT_EQ(finding(inspectAccess(env), "is not installed").command,
              QString("sudo cp packaging/70-orvane.rules %1/ && %2 && %3").arg(etc, reload, triggerAll));
    env.installedByPackage = true;
    EXPECT_EQ(finding(inspectAccess(env), "is not installed").command, "sudo apt-get install --reinstall orvane-keyboard-studio");

    writeFile(root / "usr/local/lib/udev/rules.d/70-orvane.rules");  // a local copy udev does not read
    const QString local = path("usr/local/lib/udev/rules.d/70-orvane.rules");
    for (const QString& command : {QString("sudo mv %1 %2/ && %3 && %4").arg(local, etc, reload, triggerAll),
                                   QString("sudo rm %1 && %2").arg(local, reload)}) {
        EXPECT_EQ(inspectAccess(env).problemCount(), 1);
        EXPECT_EQ(finding(inspectAccess(env), local).command, command);
        writeFile(root / "etc/udev/rules.d/70-orvane.rules");  // with a copy where udev reads: only remove
    }

    // Without a seat manager uaccess gives no one the keyboard.
    fs::remove(root / "usr/local/lib/udev/rules.d/70-orvane.rules");  // the rule is in order again
    fs::remove_all(root / "run/systemd/seats");
    EXPECT_EQ(inspectAccess(env).problemCount(), 1);
    EXPECT_EQ(finding(inspectAccess(env), "Neither systemd-logind nor elogind runs").command,
              "sudo apt-get install elogind libpam-elogind");
    fs::create_directories(root / "run/systemd/system");  // booted with systemd
    EXPECT_EQ(finding(inspectAccess(env), "Neither").command, "sudo apt-get install libpam-systemd");

    writeFile(root / "run/systemd/seats/seat0", "IS_SEAT0=1\nACTIVE_UID=4244\n");
    EXPECT_EQ(finding(inspectAccess(env), "The session at the screen (seat0)").command, "loginctl list-sessions");

    fs::remove_all(root / "sys/bus/usb/devices/3-1.4");  // unplugged: nothing is in order
    EXPECT_EQ(inspectAccess(env).problemCount(), 1);
    EXPECT_EQ(finding(inspectAccess(env), "No Orvane keyboard").level, Level::Problem);
}

TEST(NodeAccess, JudgedAsTheKernelJudgesIt)
{
    const AccessUser alice{1000, "alice", {1000, 20}};
    const unsigned rw = kMayRead | kMayWrite;
    EXPECT_FALSE(mayAccess({1000, 0, 0400}, {}, alice, rw));  // the owner's bits bind the owner
    EXPECT_TRUE(mayAccess({0, 20, 0660}, {}, alice, rw));      // through a group
    EXPECT_TRUE(mayAccess({0, 21, 0606}, {}, alice, rw));      // others
    EXPECT_FALSE(mayAccess({0, 20, 0606}, {}, alice, rw));     // a group member is not an other
    using T = AclEntry::Tag;
    EXPECT_FALSE(mayAccess({0, 0, 0640}, {{T::User, 1000, 6}, {T::Mask, 0, 4}}, alice, rw));  // the mask limits
    EXPECT_TRUE(mayAccess({0, 0, 0660}, {{T::Group, 20, 6}, {T::Mask, 0, 6}}, alice, rw));
    EXPECT_TRUE(mayAccess({0, 0, 0600}, {}, {0, "root", {0}}, rw));

    // version 2; user obj rw-; user 1000 rw-; mask rw-; other ---
    const uint8_t xattr[] = {2, 0, 0, 0, 1, 0, 6, 0, 0xFF, 0xFF, 0xFF, 0xFF, 2, 0, 6, 0, 0xE8, 3, 0, 0,
                             0x10, 0, 6, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0x20, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF};
    const std::vector<AclEntry> acl = parseAclXattr(xattr);
    ASSERT_EQ(acl.size(), 4u);
    EXPECT_TRUE(acl[1].tag == T::User && acl[1].id == 1000u && acl[1].perms == 6u);
    EXPECT_TRUE(mayAccess({0, 0, 0660}, acl, alice, rw));
    EXPECT_TRUE(parseAclXattr(std::span(xattr, 10)).empty());

    // Through sudo (or pkexec) the caller is judged; a bad id or an ordinary user changes nothing.
    EXPECT_EQ(std::vector({doctorTargetUid(0, "1000", nullptr), doctorTargetUid(0, nullptr, "1001"),
                           doctorTargetUid(0, "x", nullptr), doctorTargetUid(1000, "0", nullptr)}),
              std::vector({1000u, 1001u, 0u, 1000u}));
}
