#include "View/control/ButtonView.h"

#include "View/control/NamedImage.h"

#include <QPainter>

ImageButton::ImageButton(QWidget* parent) : QAbstractButton(parent)
{
    setCursor(Qt::PointingHandCursor);
}

void ImageButton::initControl(const QString& img_normal, const QString& img_hover)
{
    cur_normal_name = img_normal;
    cur_hover_name = img_hover;
    if (!isTrackingArea) {
        setAttribute(Qt::WA_Hover);
        isTrackingArea = true;
    }
    update();
}

void ImageButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QPixmap pm = NamedImage::pixmap(shownImageName(), size(), devicePixelRatioF());
    if (!pm.isNull())
        painter.drawPixmap(0, 0, pm);
}

void ImageButton::enterEvent(QEnterEvent* event)
{
    hovered_ = true;
    update();
    QAbstractButton::enterEvent(event);
}

void ImageButton::leaveEvent(QEvent* event)
{
    hovered_ = false;
    update();
    QAbstractButton::leaveEvent(event);
}
