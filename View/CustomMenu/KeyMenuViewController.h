#pragma once
// The key menu and its second level, floating windows over the keyboard
// picture.
//
// KeyMenuViewController: eight entries, 40 units apart from the top. The
// first five open a second level when the pointer enters them (they post
// "MenuItemEnteredAction"); "Set as Fn key", "Disable" and "Default" assign
// on a click. Every click posts "MenuItemMouseUpAction" with the entry's id.
// KeySubMenuViewController: one of three sets of entries (system commands,
// media, mouse buttons), each set made once and then moved in and out of
// the view. Titles follow the language in force each time a menu shows.

#include "View/control/FrameLessView.h"

#include <vector>

class MenuItem;

class KeyMenuViewController : public FramelessWindow {
    Q_OBJECT
public:
    explicit KeyMenuViewController(QWidget* parent = nullptr);

    MenuItem* menuitem_sysfunc = nullptr;
    MenuItem* menuitem_mediafuc = nullptr;
    MenuItem* menuitem_macro = nullptr;
    MenuItem* menuitem_mouse = nullptr;
    MenuItem* menuitem_keyfunc = nullptr;
    MenuItem* menuitem_setfn = nullptr;
    MenuItem* menuitem_disable = nullptr;
    MenuItem* menuitem_default = nullptr;

    // The entry with that menu id, or null.
    MenuItem* item(int menuId) const;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void viewDidLoad();
    void viewDidAppear();
    std::vector<MenuItem*> items_;
};

class KeySubMenuViewController : public FramelessWindow {
    Q_OBJECT
public:
    explicit KeySubMenuViewController(QWidget* parent = nullptr);

    // Shows the set of `type` (10, 11 or 13) and takes that set's size; any
    // other type is only stored.
    void setSubMenuType(int type);
    // Makes the set's items at the first call; titles at every call.
    void initSubMenuItem(int type);
    // Takes the items of the set on show out of the view.
    void removePreView();

    int submenu_type = 0;
    bool initMacShortcuts = false;
    bool initMedia = false;
    bool initMouse = false;

    // The item of the set on show with that menu id, or null.
    MenuItem* item(int menuId) const;

private:
    std::vector<MenuItem*>& itemsOf(int type);
    bool& flagOf(int type);

    std::vector<MenuItem*> sysItems_;
    std::vector<MenuItem*> mediaItems_;
    std::vector<MenuItem*> mouseItems_;
    std::vector<MenuItem*> none_;
    bool noFlag_ = false;
};
