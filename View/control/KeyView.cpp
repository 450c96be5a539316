#include "View/control/KeyView.h"

#include "View/control/NamedImage.h"

#include <QPainter>

KeyView::KeyView(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void KeyView::setKeyColor(const QColor& color)
{
    keyColor = color;
    update();
    emit keyColorChanged(color);
}

void KeyView::setBackgroundColor(const QColor& color)
{
    backgroundColor = color;
    update();
}

QColor KeyView::shownColor() const
{
    return keyColor == QColor(Qt::black) ? backgroundColor : keyColor;
}

void KeyView::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), shownColor());
}

QPen bandPen(const QColor& color, qreal width)
{
    QPen pen(color, width);
    pen.setDashPattern({3 / width, 1 / width});
    return pen;
}

FrameSelectView::FrameSelectView(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void FrameSelectView::paintEvent(QPaintEvent*)
{
    if (width() <= 10 || height() <= 10)
        return;
    QPainter painter(this);
    painter.setPen(bandPen(Qt::green, 5));
    painter.drawRect(rect());
}
