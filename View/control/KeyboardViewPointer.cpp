// The keyboard picture under the pointer: hover, selection, the rubber band
// and the notifications they post.
#include "View/control/KeyboardView.h"

#include "Common/Globals.h"
#include "Common/NotificationCenter.h"
#include "View/control/FlippedRect.h"
#include "View/control/KeyView.h"
#include "View/control/SelectKeyView.h"

#include <QMouseEvent>
#include <QVariantMap>

#include <algorithm>
#include <cmath>

namespace {

// A drag starts the rubber band once it has gone further than this on
// either axis (picture units); a shaky click stays a click.
constexpr qreal kDragThreshold = 6;

// Closed rectangles: a band of no height along a row still touches the
// keys it crosses, and QRectF::intersects ignores empty rectangles.
bool touches(const QRectF& a, const QRectF& b)
{
    return a.left() <= b.right() && b.left() <= a.right() && a.top() <= b.bottom() && b.top() <= a.bottom();
}

}  // namespace

void KeyboardView::setKeyCheck(int index, bool check)
{
    if (SelectKeyView* key = selectKeyView(index))
        key->setKeyCheck(check);
}

QPointF KeyboardView::toPicture(const QPointF& point) const
{
    return bounds_.isEmpty() ? point : unflippedPoint(bounds_, QSizeF(size()), point);
}

QPointF KeyboardView::frameOrigin() const
{
    const int parentHeight = parentWidget() ? parentWidget()->height() : height();
    return QPointF(x(), parentHeight - y() - height());
}

void KeyboardView::postToolTip(int index)
{
    QVariantMap tip{{"show", 0}, {"keyDesc", "null"}, {"keyMacro", "null"}, {"keyPoint", QPointF(0, 0)}};
    if (index >= 0 && size_t(index) < kbKeyArraySelect.size()) {
        const KeyData& key = kbKeyArraySelect[size_t(index)];
        // The centre of the key's lower edge, in the parent, y upward.
        const QPointF origin = frameOrigin();
        tip = {{"show", 1},
               {"keyDesc", key.keyname},
               {"keyMacro", key.keyMacro},
               {"keyPoint", QPointF(key.rect.x() + key.rect.width() / 2 + origin.x(), key.rect.y() + origin.y())}};
    }
    NotificationCenter::defaultCenter().post(QStringLiteral("ShowKeyboardToolTipWnd"), tip);
}

void KeyboardView::mouseMoved(const QPointF& point)
{
    if (!isEvent)
        return;
    if (hoverKeyItem != -1) {
        if (keyGeometry(hoverKeyItem).contains(point))
            return;
        if (SelectKeyView* key = selectKeyView(hoverKeyItem); key && !key->keyCheck && hoverKeyItem != markedKeyItem_)
            key->showMarker(false);
        hoverKeyItem = -1;
        postToolTip(-1);
    }
    const std::optional<int> hit = hitTest(point);
    if (!hit)
        return;
    // A key shows no hover marker before its first check made one.
    if (SelectKeyView* key = selectKeyView(*hit))
        key->showMarker(true);
    hoverKeyItem = *hit;
    postToolTip(*hit);
}

void KeyboardView::mouseDown(const QPointF& point, Qt::KeyboardModifiers modifiers)
{
    if (!isEvent)
        return;
    ptMouseDown = toPicture(point);
    const bool adding = (modifiers & Qt::ShiftModifier) || shiftKeyStatus == 1;
    // A band drawn with Shift adds to the keys selected before it.
    bandBase_.clear();
    if (adding)
        for (const KeyData& key : kbKeyArraySelect)
            if (const SelectKeyView* view = selectKeyView(key.index); view && view->keyCheck)
                bandBase_.insert(key.index);
    if (hoverKeyItem == -1)
        return;  // beside the keys: a drag may start here
    if (modifiers & Qt::ControlModifier) {
        toggleKey(hoverKeyItem);
        return;
    }
    selectKeyItem = hoverKeyItem;
    lastClickPaints_ = true;
    if (adding) {
        setKeyCheck(hoverKeyItem, true);  // the keys selected before stay
        bandBase_.insert(hoverKeyItem);
        return;
    }
    for (const KeyData& key : kbKeyArraySelect)
        setKeyCheck(key.index, false);
    setKeyCheck(selectKeyItem, true);
}

// Ctrl+click: the key joins or leaves the selection; one that leaves is
// not painted as the last clicked key either.
void KeyboardView::toggleKey(int index)
{
    const SelectKeyView* view = selectKeyView(index);
    const bool check = !(view && view->keyCheck);
    setKeyCheck(index, check);
    selectKeyItem = index;
    lastClickPaints_ = check;
}

// Runs whether or not the view takes events yet: a band needs only keys.
void KeyboardView::mouseDragged(const QPointF& point)
{
    const QPointF p = toPicture(point);
    const qreal dx = std::abs(p.x() - ptMouseDown.x());
    const qreal dy = std::abs(p.y() - ptMouseDown.y());
    if (dx <= kDragThreshold && dy <= kDragThreshold)
        return;
    frameSelect = QRectF(std::min(p.x(), ptMouseDown.x()), std::min(p.y(), ptMouseDown.y()), dx, dy);
    if (frameSelectView && !bounds_.isEmpty())
        frameSelectView->setGeometry(flippedRect(bounds_, QSizeF(size()), frameSelect).toAlignedRect());
    for (const KeyData& key : kbKeyArraySelect)
        setKeyCheck(key.index, touches(key.rect, frameSelect) || bandBase_.count(key.index));
    // A band paints the keys it selects, not the key clicked before it.
    lastClickPaints_ = false;
    update();
}

void KeyboardView::mouseUp()
{
    if (!isEvent)
        return;
    if (frameSelectView)
        frameSelectView->setGeometry(0, 0, 0, 0);
    if (selectKeyItem < 0 || size_t(selectKeyItem) >= kbKeyArraySelect.size())
        return;
    NotificationCenter::defaultCenter().post(QStringLiteral("keyboardKeyAction"),
                                             kbKeyArraySelect[size_t(selectKeyItem)].keyname);
}

void KeyboardView::mouseEntered()
{
    postToolTip(-1);
}

// Leaving the picture takes the hovered key's selection with it.
void KeyboardView::mouseExited()
{
    postToolTip(-1);
    if (!isEvent || hoverKeyItem == -1)
        return;
    setKeyCheck(hoverKeyItem, false);
    // The pointer went to the key's menu: the key it works on stays marked.
    if (SelectKeyView* key = selectKeyView(hoverKeyItem); key && hoverKeyItem == markedKeyItem_)
        key->showMarker(true);
    hoverKeyItem = -1;
}

void KeyboardView::setMarkedKey(int index)
{
    const int previous = markedKeyItem_;
    markedKeyItem_ = index;
    if (SelectKeyView* key = selectKeyView(previous); key && previous != index && !key->keyCheck && previous != hoverKeyItem)
        key->showMarker(false);
    if (SelectKeyView* key = selectKeyView(index)) {
        key->ensureMarker();
        key->showMarker(true);
    }
}

// Moves without a button hover; with the left button they drag. Other
// buttons neither hover nor select.
void KeyboardView::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() == Qt::NoButton)
        mouseMoved(event->position());
    else if (event->buttons() & Qt::LeftButton)
        mouseDragged(event->position());
}

void KeyboardView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        mouseDown(event->position(), event->modifiers());
}

void KeyboardView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        mouseUp();
}

void KeyboardView::enterEvent(QEnterEvent*)
{
    mouseEntered();
}

void KeyboardView::leaveEvent(QEvent*)
{
    mouseExited();
}
