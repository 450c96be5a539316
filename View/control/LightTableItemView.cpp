#include "View/control/LightTableItemView.h"

#include "View/control/FlippedRect.h"
#include "View/control/Theme.h"

#include <QPainter>

namespace {
constexpr int kIconSize = 15;
}

LightTableItemView::LightTableItemView(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_Hover);
    setFixedHeight(kRowHeight);
}

void LightTableItemView::initView(const QString& icon_n, const QString& icon_h, const QString& icon_s,
                                  const QString& text)
{
    if (initFinish)
        return;
    initFinish = true;
    normal_icon = icon_n;
    hover_icon = icon_h;
    select_icon = icon_s;

    iconView = new NamedImageView(this);
    iconView->setGeometry(flippedRect(kRowHeight, 43, 7, kIconSize, kIconSize));
    textView = new QLabel(text, this);
    textView->setGeometry(flippedRect(kRowHeight, 65, 7, 100, 16));
    textView->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    Theme::setTextColor(textView, Theme::lightRowText());
    showIcon(normal_icon);
}

void LightTableItemView::setSelect(bool bCheck)
{
    isSelect = bCheck;
    showIcon(isSelect ? select_icon : normal_icon);
    update();
}

void LightTableItemView::enterEvent(QEnterEvent* event)
{
    showIcon(isSelect ? select_icon : hover_icon);
    Theme::setTextColor(textView, Theme::hoverBlue());
    QWidget::enterEvent(event);
}

void LightTableItemView::leaveEvent(QEvent* event)
{
    showIcon(isSelect ? select_icon : normal_icon);
    Theme::setTextColor(textView, Theme::lightRowText());
    QWidget::leaveEvent(event);
}

void LightTableItemView::paintEvent(QPaintEvent*)
{
    if (!isSelect)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::selectedRow());
    painter.drawRoundedRect(QRectF(rect()).adjusted(8, 2, -8, -2), 6, 6);
}

void LightTableItemView::showIcon(const QString& name)
{
    if (iconView)
        iconView->setImageName(name);
}
