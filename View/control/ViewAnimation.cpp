#include "View/control/ViewAnimation.h"

#include <QGraphicsOpacityEffect>
#include <QParallelAnimationGroup>
#include <QPropertyAnimation>
#include <QWidget>

QAbstractAnimation* startAnimation(QWidget* view, const QRect& startFrame, const QRect& endFrame,
                                   std::function<void()> onEnd)
{
    if (startFrame == endFrame)
        return nullptr;
    auto* fade = new QGraphicsOpacityEffect(view);
    view->setGraphicsEffect(fade);  // replaces (and deletes) an earlier one

    auto* group = new QParallelAnimationGroup(view);
    auto* move = new QPropertyAnimation(view, "geometry");
    move->setStartValue(startFrame);
    move->setEndValue(endFrame);
    auto* opacity = new QPropertyAnimation(fade, "opacity");
    opacity->setStartValue(0.0);
    opacity->setEndValue(1.0);
    for (QPropertyAnimation* a : {move, opacity}) {
        a->setDuration(kViewAnimationMs);
        group->addAnimation(a);  // the group owns it
    }
    if (onEnd)
        QObject::connect(group, &QAbstractAnimation::finished, view, std::move(onEnd));
    // The effect stays: at full opacity it paints the view as it is.
    group->start(QAbstractAnimation::DeleteWhenStopped);
    return group;
}
