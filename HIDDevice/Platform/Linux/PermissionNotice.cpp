#include "HIDDevice/Platform/Linux/PermissionNotice.h"

#include <iostream>

QString permissionProblemMessage(const QString& product, const std::string& node)
{
    const QString name = product.isEmpty() ? QStringLiteral("the keyboard") : product;
    return QStringLiteral(
               "Orvane Keyboard Studio is not allowed to talk to %1 (%2). "
               "Linux gives access to keyboards only through a udev rule. Install ours once, "
               "then unplug the keyboard and plug it in again:\n"
               "  sudo cp packaging/70-orvane.rules /etc/udev/rules.d/ && "
               "sudo udevadm control --reload && sudo udevadm trigger")
        .arg(name, QString::fromStdString(node));
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
    const QString message = permissionProblemMessage(product, node);
    std::cerr << message.toStdString() << std::endl;
    if (sink)
        sink(message);
    return true;
}
