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
    update();
}

void NamedImageView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    NamedImage::paintFill(painter, *this, name_);
}
