#include "View/CustomWindow/KBToolTipsViewController.h"

#include "View/control/FlippedRect.h"
#include "View/control/Theme.h"

#include <QLabel>

KBToolTipsViewController::KBToolTipsViewController(QWidget* parent) : FramelessWindow(parent)
{
    setObjectName(QStringLiteral("keyboardToolTips"));
    setBackgroundColor(QColor::fromRgbF(0.1f, 0.1f, 0.1f, 0.8f));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(kWidth, kHeight);
    label_keydesc = new QLabel(this);
    label_keydesc->setGeometry(flippedRect(kHeight, 8, 30, kWidth - 16, 18));
    label_keydesc->setAlignment(Qt::AlignCenter);
    Theme::setTextColor(label_keydesc, QColor(75, 165, 201));
    label_keymacro = new QLabel(this);
    label_keymacro->setGeometry(flippedRect(kHeight, 8, 8, kWidth - 16, 18));
    label_keymacro->setAlignment(Qt::AlignCenter);
    Theme::setTextColor(label_keymacro, Qt::white);
}
