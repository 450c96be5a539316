#include "View/control/TableItemView.h"

#include "Common/NotificationCenter.h"
#include "View/control/FlippedRect.h"
#include "View/control/NamedImage.h"
#include "View/control/Theme.h"

#include <QPainter>
#include <QVariantMap>

RecordTableItemView::RecordTableItemView(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_Hover);
    setFixedHeight(kRowHeight);
}

void RecordTableItemView::initView()
{
    if (initFinish)
        return;
    initFinish = true;
    textView = new QLabel(this);
    textView->setGeometry(flippedRect(height(), 6, (height() - 16) / 2, width() - 12, 16));
    textView->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    textView->setAttribute(Qt::WA_TransparentForMouseEvents);
    Theme::setTextColor(textView, Theme::normalText());
}

void RecordTableItemView::enterEvent(QEnterEvent* event)
{
    Theme::setTextColor(textView, Theme::recordBlue());
    QWidget::enterEvent(event);
}

void RecordTableItemView::leaveEvent(QEvent* event)
{
    Theme::setTextColor(textView, Theme::normalText());
    QWidget::leaveEvent(event);
}

namespace {
enum ButtonType { kDelete = 1, kEdit = 2 };

ImageButton* rowButton(QWidget* row, const QString& image, const QRect& frame)
{
    auto* button = new ImageButton(row);
    button->initControl(image, image);
    button->setGeometry(frame);
    button->setFocusPolicy(Qt::NoFocus);
    button->hide();
    return button;
}
}  // namespace

MacroTableItemView::MacroTableItemView(QWidget* parent) : TableItemView(parent)
{
    setFixedHeight(kRowHeight);
}

void MacroTableItemView::initView(int index)
{
    tableViewIndex = index;
    if (initFinish)
        return;
    initFinish = true;
    textView = new QLabel(this);
    textView->setGeometry(flippedRect(kRowHeight, 10, 7, 90, 16));
    textView->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    textView->setAttribute(Qt::WA_TransparentForMouseEvents);
    Theme::setTextColor(textView, Theme::normalText());
    delBtnView = rowButton(this, QStringLiteral("macro_btn_del"), flippedRect(kRowHeight, 100, 5, 20, 20));
    editBtnView = rowButton(this, QStringLiteral("macro_btn_edit"), flippedRect(kRowHeight, 132, 5, 20, 20));
    const auto post = [this](int type) {
        NotificationCenter::defaultCenter().post(QStringLiteral("MacroTableViewButton"),
                                                 QVariantMap{{"type", type}, {"index", tableViewIndex}});
    };
    connect(delBtnView, &QAbstractButton::clicked, this, [post] { post(kDelete); });
    connect(editBtnView, &QAbstractButton::clicked, this, [post] { post(kEdit); });
}

void MacroTableItemView::setHovered(bool hovered)
{
    if (delBtnView)
        delBtnView->setVisible(hovered);
    if (editBtnView)
        editBtnView->setVisible(hovered);
    TableItemView::setHovered(hovered);
}

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

void TableItemView::setHovered(bool hovered)
{
    image_ = hovered ? QStringLiteral("view_row_hover") : QString();
    Theme::setTextColor(textView, hovered ? QColor(Qt::white) : Theme::normalText());
    update();
}

void TableItemView::enterEvent(QEnterEvent* event)
{
    setHovered(true);
    QWidget::enterEvent(event);
}

void TableItemView::leaveEvent(QEvent* event)
{
    setHovered(false);
    QWidget::leaveEvent(event);
}

void TableItemView::paintEvent(QPaintEvent*)
{
    if (image_.isEmpty())
        return;
    QPainter painter(this);
    NamedImage::paintFill(painter, *this, image_);
}
