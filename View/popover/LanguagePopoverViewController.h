#pragma once
// The language menu: a transient popup under the language button with one
// row per language. A click on a row posts "MenuItemMouseUpAction" (1004
// Chinese, 1005 English); the controller switches and closes the popup.

#include <QWidget>

class LanguageMenuIconItem;

class LanguagePopoverViewController : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWidth = 160;
    static constexpr int kRowHeight = 40;

    explicit LanguagePopoverViewController(QWidget* parent = nullptr);

    void viewDidLoad();
    // Shows the popup below `anchor`, its right edge on the anchor's.
    void showBelow(QWidget* anchor);

    LanguageMenuIconItem* lan2052MenuItem = nullptr;
    LanguageMenuIconItem* lan1033MenuItem = nullptr;

protected:
    void paintEvent(QPaintEvent* event) override;
};
