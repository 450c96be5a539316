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

PictureView::PictureView(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PictureView::setImageName(const QString& name)
{
    if (name == name_)
        return;
    name_ = name;
    cache_ = {};
    update();
}

void PictureView::paintEvent(QPaintEvent*)
{
    const qreal dpr = devicePixelRatioF();
    // Drawn once per name, size and scale; a repaint only copies pixels.
    if (cache_.isNull() || cache_.deviceIndependentSize() != QSizeF(size()) || cache_.devicePixelRatio() != dpr)
        cache_ = NamedImage::pixmap(name_, size(), dpr);
    if (!cache_.isNull())
        QPainter(this).drawPixmap(0, 0, cache_);
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
    QPen pen(Qt::green, 5);
    pen.setDashPattern({3, 1});
    painter.setPen(pen);
    painter.drawRect(rect());
}
