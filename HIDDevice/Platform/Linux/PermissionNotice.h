#pragma once
// The one message a user sees when the keyboard's device nodes are not ours
// to open: what stands in the way, as the doctor finds it, and the command
// for each problem. Any thread may report; the message goes to stderr and to
// the sink once per notice.

#include <QString>

#include <functional>
#include <mutex>
#include <string>

// `advice` is the doctor's problems for the node, one entry a line; without
// it the message names the rule and the command that installs it.
QString permissionProblemMessage(const QString& product, const std::string& node, const QString& advice = {});

class PermissionNotice {
public:
    using Sink = std::function<void(const QString&)>;
    using Advisor = std::function<QString(const std::string& node)>;

    explicit PermissionNotice(Advisor advisor = {}) : advisor_(std::move(advisor)) {}

    void setSink(Sink sink);
    // Returns true when this call posted the message.
    bool report(const QString& product, const std::string& node);

private:
    const Advisor advisor_;
    std::mutex mutex_;
    Sink sink_;
    bool posted_ = false;
};
