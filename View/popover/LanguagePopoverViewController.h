#pragma once
// The language menu: a transient popup under the language button with one
// row per language. A click on a row posts "MenuItemMouseUpAction" (1004
// Chinese, 1005 English); the controller switches and closes the popup.

#include "View/popover/PopoverPanel.h"

class LanguageMenuIconItem;

class LanguagePopoverViewController : public PopoverPanel {
    Q_OBJECT
public:
    static constexpr int kWidth = 160;
    static constexpr int kRowHeight = 40;

    explicit LanguagePopoverViewController(QWidget* parent = nullptr);

    void viewDidLoad();

    LanguageMenuIconItem* lan2052MenuItem = nullptr;
    LanguageMenuIconItem* lan1033MenuItem = nullptr;
};
