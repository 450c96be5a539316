#include "View/popover/PofilePopoverViewController.h"

#include "Language/Language.h"
#include "View/control/MenuItemView.h"

PofilePopoverViewController::PofilePopoverViewController(QWidget* parent) : PopoverPanel(parent)
{
    setObjectName(QStringLiteral("profilePopover"));
    setFixedSize(kWidth, 4 * kRowHeight + 2 * kPadding);
    viewDidLoad();
}

void PofilePopoverViewController::viewDidLoad()
{
    MenuItem** rows[] = {&profileA, &profileB, &profileC, &profileD};
    const char* names[] = {"profileA", "profileB", "profileC", "profileD"};
    for (int i = 0; i < 4; ++i) {
        auto* row = new MenuItem(this);
        row->setObjectName(QString::fromLatin1(names[i]));
        row->setGeometry(kPadding, kPadding + i * kRowHeight, kWidth - 2 * kPadding, kRowHeight);
        const int profile = i + 1;
        row->initTextAndMenuID(languageText(profileTextId(profile)), profile);
        *rows[i] = row;
    }
}

void PofilePopoverViewController::viewDidAppear()
{
    for (MenuItem* row : {profileA, profileB, profileC, profileD})
        row->textView->setText(languageText(profileTextId(row->curMenuID)));
}
