#pragma once
// Menu rows with an icon and a title, for the small popovers. Under the
// pointer a row shows the "menu_row_hover" image behind it, its hover icon
// and white text.

#include "View/control/NamedImageView.h"

#include <QAbstractButton>
#include <QLabel>
#include <QString>

class MenuIconItem : public QAbstractButton {
    Q_OBJECT
public:
    explicit MenuIconItem(QWidget* parent = nullptr);

    // The views are made on the first call; later calls replace names and title.
    virtual void initIconAndText(const QString& icon_normal, const QString& icon_hover, const QString& title);

    QString cur_normal_name;
    QString cur_hover_name;
    QString icon_normal_name;
    QString icon_hover_name;
    bool isTrackingArea = false;
    NamedImageView* iconView = nullptr;
    QLabel* textView = nullptr;

    QString shownImageName() const { return cur_normal_name; }

protected:
    // Where the icon sits, in the row's own (y up) coordinates.
    virtual QRect iconFrame() const;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

// A row of the language menu. A click (on release) posts
// "MenuItemMouseUpAction" with "menuid" 1004 for the title "简体中文" and
// 1005 for any other title; the title is kept in `curLanguage`.
class LanguageMenuIconItem : public MenuIconItem {
    Q_OBJECT
public:
    using MenuIconItem::MenuIconItem;

    void initIconAndText(const QString& icon_normal, const QString& icon_hover, const QString& title) override;

    QString curLanguage;

protected:
    QRect iconFrame() const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
};

// A text-only menu row with a menu id (the profile menu). A click (on
// release) posts "MenuItemMouseUpAction" with "menuid" = `curMenuID`; with
// `sendMouseEntered` set, entering the row posts "MenuItemEnteredAction"
// with the same object.
class MenuItem : public QAbstractButton {
    Q_OBJECT
public:
    explicit MenuItem(QWidget* parent = nullptr);

    // Stores the id. The text view is made and given `title` on the first
    // call only: later calls change the id, and callers change the text
    // through `textView`.
    void initTextAndMenuID(const QString& title, int menuID);

    int curMenuID = 0;
    QLabel* textView = nullptr;
    bool sendMouseEntered = false;
    QString cur_normal_name;  // "menu_row_hover" under the pointer, else empty

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};
