#include "View/control/ViewAnimation.h"

#include <QGraphicsOpacityEffect>
#include <QParallelAnimationGroup>
#include <QPropertyAnimation>
#include <QWidget>

QAbstractAnimation* startAnimation(QWidget* view, const QRect& startFrame, const QRect& endFrame,
                                   std::function<void()> onEnd, bool fadeIn)
{
    if (startFrame == endFrame)
        return nullptr;
    auto* group = new QParallelAnimationGroup(view);
    auto* move = new QPropertyAnimation(view, "geometry");
    move->setStartValue(startFrame);
    move->setEndValue(endFrame);
    move->setDuration(kViewAnimationMs);
    group->addAnimation(move);  // the group owns it
    // A view that stays after a fade keeps its effect: at full opacity it
    // paints the view as it is. Without a fade an earlier effect goes.
    auto* fade = fadeIn ? new QGraphicsOpacityEffect(view) : nullptr;
    view->setGraphicsEffect(fade);  // deletes an earlier one
    if (fade) {
        auto* opacity = new QPropertyAnimation(fade, "opacity");
        opacity->setStartValue(0.0);
        opacity->setEndValue(1.0);
        opacity->setDuration(kViewAnimationMs);
        group->addAnimation(opacity);
    }
    if (onEnd)
        QObject::connect(group, &QAbstractAnimation::finished, view, std::move(onEnd));
    group->start(QAbstractAnimation::DeleteWhenStopped);
    return group;
}
