#include "HIDDevice/Platform/Linux/PermissionDoctor.h"

#include "HIDDevice/Platform/Linux/SysfsHidInterface.h"

#include <algorithm>
#include <fstream>
#include <system_error>

namespace fs = std::filesystem;

namespace {

using Level = DoctorFinding::Level;

constexpr int kOrvaneVendor = 0x0C45;
constexpr int kOrvaneProducts[] = {0x8075, 0x8006};
const char* const kRuleName = "70-orvane.rules";
const char* const kReload = "sudo udevadm control --reload";
const char* const kTriggerAll = "sudo udevadm trigger --action=change --subsystem-match=usb --subsystem-match=hidraw";

QString q(const fs::path& p) { return QString::fromStdString(p.string()); }
QString q(const std::string& s) { return QString::fromStdString(s); }

std::vector<fs::path> sortedEntries(const fs::path& dir)
{
    std::vector<fs::path> entries;
    std::error_code ec;
    for (const fs::directory_entry& e : fs::directory_iterator(dir, ec))
        entries.push_back(e.path());
    std::sort(entries.begin(), entries.end());
    return entries;
}

// The path udev knows a device by, for commands: the resolved sysfs path
// with the sysfs root written as /sys.
QString sysPathForCommand(const DoctorEnvironment& env, const fs::path& device)
{
    std::error_code ec;
    const fs::path real = fs::canonical(device, ec);
    const fs::path root = fs::canonical(env.sysRoot, ec);
    if (real.empty() || root.empty())
        return q(device);
    return q(fs::path("/sys") / real.lexically_relative(root));
}

DoctorFinding nodeFinding(const DoctorEnvironment& env, const fs::path& node, const QString& label,
                          const QString& trigger)
{
    const QString name = q(node);
    const std::optional<NodeOwnership> own = readOwnership(node);
    if (!own)
        return {Level::Problem, QStringLiteral("%1 (%2) is missing: udev has not made the node.").arg(name, label),
                trigger};
    const std::vector<AclEntry> acl = env.readAcl ? env.readAcl(node) : std::vector<AclEntry>();
    const bool ok = mayAccess(*own, acl, env.user, kMayRead | kMayWrite);
    const QString text = QStringLiteral("%1 (%2): %3: %4 %5 open it.")
                             .arg(name, label, q(describeAccess(*own, acl)), q(env.user.name),
                                  ok ? QStringLiteral("may") : QStringLiteral("may not"));
    if (ok)
        return {Level::Ok, text, {}};
    return {Level::Problem,
            text + QStringLiteral(" With the rule installed and a seat manager running, apply the rule to the keyboard"
                                  " (or unplug it and plug it in again):"),
            trigger};
}

std::optional<DoctorSection> inspectKeyboard(const DoctorEnvironment& env, const fs::path& usbDir)
{
    const std::string usbName = usbDir.filename().string();
    const auto vid = readSysfsNumber(usbDir / "idVendor", 16);
    const auto pid = readSysfsNumber(usbDir / "idProduct", 16);
    if (usbName.find(':') != std::string::npos || vid != kOrvaneVendor || !pid
        || std::find(std::begin(kOrvaneProducts), std::end(kOrvaneProducts), *pid) == std::end(kOrvaneProducts))
        return std::nullopt;

    const QString sysPath = sysPathForCommand(env, usbDir);
    const QString trigger = QStringLiteral("sudo udevadm trigger --action=change --parent-match=%1").arg(sysPath);
    DoctorSection section;
    section.aboutKeyboard = true;
    section.title = QStringLiteral("%1 (%2:%3) on USB %4, %5")
                        .arg(q(readSysfsLine(usbDir / "product").value_or("Orvane keyboard")))
                        .arg(*vid, 4, 16, QLatin1Char('0'))
                        .arg(*pid, 4, 16, QLatin1Char('0'))
                        .arg(q(usbName), sysPath);
    for (const fs::path& intf : sortedEntries(usbDir)) {
        if (intf.filename().string().rfind(usbName + ":", 0) != 0)
            continue;
        const std::optional<std::string> hidraw = findHidrawName(intf);
        if (!hidraw)
            continue;  // no HID driver bound (ours, during an upload, or none)
        const fs::path node = env.devRoot / *hidraw;
        const int ifnum = readSysfsNumber(intf / "bInterfaceNumber", 16).value_or(-1);
        section.nodes.push_back(node.string());
        section.findings.push_back(nodeFinding(env, node, QStringLiteral("hidraw, interface %1").arg(ifnum), trigger));
    }
    const auto bus = readSysfsNumber(usbDir / "busnum", 10);
    const auto dev = readSysfsNumber(usbDir / "devnum", 10);
    if (bus && dev) {
        const fs::path node = usbfsNode(env.devRoot, *bus, *dev);
        section.nodes.push_back(node.string());
        section.findings.push_back(nodeFinding(env, node, QStringLiteral("usbfs, for uploads"), trigger));
    }
    return section;
}

std::vector<DoctorSection> inspectKeyboards(const DoctorEnvironment& env)
{
    std::vector<DoctorSection> sections;
    for (const fs::path& usbDir : sortedEntries(env.sysRoot / "bus/usb/devices"))
        if (std::optional<DoctorSection> section = inspectKeyboard(env, usbDir))
            sections.push_back(std::move(*section));
    if (sections.empty())
        sections.push_back({QStringLiteral("Keyboards"), {}, {{Level::Problem,
            QStringLiteral("No Orvane keyboard (USB 0c45:8075 or 0c45:8006) is connected. Plug it in and check again:"),
            QStringLiteral("orvane --doctor")}}});
    return sections;
}

DoctorSection inspectRule(const DoctorEnvironment& env)
{
    DoctorSection section{QStringLiteral("udev rule (%1)").arg(QLatin1String(kRuleName)), {}, {}};
    std::vector<fs::path> read;
    for (const fs::path& dir : env.rulesDirs) {
        const fs::path rule = dir / kRuleName;
        std::error_code ec;
        const bool seen = std::any_of(read.begin(), read.end(), [&](const fs::path& r) { return fs::equivalent(r, rule, ec); });
        if (fs::exists(rule, ec) && !seen)  // /lib and /usr/lib are one folder on a merged system
            read.push_back(rule);
    }
    for (const fs::path& rule : read)
        section.findings.push_back({Level::Ok, QStringLiteral("%1: udev reads it.").arg(q(rule)), {}});

    const QString adminDir = env.rulesDirs.empty() ? QStringLiteral("/etc/udev/rules.d") : q(env.rulesDirs.front());
    bool stray = false;
    for (const fs::path& dir : env.strayRulesDirs) {
        const fs::path rule = dir / kRuleName;
        std::error_code ec;
        if (!fs::exists(rule, ec))
            continue;
        stray = true;
        if (!read.empty())
            section.findings.push_back({Level::Problem,
                QStringLiteral("%1: a copy left by a local install beside %2; where udev reads both, one hides the other."
                               " Remove it:").arg(q(rule), q(read.front())),
                QStringLiteral("sudo rm %1 && %2").arg(q(rule), QLatin1String(kReload))});
        else
            section.findings.push_back({Level::Problem,
                QStringLiteral("%1: a local install's copy, in a folder that not every udev reads (eudev and older"
                               " udev skip it). Move it to %2:").arg(q(rule), adminDir),
                QStringLiteral("sudo mv %1 %2/ && %3 && %4").arg(q(rule), adminDir, QLatin1String(kReload),
                                                                  QLatin1String(kTriggerAll))});
    }
    if (read.empty() && !stray) {
        const QString install = env.installedByPackage
            ? QStringLiteral("sudo apt-get install --reinstall orvane-keyboard-studio")
            : QStringLiteral("sudo cp packaging/70-orvane.rules %1/ && %2 && %3")
                  .arg(adminDir, QLatin1String(kReload), QLatin1String(kTriggerAll));
        section.findings.push_back({Level::Problem,
            QStringLiteral("The udev rule %1 is not installed: without it only root may open the keyboard."
                           " Install it%2:")
                .arg(QLatin1String(kRuleName), env.installedByPackage ? QString() : QStringLiteral(" (from the source folder)")),
            install});
    }
    return section;
}

std::optional<uint32_t> activeSeatUser(const fs::path& seatFile)
{
    std::ifstream in(seatFile);
    std::string line;
    while (std::getline(in, line))
        if (line.rfind("ACTIVE_UID=", 0) == 0)
            return uint32_t(std::strtoul(line.c_str() + 11, nullptr, 10));
    return std::nullopt;
}

DoctorSection inspectSeat(const DoctorEnvironment& env)
{
    DoctorSection section{QStringLiteral("Seat manager"), {}, {}};
    std::error_code ec;
    const bool elogind = fs::exists(env.runRoot / "elogind.pid", ec);
    const bool logind = fs::is_directory(env.runRoot / "systemd/seats", ec);
    if (!elogind && !logind) {
        const bool systemdBooted = fs::is_directory(env.runRoot / "systemd/system", ec);
        section.findings.push_back({Level::Problem,
            QStringLiteral("Neither systemd-logind nor elogind runs, so the rule's \"uaccess\" gives no one the keyboard."
                           " Install one, then log out and in:"),
            systemdBooted ? QStringLiteral("sudo apt-get install libpam-systemd")
                          : QStringLiteral("sudo apt-get install elogind libpam-elogind")});
        return section;
    }
    section.findings.push_back({Level::Ok,
        QStringLiteral("%1 runs: the rule's \"uaccess\" gives the keyboard to the user at the screen.")
            .arg(elogind ? QStringLiteral("elogind") : QStringLiteral("systemd-logind")), {}});
    const std::optional<uint32_t> active = activeSeatUser(env.runRoot / "systemd/seats/seat0");
    if (active && *active != env.user.uid)
        section.findings.push_back({Level::Note,
            QStringLiteral("The session at the screen (seat0) is %1's, not %2's: the keyboard follows that session."
                           " The sessions:").arg(q(userName(*active)), q(env.user.name)),
            QStringLiteral("loginctl list-sessions")});
    return section;
}

DoctorSection inspectInput(const DoctorEnvironment& env)
{
    DoctorSection section{QStringLiteral("Input devices (keys typed in other windows)"), {}, {}};
    int total = 0, readable = 0;
    for (const fs::path& node : sortedEntries(env.devRoot / "input")) {
        if (node.filename().string().rfind("event", 0) != 0)
            continue;
        ++total;
        const std::optional<NodeOwnership> own = readOwnership(node);
        if (own && mayAccess(*own, env.readAcl ? env.readAcl(node) : std::vector<AclEntry>(), env.user, kMayRead))
            ++readable;
    }
    const QString user = q(env.user.name);
    if (total == 0)
        section.findings.push_back({Level::Note,
            QStringLiteral("No %1/input/event* nodes: keys are seen only while the window has the focus.")
                .arg(q(env.devRoot)), {}});
    else if (readable == total)
        section.findings.push_back({Level::Ok, QStringLiteral("%1 may read all %2 input devices.").arg(user).arg(total), {}});
    else
        section.findings.push_back({Level::Note,
            QStringLiteral("%1 may read %2 of %3 input devices. Nothing needs more: the key commands dialog and the"
                           " macro recorder take the keys typed in the app's own windows. An option, not advice:"
                           " members of the \"input\" group also have keys typed while another window is in front"
                           " recorded, at a cost: every program %1 runs may then read every keyboard, passwords"
                           " included. To take it, join the group, then log out and in:")
                .arg(user).arg(readable).arg(total),
            QStringLiteral("sudo usermod -aG input %1").arg(user)});
    return section;
}

}  // namespace

DoctorReport inspectAccess(const DoctorEnvironment& env)
{
    DoctorReport report;
    report.user = QStringLiteral("%1 (uid %2)").arg(q(env.user.name)).arg(env.user.uid);
    if (env.user.uid == 0)
        report.sections.push_back({QStringLiteral("User"), {}, {{Level::Problem,
            QStringLiteral("Checking for root, who may open every node; the app runs as the desktop user."
                           " Run the check as that user, or through sudo:"),
            QStringLiteral("sudo orvane --doctor")}}});
    for (DoctorSection& section : inspectKeyboards(env))
        report.sections.push_back(std::move(section));
    report.sections.push_back(inspectRule(env));
    report.sections.push_back(inspectSeat(env));
    report.sections.push_back(inspectInput(env));
    return report;
}
