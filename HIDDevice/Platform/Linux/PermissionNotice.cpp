#include "HIDDevice/Platform/Linux/PermissionNotice.h"

#include "Language/AppText.h"

#include <iostream>

QString permissionProblemMessage(const QString& product, const std::string& node, const QString& advice)
{
    const QString name = product.isEmpty() ? appText(AppText::PermissionTheKeyboard) : product;
    const QString opening = appText(AppText::PermissionOpening).arg(name, QString::fromStdString(node));
    if (!advice.isEmpty())
        return opening + appText(AppText::PermissionWithAdvice).arg(advice);
    return opening
        + appText(AppText::PermissionUdevRule)
              .arg(QStringLiteral("  sudo cp packaging/70-orvane.rules /etc/udev/rules.d/ && "
                                  "sudo udevadm control --reload && sudo udevadm trigger"));
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
