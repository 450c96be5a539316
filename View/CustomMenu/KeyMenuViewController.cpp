#include "View/CustomMenu/KeyMenuViewController.h"

#include "Language/Language.h"
#include "View/CustomMenu/KeyMenuEntries.h"
#include "View/control/FlippedRect.h"
#include "View/control/MenuItemView.h"

#include <QShowEvent>

using namespace KeyMenuEntries;

namespace {

MenuItem* makeItem(QWidget* parent, int height, const Entry& entry)
{
    auto* item = new MenuItem(parent);
    item->setObjectName(QString::fromLatin1(entry.field));
    item->setGeometry(flippedRect(height, kItemX, entry.y, kItemWidth, kItemHeight));
    item->initTextAndMenuID(title(entry), entry.menuId);
    return item;
}

MenuItem* findItem(const std::vector<MenuItem*>& items, int menuId)
{
    for (MenuItem* item : items)
        if (item->curMenuID == menuId)
            return item;
    return nullptr;
}

// The titles of the language in force on a set of items made from `entries`.
void retitle(const std::vector<MenuItem*>& items, std::span<const Entry> entries)
{
    for (std::size_t i = 0; i < items.size() && i < entries.size(); ++i)
        items[i]->textView->setText(title(entries[i]));
}

}  // namespace

KeyMenuViewController::KeyMenuViewController(QWidget* parent) : FramelessWindow(parent)
{
    setObjectName(QStringLiteral("keyboardKeyMenu"));
    resize(kMenuWidth, firstLevelHeight());
    viewDidLoad();
}

void KeyMenuViewController::viewDidLoad()
{
    MenuItem** fields[] = {&menuitem_sysfunc, &menuitem_mediafuc, &menuitem_macro,   &menuitem_mouse,
                           &menuitem_keyfunc, &menuitem_setfn,    &menuitem_disable, &menuitem_default};
    const auto entries = firstLevel();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        MenuItem* item = makeItem(this, firstLevelHeight(), entries[i]);
        item->sendMouseEntered = true;
        *fields[i] = item;
        items_.push_back(item);
    }
}

void KeyMenuViewController::viewDidAppear() { retitle(items_, firstLevel()); }

void KeyMenuViewController::showEvent(QShowEvent* event)
{
    viewDidAppear();
    FramelessWindow::showEvent(event);
}

MenuItem* KeyMenuViewController::item(int menuId) const { return findItem(items_, menuId); }

KeySubMenuViewController::KeySubMenuViewController(QWidget* parent) : FramelessWindow(parent)
{
    setObjectName(QStringLiteral("keyboardKeySubMenu"));
    resize(kMenuWidth, secondLevelHeight(kSystemSet));
}

std::vector<MenuItem*>& KeySubMenuViewController::itemsOf(int type)
{
    switch (type) {
    case kSystemSet:
        return sysItems_;
    case kMediaSet:
        return mediaItems_;
    case kMouseSet:
        return mouseItems_;
    default:
        return none_;
    }
}

bool& KeySubMenuViewController::flagOf(int type)
{
    switch (type) {
    case kSystemSet:
        return initMacShortcuts;
    case kMediaSet:
        return initMedia;
    case kMouseSet:
        return initMouse;
    default:
        return noFlag_;
    }
}

void KeySubMenuViewController::initSubMenuItem(int type)
{
    const auto entries = secondLevel(type);
    std::vector<MenuItem*>& items = itemsOf(type);
    bool& made = flagOf(type);
    if (!made && !entries.empty()) {
        for (const Entry& entry : entries) {
            MenuItem* item = makeItem(this, secondLevelHeight(type), entry);
            item->hide();
            items.push_back(item);
        }
        made = true;
    }
    retitle(items, entries);
}

void KeySubMenuViewController::removePreView()
{
    for (MenuItem* item : itemsOf(submenu_type))
        item->hide();
}

void KeySubMenuViewController::setSubMenuType(int type)
{
    if (secondLevel(type).empty()) {
        submenu_type = type;
        return;
    }
    initSubMenuItem(type);
    removePreView();
    for (MenuItem* item : itemsOf(type))
        item->show();
    resize(kMenuWidth, secondLevelHeight(type));
    submenu_type = type;
}

MenuItem* KeySubMenuViewController::item(int menuId) const
{
    for (const auto* items : {&sysItems_, &mediaItems_, &mouseItems_})
        if (MenuItem* found = findItem(*items, menuId); found && found->isVisibleTo(this))
            return found;
    return nullptr;
}
