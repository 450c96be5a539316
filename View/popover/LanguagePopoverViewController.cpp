#include "View/popover/LanguagePopoverViewController.h"

#include "View/control/MenuItemView.h"

LanguagePopoverViewController::LanguagePopoverViewController(QWidget* parent)
    : PopoverPanel(parent)
{
    setObjectName(QStringLiteral("languagePopover"));
    setFixedSize(kWidth, 2 * kRowHeight + 2 * kPadding);
    viewDidLoad();
}

void LanguagePopoverViewController::viewDidLoad()
{
    // The images are given crossed: the Chinese row carries "icon_lan_1033"
    // and the English row "icon_lan_2052". The titles stay the same in
    // both languages.
    lan2052MenuItem = new LanguageMenuIconItem(this);
    lan2052MenuItem->setObjectName(QStringLiteral("lan2052MenuItem"));
    lan2052MenuItem->setGeometry(kPadding, kPadding, kWidth - 2 * kPadding, kRowHeight);
    lan2052MenuItem->initIconAndText(QStringLiteral("icon_lan_1033"), QString(), QStringLiteral("简体中文"));

    lan1033MenuItem = new LanguageMenuIconItem(this);
    lan1033MenuItem->setObjectName(QStringLiteral("lan1033MenuItem"));
    lan1033MenuItem->setGeometry(kPadding, kPadding + kRowHeight, kWidth - 2 * kPadding, kRowHeight);
    lan1033MenuItem->initIconAndText(QStringLiteral("icon_lan_2052"), QString(), QStringLiteral("English"));
}
