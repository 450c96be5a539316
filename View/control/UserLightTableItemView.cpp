#include "View/control/UserLightTableItemView.h"

#include "Common/NotificationCenter.h"
#include "View/control/ButtonView.h"
#include "View/control/FlippedRect.h"
#include "View/control/NamedImageView.h"
#include "View/control/Theme.h"

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
    textView->setGeometry(flippedRect(kRowHeight, 25, 12, 65, 16));
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
            post(kTypeRename, textView->text());
        }
    });

    importBtnView = makeButton(90, kButtonStems[0], kTypeImport);
    exportBtnView = makeButton(115, kButtonStems[1], kTypeExport);
    delBtnView = makeButton(138, kButtonStems[2], kTypeDelete);
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
