#include "View/control/TableItemView.h"

#include "Common/NotificationCenter.h"
#include "Language/AppText.h"
#include "View/control/FlippedRect.h"
#include "View/control/NamedImage.h"
#include "View/control/Theme.h"

#include <QFontMetrics>
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
    textView->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    textView->setAttribute(Qt::WA_TransparentForMouseEvents);
    Theme::setTextColor(textView, Theme::normalText());
    countView = new QLabel(this);
    countView->setObjectName(QStringLiteral("countView"));
    countView->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    countView->setAttribute(Qt::WA_TransparentForMouseEvents);
    Theme::setTextColor(countView, Theme::disabledText());
    delBtnView = rowButton(this, QStringLiteral("macro_btn_del"), QRect());
    editBtnView = rowButton(this, QStringLiteral("macro_btn_edit"), QRect());
    const auto post = [this](int type) {
        NotificationCenter::defaultCenter().post(QStringLiteral("MacroTableViewButton"),
                                                 QVariantMap{{"type", type}, {"index", tableViewIndex}});
    };
    connect(delBtnView, &QAbstractButton::clicked, this, [post] { post(kDelete); });
    connect(editBtnView, &QAbstractButton::clicked, this, [post] { post(kEdit); });
    placeViews(false);
}

void MacroTableItemView::setMacro(const QString& name, int steps)
{
    countView->setText(appText(steps == 1 ? AppText::MacroStepCountOne : AppText::MacroStepCountMany).arg(steps));
    setText(name);
    placeViews(delBtnView->isVisible());
}

void MacroTableItemView::placeViews(bool hovered)
{
    if (!initFinish)
        return;
    constexpr int kButton = 20, kGap = 8, kLeft = 10;
    const int y = (height() - kButton) / 2;
    editBtnView->setGeometry(width() - kGap - kButton, y, kButton, kButton);
    delBtnView->setGeometry(editBtnView->x() - kGap - kButton, y, kButton, kButton);
    const int countWidth = countView->fontMetrics().horizontalAdvance(countView->text());
    countView->setGeometry(width() - kGap - countWidth, 0, countWidth, height());
    countView->setVisible(!hovered);
    const int nameEnd = (hovered ? delBtnView->x() : countView->x()) - kGap;
    textView->setGeometry(kLeft, 0, std::max(0, nameEnd - kLeft), height());
    elideText();
}

void MacroTableItemView::resizeEvent(QResizeEvent* event)
{
    TableItemView::resizeEvent(event);
    placeViews(delBtnView && delBtnView->isVisible());
}

void MacroTableItemView::setHovered(bool hovered)
{
    if (delBtnView)
        delBtnView->setVisible(hovered);
    if (editBtnView)
        editBtnView->setVisible(hovered);
    placeViews(hovered);
    if (countView)
        Theme::setTextColor(countView, hovered ? QColor(Qt::white) : Theme::disabledText());
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

void TableItemView::setText(const QString& text)
{
    text_ = text;
    elideText();
}

void TableItemView::elideText()
{
    if (!textView)
        return;
    const QString shown = textView->fontMetrics().elidedText(text_, Qt::ElideRight, textView->width());
    textView->setText(shown);
    setToolTip(shown == text_ ? QString() : text_);
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
