#include "View/control/FloatingWindowGroup.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <algorithm>

FloatingWindowGroup::FloatingWindowGroup(std::function<void()> closeAll, QObject* parent)
    : QObject(parent), closeAll_(std::move(closeAll))
{
    qApp->installEventFilter(this);
}

FloatingWindowGroup::~FloatingWindowGroup()
{
    if (qApp)
        qApp->removeEventFilter(this);
}

void FloatingWindowGroup::add(QWidget* window, bool takesEscape)
{
    if (window && !isMember(window))
        members_.push_back({window, takesEscape});
}

bool FloatingWindowGroup::anyShown() const
{
    return std::any_of(members_.begin(), members_.end(),
                       [](const Member& m) { return m.window && m.window->isVisible(); });
}

bool FloatingWindowGroup::isMember(const QWidget* window) const
{
    return std::any_of(members_.begin(), members_.end(), [window](const Member& m) { return m.window == window; });
}

bool FloatingWindowGroup::escapeTaken() const
{
    return std::any_of(members_.begin(), members_.end(),
                       [](const Member& m) { return m.takesEscape && m.window && m.window->isVisible(); });
}

bool FloatingWindowGroup::eventFilter(QObject* watched, QEvent* event)
{
    // Each event is looked at once, at the widget it is meant for.
    if (!watched->isWidgetType() || !anyShown())
        return QObject::eventFilter(watched, event);
    const auto* widget = static_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::NonClientAreaMouseButtonPress:
        if (!isMember(widget->window()))
            closeAll_();
        break;
    case QEvent::KeyPress:
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && !escapeTaken()) {
            closeAll_();
            return true;
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
