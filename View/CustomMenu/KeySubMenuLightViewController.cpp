#include "View/CustomMenu/KeySubMenuLightViewController.h"

#include "Language/AppText.h"
#include "Language/Language.h"
#include "View/control/FlippedRect.h"
#include "View/control/MenuItemView.h"

namespace {

struct LightEntry {
    MenuItem* KeySubMenuLightViewController::*field;
    const char* name;
    int y;
    int textId;
    int menuId;
};

using C = KeySubMenuLightViewController;
constexpr LightEntry kLightEntries[] = {
    {&C::menuitem_light_custom, "menuitem_light_custom", 43, 55, 162},
    {&C::menuitem_light_reset, "menuitem_light_reset", 3, 93, 161},
};
constexpr LightEntry kUserLightEntries[] = {
    {&C::menuitem_userlight_add, "menuitem_userlight_add", 203, 573, 166},
    {&C::menuitem_userlight_setprofile1, "menuitem_userlight_setprofile1", 163, 811, 167},
    {&C::menuitem_userlight_setprofile2, "menuitem_userlight_setprofile2", 123, 812, 168},
    {&C::menuitem_userlight_setprofile3, "menuitem_userlight_setprofile3", 83, 813, 169},
    {&C::menuitem_userlight_setprofile4, "menuitem_userlight_setprofile4", 43, 814, 170},
    {&C::menuitem_userlight_setprofile5, "menuitem_userlight_setprofile5", 3, 815, 171},
};
// Beside the rows (an empty list among them) a file can be imported too; its
// text is our own (kImportText), not a numbered one.
constexpr int kImportText = -1;
constexpr LightEntry kAddUserLightEntries[] = {
    {&C::menuitem_userlight_add2, "menuitem_userlight_add2", 43, 573, 166},
    {&C::menuitem_userlight_import, "menuitem_userlight_import", 3, kImportText, 172},
};

struct Shape {
    std::span<const LightEntry> entries;
    int height;
    bool C::*made;
};

std::optional<Shape> shapeOf(int type)
{
    switch (type) {
    case 1:
        return Shape{kLightEntries, 90, &C::initLight};
    case 2:
        return Shape{kUserLightEntries, 246, &C::initUserLight};
    case 3:
        return Shape{kAddUserLightEntries, 86, &C::initAddUserLight};
    default:
        return std::nullopt;
    }
}

constexpr int kWidth = 160;

}  // namespace

KeySubMenuLightViewController::KeySubMenuLightViewController(QWidget* parent) : FramelessWindow(parent)
{
    setObjectName(QStringLiteral("kbKeyLightSubMenu"));
    resize(kWidth, 90);
}

std::vector<MenuItem*> KeySubMenuLightViewController::entries(int type) const
{
    std::vector<MenuItem*> items;
    if (const auto shape = shapeOf(type))
        for (const LightEntry& entry : shape->entries)
            if (MenuItem* item = this->*entry.field)
                items.push_back(item);
    return items;
}

void KeySubMenuLightViewController::initSubMenuItem(int type)
{
    const auto shape = shapeOf(type);
    if (!shape)
        return;
    for (const LightEntry& entry : shape->entries) {
        MenuItem*& item = this->*entry.field;
        if (!(this->*shape->made)) {
            item = new MenuItem(this);
            item->setObjectName(QString::fromLatin1(entry.name));
            item->setGeometry(flippedRect(shape->height, 1, entry.y, 158, 40));
            item->initTextAndMenuID(QString(), entry.menuId);
            item->hide();
        }
        item->textView->setText(entry.textId == kImportText ? appText(AppText::UserLightImportTip)
                                                            : languageText(entry.textId));
    }
    this->*shape->made = true;
}

void KeySubMenuLightViewController::removePreView()
{
    for (MenuItem* item : entries(menu_type))
        item->hide();
}

void KeySubMenuLightViewController::setMenuType(int type)
{
    initSubMenuItem(type);
    removePreView();
    menu_type = type;
    const auto shape = shapeOf(type);
    if (!shape)
        return;
    for (MenuItem* item : entries(type))
        item->show();
    resize(kWidth, shape->height);
}
