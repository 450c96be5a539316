#include "View/control/MenuItemView.h"

#include "Common/NotificationCenter.h"
#include "View/control/FlippedRect.h"
#include "View/control/NamedImage.h"
#include "View/control/Theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QVariantMap>

namespace {
const QString kChineseTitle = QStringLiteral("简体中文");
constexpr int kChineseMenuId = 1004;
constexpr int kEnglishMenuId = 1005;
}  // namespace

MenuIconItem::MenuIconItem(QWidget* parent) : QAbstractButton(parent)
{
    setCursor(Qt::PointingHandCursor);
}

void MenuIconItem::initIconAndText(const QString& icon_normal, const QString& icon_hover, const QString& title)
{
    icon_normal_name = icon_normal;
    icon_hover_name = icon_hover;
    cur_normal_name.clear();
    if (!isTrackingArea) {
        setAttribute(Qt::WA_Hover);
        isTrackingArea = true;
    }
    if (!iconView) {
        iconView = new NamedImageView(this);
        textView = new QLabel(this);
        textView->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        textView->setAttribute(Qt::WA_TransparentForMouseEvents);
        Theme::setTextColor(textView, Theme::normalText());
    }
    iconView->setGeometry(iconFrame());
    iconView->setImageName(icon_normal_name);
    textView->setGeometry(flippedRect(height(), 50, 12, 90, 16));
    textView->setText(title);
    update();
}

QRect MenuIconItem::iconFrame() const { return flippedRect(height(), 30, 12, 15, 15); }

void MenuIconItem::enterEvent(QEnterEvent* event)
{
    cur_normal_name = QStringLiteral("menu_row_hover");
    // A row given no hover icon keeps its icon.
    if (iconView)
        iconView->setImageName(icon_hover_name.isEmpty() ? icon_normal_name : icon_hover_name);
    Theme::setTextColor(textView, Qt::white);
    update();
    QAbstractButton::enterEvent(event);
}

void MenuIconItem::leaveEvent(QEvent* event)
{
    cur_normal_name.clear();
    if (iconView)
        iconView->setImageName(icon_normal_name);
    Theme::setTextColor(textView, Theme::normalText());
    update();
    QAbstractButton::leaveEvent(event);
}

void MenuIconItem::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    NamedImage::paintFill(painter, *this, cur_normal_name);
}

void LanguageMenuIconItem::initIconAndText(const QString& icon_normal, const QString& icon_hover, const QString& title)
{
    MenuIconItem::initIconAndText(icon_normal, icon_hover, title);
    curLanguage = title;
    setMouseTracking(true);
}

QRect LanguageMenuIconItem::iconFrame() const { return flippedRect(height(), 30, 11, 17, 17); }

void LanguageMenuIconItem::mousePressEvent(QMouseEvent* event)
{
    // The action comes on release.
    event->accept();
}

void LanguageMenuIconItem::mouseReleaseEvent(QMouseEvent* event)
{
    event->accept();
    const int menuid = curLanguage == kChineseTitle ? kChineseMenuId : kEnglishMenuId;
    NotificationCenter::defaultCenter().post(QStringLiteral("MenuItemMouseUpAction"),
                                             QVariantMap{{QStringLiteral("menuid"), menuid}});
}

MenuItem::MenuItem(QWidget* parent) : QAbstractButton(parent)
{
    setCursor(Qt::PointingHandCursor);
}

void MenuItem::initTextAndMenuID(const QString& title, int menuID)
{
    curMenuID = menuID;
    if (textView)
        return;
    setAttribute(Qt::WA_Hover);
    setMouseTracking(true);
    textView = new QLabel(title, this);
    textView->setAlignment(Qt::AlignCenter);
    textView->setAttribute(Qt::WA_TransparentForMouseEvents);
    textView->setGeometry(flippedRect(height(), 6, 12, width() - 12, 16));
    Theme::setTextColor(textView, Theme::normalText());
}

void MenuItem::enterEvent(QEnterEvent* event)
{
    cur_normal_name = QStringLiteral("menu_row_hover");
    Theme::setTextColor(textView, Qt::white);
    update();
    if (sendMouseEntered)
        NotificationCenter::defaultCenter().post(QStringLiteral("MenuItemEnteredAction"),
                                                 QVariantMap{{QStringLiteral("menuid"), curMenuID}});
    QAbstractButton::enterEvent(event);
}

void MenuItem::leaveEvent(QEvent* event)
{
    cur_normal_name.clear();
    Theme::setTextColor(textView, Theme::normalText());
    update();
    QAbstractButton::leaveEvent(event);
}

void MenuItem::mousePressEvent(QMouseEvent* event)
{
    // The action comes on release.
    event->accept();
}

void MenuItem::mouseReleaseEvent(QMouseEvent* event)
{
    event->accept();
    NotificationCenter::defaultCenter().post(QStringLiteral("MenuItemMouseUpAction"),
                                             QVariantMap{{QStringLiteral("menuid"), curMenuID}});
}

void MenuItem::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    NamedImage::paintFill(painter, *this, cur_normal_name);
}
