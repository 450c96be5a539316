#include "View/control/NamedImageView.h"

#include "View/control/NamedImage.h"

#include <QPainter>

NamedImageView::NamedImageView(QWidget* parent) : QWidget(parent)
{
    // Presses go to whatever holds the view (a list row, a menu item).
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void NamedImageView::setImageName(const QString& name)
{
    if (name == name_)
        return;
    name_ = name;
    cache_ = {};
    update();
}

void NamedImageView::paintEvent(QPaintEvent*)
{
    const qreal dpr = devicePixelRatioF();
    // Drawn once per name, size and scale; a repaint only copies pixels.
    if (cache_.isNull() || cache_.deviceIndependentSize() != QSizeF(size()) || cache_.devicePixelRatio() != dpr)
        cache_ = NamedImage::pixmap(name_, size(), dpr);
    if (!cache_.isNull())
        QPainter(this).drawPixmap(0, 0, cache_);
}
