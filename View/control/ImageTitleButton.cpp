#include "View/control/ImageTitleButton.h"

#include "View/control/NamedImage.h"

#include <QPainter>

ImageTitleButton::ImageTitleButton(QWidget* parent) : QAbstractButton(parent)
{
    setCursor(Qt::PointingHandCursor);
}

void ImageTitleButton::setImageName(const QString& name)
{
    image_ = name;
    update();
}

void ImageTitleButton::setTitleTextColor(const QColor& color)
{
    titleColor_ = color;
    update();
}

void ImageTitleButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    NamedImage::paintFill(painter, *this, image_);
    painter.setPen(titleColor_);
    painter.setFont(font());
    painter.drawText(rect(), Qt::AlignCenter, text());
}
