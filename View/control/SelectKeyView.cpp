#include "View/control/SelectKeyView.h"

#include "View/control/KeyView.h"
#include "View/control/NamedImageView.h"

#include <QPainter>

SelectKeyView::SelectKeyView(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void SelectKeyView::ensureMarker()
{
    if (initView)
        return;
    imageView = new NamedImageView(this);
    imageView->setImageName(QStringLiteral("key_bkg"));
    imageView->setGeometry(rect());
    imageView->hide();
    initView = true;
}

void SelectKeyView::setKeyCheck(bool check)
{
    keyCheck = check;
    ensureMarker();
    imageView->setVisible(check);
}

void SelectKeyView::showMarker(bool shown)
{
    if (imageView)
        imageView->setVisible(shown);
}

void SelectKeyView::resizeEvent(QResizeEvent*)
{
    if (imageView)
        imageView->setGeometry(rect());
}

void SelectKeyView::setCapShape(const KeyboardViewPicture::CapFill& cap)
{
    cap_ = cap;
    update();
}

void SelectKeyView::setCapColour(const QColor& colour)
{
    if (colour == capColour_)
        return;
    capColour_ = colour;
    update();
}

void SelectKeyView::paintEvent(QPaintEvent*)
{
    if (!capColour_.isValid() || cap_.face.isEmpty())
        return;
    QPainter p(this);
    KeyboardViewPicture::paintCapFill(p, cap_, capColour_);
}
