#include "View/popover/PopoverPanel.h"

#include "View/control/Theme.h"

#include <QCoreApplication>
#include <QPainter>

PopoverPanel::PopoverPanel(QWidget* parent)
    : QWidget(parent, Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint)
{
    setAttribute(Qt::WA_TranslucentBackground);
}

void PopoverPanel::showBelow(QWidget* anchor, bool alignLeft)
{
    const QPoint below = anchor->mapToGlobal(QPoint(alignLeft ? 0 : anchor->width(), anchor->height() + 4));
    move(alignLeft ? below.x() : below.x() - width(), below.y());
    show();
}

void PopoverPanel::showEvent(QShowEvent* event)
{
    viewDidAppear();
    QWidget::showEvent(event);
}

void PopoverPanel::hideEvent(QHideEvent* event)
{
    for (QWidget* row : findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (!row->underMouse())
            continue;
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(row, &leave);
    }
    QWidget::hideEvent(event);
}

void PopoverPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Theme::panelBorder());
    painter.setBrush(Theme::panel());
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
}
