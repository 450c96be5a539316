#include "View/control/UserLightTableItemView.h"

#include "Common/NotificationCenter.h"
#include "View/control/ButtonView.h"
#include "View/control/FlippedRect.h"
#include "View/control/NamedImageView.h"
#include "View/control/Theme.h"

#include <QMouseEvent>
#include <QPainter>

namespace {
constexpr int kNameTag = 556;
constexpr int kTypeImport = 1;
constexpr int kTypeExport = 2;
constexpr int kTypeDelete = 3;
constexpr int kTypeRename = 5;

void setNameColour(QLineEdit* field, const QColor& color)
{
    if (!field)
        return;
    QPalette pal = field->palette();
    pal.setColor(QPalette::Text, color);
    field->setPalette(pal);
}

const QString kButtonStems[] = {QStringLiteral("icon_userlight_import"), QStringLiteral("icon_userlight_export"),
                                QStringLiteral("icon_userlight_del")};
}  // namespace

UserLightTableItemView::UserLightTableItemView(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_Hover);
    setFixedHeight(kRowHeight);
}

void UserLightTableItemView::initView(int index)
{
    tableViewIndex = index;
    if (initFinish)
        return;
    initFinish = true;
    iconView = new NamedImageView(this);
    iconView->setGeometry(flippedRect(kRowHeight, 5, 12, 15, 15));
    iconView->setImageName(QStringLiteral("icon_userlight_n"));

    textView = new QLineEdit(this);
    textView->setProperty("tag", kNameTag);
    // The name takes the row up to the buttons.
    textView->setGeometry(flippedRect(kRowHeight, 25, 12, kRowWidth - 25 - 72, 16));
    textView->setContextMenuPolicy(Qt::NoContextMenu);
    textView->installEventFilter(this);
    textView->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    textView->setFrame(false);
    textView->setReadOnly(true);
    // Read-only, the field lets clicks through to the list, which selects
    // the row; once down, it takes them to edit the name.
    textView->setAttribute(Qt::WA_TransparentForMouseEvents);
    textView->setStyleSheet(QStringLiteral("QLineEdit { background: transparent; padding: 0; }"));
    setNameColour(textView, Theme::normalText());
    connect(textView, &QLineEdit::editingFinished, this, [this] {
        if (!textView->isReadOnly() && textView->isModified()) {
            textView->setModified(false);
            post(kTypeRename, textView->text().trimmed());
        }
    });

    importBtnView = makeButton(kRowWidth - 70, kButtonStems[0], kTypeImport);
    exportBtnView = makeButton(kRowWidth - 45, kButtonStems[1], kTypeExport);
    delBtnView = makeButton(kRowWidth - 22, kButtonStems[2], kTypeDelete);
}

ImageButton* UserLightTableItemView::makeButton(int x, const QString& stem, int type)
{
    auto* button = new ImageButton(this);
    button->setGeometry(flippedRect(kRowHeight, x, 10, 20, 20));
    button->initControl(stem + QStringLiteral("_n"), stem + QStringLiteral("_h"));
    connect(button, &QAbstractButton::clicked, this, [this, type] { post(type); });
    return button;
}

void UserLightTableItemView::setDown(bool bDown)
{
    isDown = bDown;
    if (textView) {
        textView->setReadOnly(!bDown);
        textView->setAttribute(Qt::WA_TransparentForMouseEvents, !bDown);
        showName();
    }
    if (iconView)
        iconView->setImageName(bDown ? QStringLiteral("icon_userlight_h") : QStringLiteral("icon_userlight_n"));
    update();
}

void UserLightTableItemView::showButtonImages(const QString& suffix)
{
    ImageButton* const buttons[] = {importBtnView, exportBtnView, delBtnView};
    for (int i = 0; i < 3; ++i)
        if (buttons[i])
            buttons[i]->initControl(kButtonStems[i] + suffix, kButtonStems[i] + QStringLiteral("_h"));
}

void UserLightTableItemView::enterEvent(QEnterEvent* event)
{
    if (iconView)
        iconView->setImageName(QStringLiteral("icon_userlight_h"));
    setNameColour(textView, Theme::hoverBlue());
    showButtonImages(QStringLiteral("_h"));
    QWidget::enterEvent(event);
}

void UserLightTableItemView::leaveEvent(QEvent* event)
{
    if (iconView)
        iconView->setImageName(isDown ? QStringLiteral("icon_userlight_h") : QStringLiteral("icon_userlight_n"));
    setNameColour(textView, Theme::normalText());
    showButtonImages(QStringLiteral("_n"));
    QWidget::leaveEvent(event);
}

void UserLightTableItemView::paintEvent(QPaintEvent*)
{
    if (!isDown)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::selectedRow());
    painter.drawRoundedRect(QRectF(rect()).adjusted(0, 4, 0, -4), 6, 6);
}

void UserLightTableItemView::post(int type, const QString& text)
{
    QVariantMap object{{QStringLiteral("type"), type}, {QStringLiteral("index"), tableViewIndex}};
    if (type == kTypeRename)
        object.insert(QStringLiteral("text"), text);
    NotificationCenter::defaultCenter().post(QStringLiteral("UserLightTableViewButton"), object);
}

void UserLightTableItemView::setName(const QString& name)
{
    name_ = name;
    showName();
}

void UserLightTableItemView::showName()
{
    if (!textView)
        return;
    const QString shown = isDown ? name_
                                 : textView->fontMetrics().elidedText(name_, Qt::ElideRight,
                                                                      textView->width() - 4);
    textView->setText(shown);
    textView->setModified(false);
    textView->setToolTip(shown == name_ ? QString() : name_);
}

void UserLightTableItemView::setButtonTips(const QString& importTip, const QString& exportTip,
                                           const QString& deleteTip)
{
    if (!initFinish)
        return;
    importBtnView->setToolTip(importTip);
    exportBtnView->setToolTip(exportTip);
    delBtnView->setToolTip(deleteTip);
}

// The name field would open its own Cut/Copy/Paste menu; the row's light
// menu is the one wanted there.
bool UserLightTableItemView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == textView && event->type() == QEvent::MouseButtonRelease
        && static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
        NotificationCenter::defaultCenter().post(QStringLiteral("UserLightTableViewMenu"), tableViewIndex);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
