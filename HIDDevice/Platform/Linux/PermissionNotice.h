#pragma once
// The one message a user sees when the keyboard's device nodes are not ours
// to open: it says what to install and how. Any thread may report; the
// message goes to stderr and to the sink once per notice.

#include <QString>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>

QString permissionProblemMessage(const QString& product, const std::string& node);

class PermissionNotice {
public:
    using Sink = std::function<void(const QString&)>;

    void setSink(Sink sink);
    // Returns true when this call posted the message.
    bool report(const QString& product, const std::string& node);

private:
    std::mutex mutex_;
    Sink sink_;
    bool posted_ = false;
};
