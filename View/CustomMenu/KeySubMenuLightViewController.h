#pragma once
// The light menu, in three shapes chosen by a menu type:
//  1: "Light Up RGB" and "Turn Off", for two or more keys checked on the
//     picture outside the user light tab (90 high);
//  2: "Add Light" and "Save to custom mode 1" to 5, for a row of the user
//     light list (246 high);
//  3: "Add Light" alone, beside the rows of that list (46 high).
// A shape's entries are made the first time it is asked for and kept; they
// take the language in force at each showing. A choice posts
// "MenuItemMouseUpAction" with the entry's menu id.

#include "View/control/FrameLessView.h"

#include <vector>

class MenuItem;

class KeySubMenuLightViewController : public FramelessWindow {
    Q_OBJECT
public:
    explicit KeySubMenuLightViewController(QWidget* parent = nullptr);

    void setMenuType(int type);
    void initSubMenuItem(int type);
    void removePreView();

    MenuItem* menuitem_light_reset = nullptr;
    MenuItem* menuitem_light_custom = nullptr;
    MenuItem* menuitem_userlight_add = nullptr;
    MenuItem* menuitem_userlight_setprofile1 = nullptr;
    MenuItem* menuitem_userlight_setprofile2 = nullptr;
    MenuItem* menuitem_userlight_setprofile3 = nullptr;
    MenuItem* menuitem_userlight_setprofile4 = nullptr;
    MenuItem* menuitem_userlight_setprofile5 = nullptr;
    MenuItem* menuitem_userlight_add2 = nullptr;
    MenuItem* menuitem_userlight_import = nullptr;  // beside the rows: import a file
    int menu_type = 0;
    bool initLight = false;
    bool initUserLight = false;
    bool initAddUserLight = false;

    // The entries of a shape, top to bottom; empty before it was made.
    std::vector<MenuItem*> entries(int type) const;
};
