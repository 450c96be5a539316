#include "HIDDevice/Platform/Linux/PermissionNotice.h"

#include <iostream>

QString permissionProblemMessage(const QString& product, const std::string& node, const QString& advice)
{
    const QString name = product.isEmpty() ? QStringLiteral("the keyboard") : product;
    const QString opening = QStringLiteral("Orvane Keyboard Studio is not allowed to talk to %1 (%2). ")
                                .arg(name, QString::fromStdString(node));
    if (!advice.isEmpty())
        return opening
            + QStringLiteral("What stands in the way, and the command that fixes each:\n%1\n"
                             "Run \"orvane --doctor\" in a terminal for the whole check.")
                  .arg(advice);
    return opening
        + QStringLiteral("Linux gives access to keyboards only through a udev rule. Install ours once, "
                         "then unplug the keyboard and plug it in again:\n"
                         "  sudo cp packaging/70-orvane.rules /etc/udev/rules.d/ && "
                         "sudo udevadm control --reload && sudo udevadm trigger\n"
                         "Run \"orvane --doctor\" in a terminal for the whole check.");
}

void PermissionNotice::setSink(Sink sink)
{
    std::lock_guard lock(mutex_);
    sink_ = std::move(sink);
}

bool PermissionNotice::report(const QString& product, const std::string& node)
{
    Sink sink;
    {
        std::lock_guard lock(mutex_);
        if (posted_)
            return false;
        posted_ = true;
        sink = sink_;
    }
    // The doctor only reads sysfs and stats nodes: cheap enough for any thread.
    const QString message = permissionProblemMessage(product, node, advisor_ ? advisor_(node) : QString());
    std::cerr << message.toStdString() << std::endl;
    if (sink)
        sink(message);
    return true;
}
