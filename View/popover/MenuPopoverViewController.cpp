#include "View/popover/MenuPopoverViewController.h"

#include "Common/NotificationCenter.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "View/control/MenuItemView.h"

#include <QVariantMap>

namespace {

struct Row {
    MenuIconItem* MenuPopoverViewController::*field;
    const char* name;
    const char* icon;  // "_n" and "_h" are added
    int textId;  // in the numbered tables; 0: `ownText`
    int tag;
    int menuId;
    AppText ownText = AppText::Count;
};

constexpr Row kRows[] = {
    {&MenuPopoverViewController::exportItem, "exportItem", "icon_export", 26, 555, 1001},
    {&MenuPopoverViewController::importItem, "importItem", "icon_import", 27, 556, 1000},
    {&MenuPopoverViewController::resetCurItem, "resetCurItem", "icon_reset", 28, 557, 1002},
    {&MenuPopoverViewController::resetAllItem, "resetAllItem", "icon_resetall", 29, 558, 1003},
    {&MenuPopoverViewController::restoreItem, "restoreItem", "icon_restore", 0, 559, 1006, AppText::RestoreMenuItem},
};

QString rowText(const Row& r)
{
    return r.textId ? languageText(r.textId) : appText(r.ownText);
}

}  // namespace

MenuPopoverViewController::MenuPopoverViewController(QWidget* parent) : PopoverPanel(parent)
{
    setObjectName(QStringLiteral("menuPopover"));
    setFixedSize(kWidth, int(std::size(kRows)) * kRowHeight + 2 * kPadding);
    viewDidLoad();
}

void MenuPopoverViewController::viewDidLoad()
{
    int top = kPadding;
    for (const Row& r : kRows) {
        auto* item = new MenuIconItem(this);
        item->setObjectName(QString::fromLatin1(r.name));
        item->setProperty("tag", r.tag);
        item->setGeometry(kPadding, top, kWidth - 2 * kPadding, kRowHeight);
        const QString icon = QString::fromLatin1(r.icon);
        item->initIconAndText(icon + QStringLiteral("_n"), icon + QStringLiteral("_h"), rowText(r));
        // The text takes the rest of the row: "Restore settings…" is longer
        // than the row's usual text place.
        item->textView->resize(item->width() - item->textView->x() - kPadding, item->textView->height());
        connect(item, &QAbstractButton::clicked, this, [this, item] { action_menubtn(item); });
        this->*r.field = item;
        top += kRowHeight;
    }
}

void MenuPopoverViewController::viewDidAppear()
{
    for (const Row& r : kRows)
        (this->*r.field)->textView->setText(rowText(r));
}

int MenuPopoverViewController::menuIdForTag(int tag)
{
    for (const Row& r : kRows)
        if (r.tag == tag)
            return r.menuId;
    return 0;
}

void MenuPopoverViewController::action_menubtn(QAbstractButton* sender)
{
    const int menuid = menuIdForTag(sender->property("tag").toInt());
    if (menuid == 0)
        return;
    NotificationCenter::defaultCenter().post(QStringLiteral("MenuItemMouseUpAction"),
                                             QVariantMap{{QStringLiteral("menuid"), menuid}});
}
