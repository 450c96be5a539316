// The key tool tip: the name of the key under the pointer and what it does,
// in a dark window just above the key.
#include "View/MainController.h"

#include "View/CustomWindow/KBToolTipsViewController.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"

#include <QLabel>

namespace {
// From the centre of the key's lower edge to the tool tip's top-left corner.
constexpr qreal kTipDx = -82;
constexpr qreal kTipDy = 105;
}  // namespace

void MainController::ShowKeyboardToolTipWnd(const QVariant& object)
{
    const QVariantMap tip = object.toMap();
    const QVariant show = tip.value(QStringLiteral("show"));
    const QVariant keyDesc = tip.value(QStringLiteral("keyDesc"));
    const QVariant keyMacro = tip.value(QStringLiteral("keyMacro"));
    const QVariant keyPoint = tip.value(QStringLiteral("keyPoint"));
    if (show.typeId() != QMetaType::Int || keyDesc.typeId() != QMetaType::QString
        || keyMacro.typeId() != QMetaType::QString || keyPoint.typeId() != QMetaType::QPointF)
        return;
    if (show.toInt() != 1) {
        if (keyboardToolTips)
            keyboardToolTips->hide();
        return;
    }
    if (!keyboardToolTips)
        keyboardToolTips = new KBToolTipsViewController(this);
    // The point is in the window, y upward; the tool tip's corner goes to the
    // screen point above it.
    const QPointF corner = keyPoint.toPointF() + QPointF(kTipDx, kTipDy);
    keyboardToolTips->move(mapToGlobal(QPoint(qRound(corner.x()), kWindowHeight - qRound(corner.y()))));
    const auto record = keyNameRecord(keyDesc.toString());
    keyboardToolTips->label_keydesc->setText(record ? record->full_name : QString());
    keyboardToolTips->label_keymacro->setText(keyMacro.toString());
    keyboardToolTips->show();
    keyboardToolTips->raise();
}
