#include "View/control/TextTableItemView.h"

#include "View/control/FlippedRect.h"
#include "View/control/NamedImage.h"
#include "View/control/Theme.h"

#include <QPainter>

TableItemView::TableItemView(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_Hover);
}

void TableItemView::initView()
{
    if (initFinish)
        return;
    initFinish = true;
    textView = new QLabel(this);
    textView->setGeometry(flippedRect(height(), 6, (height() - 16) / 2, width() - 12, 16));
    textView->setAlignment(Qt::AlignCenter);
    textView->setAttribute(Qt::WA_TransparentForMouseEvents);
    Theme::setTextColor(textView, Theme::normalText());
    image_.clear();
}

void TableItemView::enterEvent(QEnterEvent* event)
{
    image_ = QStringLiteral("view_row_hover");
    Theme::setTextColor(textView, Qt::white);
    update();
    QWidget::enterEvent(event);
}

void TableItemView::leaveEvent(QEvent* event)
{
    image_.clear();
    Theme::setTextColor(textView, Theme::normalText());
    update();
    QWidget::leaveEvent(event);
}

void TableItemView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    NamedImage::paintFill(painter, *this, image_);
}
