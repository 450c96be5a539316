#pragma once
// The permissions doctor: what stands between a user and the Orvane
// keyboards on this machine, each problem with the command that fixes it.
//
// It only looks: it reads sysfs, stats the device nodes and reads their
// access lists, and never opens a node. Everything it reads is reached
// through DoctorEnvironment (the sysfs, /dev and /run roots, the udev rule
// folders, the user it judges for, the ACL reader), so the tests run it over
// a fake tree. Access is judged from each node's owner, mode and ACL for that
// user, not from what the running process may do: run through sudo, it
// speaks of the user who called sudo.

#include "HIDDevice/Platform/Linux/NodeAccess.h"

#include <QString>
#include <QStringList>

#include <filesystem>
#include <string>
#include <vector>

struct DoctorEnvironment {
    std::filesystem::path sysRoot = "/sys";
    std::filesystem::path devRoot = "/dev";
    std::filesystem::path runRoot = "/run";
    // The folders udev reads rules from; the first is the administrator's,
    // where a rule that has to move goes.
    std::vector<std::filesystem::path> rulesDirs;
    // Folders where a local install leaves the rule, which not every udev reads.
    std::vector<std::filesystem::path> strayRulesDirs;
    AccessUser user;
    AclReader readAcl;
    bool installedByPackage = false;  // a missing rule is then reinstalled with apt

    static DoctorEnvironment system();
};

struct DoctorFinding {
    enum class Level { Ok, Note, Problem };
    Level level = Level::Ok;
    QString text;
    QString command;  // what fixes it; empty when there is nothing to run
};

struct DoctorSection {
    QString title;
    std::vector<std::string> nodes;  // the device nodes it speaks of
    std::vector<DoctorFinding> findings;
    bool aboutKeyboard = false;
};

struct DoctorReport {
    QString user;
    std::vector<DoctorSection> sections;  // each keyboard, the rule, the seat, the input devices (and, run for real, the application in front)

    int problemCount() const;
    QString text() const;
    // The problems that concern `node` (its keyboard's and the machine's),
    // one "- what\n    command" entry each; empty when none is found.
    QString problemsFor(const std::string& node) const;
};

DoctorReport inspectAccess(const DoctorEnvironment& env);

// The user a doctor run as `realUid` speaks of: the one who called sudo or
// pkexec when run as root through them, else `realUid`.
uint32_t doctorTargetUid(uint32_t realUid, const char* sudoUid, const char* pkexecUid);

// The doctor's problems for one node on this machine, for the window's message.
QString permissionAdvice(const std::string& node);
