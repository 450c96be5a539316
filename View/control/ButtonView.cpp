#include "View/control/ButtonView.h"

#include "View/control/FlippedRect.h"
#include "View/control/NamedImage.h"
#include "View/control/NamedImageView.h"
#include "View/control/Theme.h"

#include <QEvent>
#include <QLabel>

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
    if (!isEnabled())
        painter.setOpacity(0.45);
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

void IconButton::setIcon(const QString& icon_normal, const QString& icon_hover, const QRect& icon_rt)
{
    icon_normal_name = icon_normal;
    icon_hover_name = icon_hover;
    icon_rect = icon_rt;
    if (!iconView) {
        iconView = new NamedImageView(this);
        iconView->setGeometry(flippedRect(height(), icon_rt.x(), icon_rt.y(), icon_rt.width(), icon_rt.height()));
        iconView->show();
    }
    iconView->setImageName(underMouse() ? icon_hover_name : icon_normal_name);
}

void IconButton::setText(const QRect& text_rt, const QString& title)
{
    text_rect = text_rt;
    btn_text = title;
    QAbstractButton::setText(title);  // for text() and screen readers
    if (!textView) {
        textView = new QLabel(this);
        textView->setAttribute(Qt::WA_TransparentForMouseEvents);
        textView->setGeometry(flippedRect(height(), text_rt.x(), text_rt.y(), text_rt.width(), text_rt.height()));
        textView->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        Theme::setTextColor(textView, underMouse() ? QColor(Qt::white) : Theme::normalText());
        textView->show();
    }
    textView->setText(title);
}

void IconButton::enterEvent(QEnterEvent* event)
{
    if (iconView)
        iconView->setImageName(icon_hover_name);
    Theme::setTextColor(textView, Qt::white);
    ImageButton::enterEvent(event);
}

void IconButton::leaveEvent(QEvent* event)
{
    if (iconView)
        iconView->setImageName(icon_normal_name);
    Theme::setTextColor(textView, Theme::normalText());
    ImageButton::leaveEvent(event);
}

void IconButton::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::EnabledChange)
        Theme::setTextColor(textView, isEnabled() ? Theme::normalText() : Theme::disabledText());
    ImageButton::changeEvent(event);
}
