// The doctor's words: the printed report, the window's excerpt, and the
// environment of a real run.
#include "FocusWatch/FocusSource.h"
#include "HIDDevice/Platform/Doctor.h"
#include "HIDDevice/Platform/Linux/PermissionDoctor.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>
#include <cstdlib>
#include <optional>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

QString levelTag(DoctorFinding::Level level)
{
    switch (level) {
    case DoctorFinding::Level::Ok: return QStringLiteral("ok      ");
    case DoctorFinding::Level::Note: return QStringLiteral("note    ");
    case DoctorFinding::Level::Problem: return QStringLiteral("PROBLEM ");
    }
    return {};
}

// Two nodes of one keyboard share their fix: the command is said once, after both.
bool sharesNextCommand(const std::vector<DoctorFinding>& findings, std::size_t i)
{
    return i + 1 < findings.size() && !findings[i].command.isEmpty() && findings[i + 1].command == findings[i].command;
}

std::vector<uint32_t> groupsOf(uint32_t uid)
{
    if (uid == ::getuid()) {
        std::vector<gid_t> groups(std::max(::getgroups(0, nullptr), 0) + 1);
        const int n = ::getgroups(int(groups.size()) - 1, groups.data());
        groups.resize(std::max(n, 0));
        groups.push_back(::getgid());
        return {groups.begin(), groups.end()};
    }
    passwd pw {};
    passwd* found = nullptr;
    char buffer[4096];
    if (::getpwuid_r(uid, &pw, buffer, sizeof buffer, &found) != 0 || !found)
        return {};
    int count = 64;
    std::vector<gid_t> groups(count);
    if (::getgrouplist(found->pw_name, found->pw_gid, groups.data(), &count) < 0) {
        groups.resize(count);
        ::getgrouplist(found->pw_name, found->pw_gid, groups.data(), &count);
    }
    groups.resize(count);
    return {groups.begin(), groups.end()};
}

// Whether profiles can follow the application in front here. A note, not a
// problem: the keyboard works without it.
DoctorSection focusSection()
{
    // The sources are made of event-loop objects (socket notifiers, D-Bus),
    // and the doctor runs before the application exists.
    int argc = 1;
    char name[] = "orvane";
    char* argv[] = {name, nullptr};
    std::optional<QCoreApplication> app;
    if (!QCoreApplication::instance())
        app.emplace(argc, argv);
    const FocusSupport support = focusSupport();
    using Level = DoctorFinding::Level;
    return {QStringLiteral("Application in front (profiles that follow it)"), {},
            {{support.available ? Level::Ok : Level::Note, support.text, {}}}};
}

}  // namespace

int DoctorReport::problemCount() const
{
    int count = 0;
    for (const DoctorSection& section : sections)
        count += int(std::count_if(section.findings.begin(), section.findings.end(),
                                   [](const DoctorFinding& f) { return f.level == DoctorFinding::Level::Problem; }));
    return count;
}

QString DoctorReport::text() const
{
    QString out = QStringLiteral("Orvane Keyboard Studio doctor: access for %1. It only looks; it sends nothing to a keyboard.\n")
                      .arg(user);
    for (const DoctorSection& section : sections) {
        out += QStringLiteral("\n%1\n").arg(section.title);
        const std::vector<DoctorFinding>& findings = section.findings;
        for (std::size_t i = 0; i < findings.size(); ++i) {
            out += QStringLiteral("  %1 %2\n").arg(levelTag(findings[i].level), findings[i].text);
            if (sharesNextCommand(findings, i))
                continue;
            if (!findings[i].command.isEmpty())
                out += QStringLiteral("           %1\n").arg(findings[i].command);
        }
    }
    const int problems = problemCount();
    out += problems == 0 ? QStringLiteral("\nNo problems found.\n")
                         : QStringLiteral("\n%1 problem%2 found.\n").arg(problems).arg(problems == 1 ? "" : "s");
    return out;
}

QString DoctorReport::problemsFor(const std::string& node) const
{
    std::vector<DoctorFinding> problems;
    for (const DoctorSection& section : sections) {
        const bool ours = std::find(section.nodes.begin(), section.nodes.end(), node) != section.nodes.end();
        if (section.aboutKeyboard != ours)
            continue;  // another keyboard, or no keyboard at all
        std::copy_if(section.findings.begin(), section.findings.end(), std::back_inserter(problems),
                     [](const DoctorFinding& f) { return f.level == DoctorFinding::Level::Problem; });
    }
    QStringList entries;
    for (std::size_t i = 0; i < problems.size(); ++i)
        entries << (sharesNextCommand(problems, i) ? QStringLiteral("- %1").arg(problems[i].text)
                                                   : QStringLiteral("- %1\n    %2").arg(problems[i].text, problems[i].command));
    return entries.join(QLatin1Char('\n'));
}

uint32_t doctorTargetUid(uint32_t realUid, const char* sudoUid, const char* pkexecUid)
{
    if (realUid != 0)
        return realUid;
    for (const char* given : {sudoUid, pkexecUid}) {
        char* end = nullptr;
        const unsigned long uid = given && *given ? std::strtoul(given, &end, 10) : 0;
        if (uid != 0 && end && *end == '\0')
            return uint32_t(uid);
    }
    return 0;
}

DoctorEnvironment DoctorEnvironment::system()
{
    DoctorEnvironment env;
    env.rulesDirs = {"/etc/udev/rules.d", "/run/udev/rules.d", "/usr/lib/udev/rules.d", "/lib/udev/rules.d"};
    env.strayRulesDirs = {"/usr/local/lib/udev/rules.d", "/usr/local/etc/udev/rules.d"};
    env.user.uid = doctorTargetUid(::getuid(), std::getenv("SUDO_UID"), std::getenv("PKEXEC_UID"));
    env.user.name = userName(env.user.uid);
    env.user.groups = groupsOf(env.user.uid);
    env.readAcl = readAccessAcl;
    std::error_code ec;
    env.installedByPackage = fs::read_symlink("/proc/self/exe", ec).parent_path() == "/usr/bin";
    return env;
}

QString permissionAdvice(const std::string& node)
{
    return inspectAccess(DoctorEnvironment::system()).problemsFor(node);
}

int runDoctor(std::ostream& out)
{
    DoctorReport report = inspectAccess(DoctorEnvironment::system());
    report.sections.push_back(focusSection());
    out << report.text().toStdString() << std::flush;
    return report.problemCount() == 0 ? 0 : 1;
}
