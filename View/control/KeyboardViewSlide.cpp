// The keyboard picture's slide from one picture to another, and hiding its
// controls while the two pictures move.
#include "View/control/KeyboardView.h"

#include "Common/NotificationCenter.h"
#include "View/control/FlippedRect.h"
#include "View/control/KeyCapsView.h"
#include "View/control/KeyView.h"
#include "View/control/NamedImageView.h"
#include "View/control/ViewAnimation.h"

#include <QAbstractAnimation>

namespace {

struct SlideFrames {
    QRectF newFrom, newTo, oldFrom, oldTo;
};

// Frames in picture units, y upward, for a picture of w by h: the new
// picture comes in from one side while the old one leaves on the other.
std::optional<SlideFrames> slideFrames(int move_type, qreal w, qreal h)
{
    const QRectF home(0, 0, w, h);
    auto at = [&](qreal x, qreal y) { return QRectF(x, y, w, h); };
    switch (move_type) {
    case 0: return SlideFrames{at(0, h), home, home, at(0, -h)};
    case 1: return SlideFrames{at(0, -h), home, home, at(0, h)};
    case 2: return SlideFrames{at(-w, 0), home, home, at(w, 0)};
    case 3: return SlideFrames{at(w, 0), home, home, at(-w, 0)};
    default: return std::nullopt;
    }
}

}  // namespace

void KeyboardView::setControlHideStatus(bool isHidden)
{
    if (kbImageView)
        kbImageView->setHidden(isHidden);
    for (auto* keys : {&kbKeyArrayHover, &kbKeyArraySelect})
        for (const KeyData& key : *keys)
            if (key.view)
                key.view->setHidden(isHidden);
    if (frameSelectView)
        frameSelectView->setHidden(isHidden);
    if (keyCapsView)
        keyCapsView->setHidden(isHidden || !keyCapTextsShown_);
}

void KeyboardView::animationMoveKBView(const QString& new_image, const QString& old_image, int move_type)
{
    if (!kbNewView || !kbOldView)
        return;
    stopSlide();
    setControlHideStatus(true);
    animationIndex = 0;
    kbNewView->setImageName(new_image);
    kbOldView->setImageName(old_image);
    for (NamedImageView* picture : {kbNewView, kbOldView}) {
        picture->setGeometry(rect());
        picture->raise();
        picture->show();
    }
    const auto frames = slideFrames(move_type, bounds_.width(), bounds_.height());
    if (!frames)
        return;
    auto frame = [&](const QRectF& r) { return flippedRect(bounds_, QSizeF(size()), r).toAlignedRect(); };
    slide_[0] = startAnimation(kbNewView, frame(frames->newFrom), frame(frames->newTo), [this] { animationDidEnd(); });
    // The leaving picture stays opaque, so the view never flashes empty.
    slide_[1] = startAnimation(kbOldView, frame(frames->oldFrom), frame(frames->oldTo), [this] { animationDidEnd(); },
                               false);
}

bool KeyboardView::isSliding() const
{
    for (const QPointer<QAbstractAnimation>& animation : slide_)
        if (animation && animation->state() == QAbstractAnimation::Running)
            return true;
    return false;
}

// A new slide or a rebuild ends the running one where it stands.
void KeyboardView::stopSlide()
{
    for (QPointer<QAbstractAnimation>& animation : slide_)
        if (animation)
            animation->stop();  // deletes itself
    for (NamedImageView* picture : {kbNewView, kbOldView})
        if (picture)
            picture->hide();
}

void KeyboardView::animationDidEnd()
{
    if (++animationIndex < 2)
        return;
    kbNewView->hide();
    kbOldView->hide();
    setControlHideStatus(false);
    NotificationCenter::defaultCenter().post(QStringLiteral("KeyboardViewAnimationStop"));
}
