#pragma once
// The main menu: a transient popup under the menu button with the profile
// file and reset commands, and the list of restore points. A click on a row posts "MenuItemMouseUpAction"
// with the row's menu id (action_menubtn); the controller acts on it and
// closes the popup.
//
// The first two rows are named the other way round from what they do:
// `exportItem` reads "Import Profile" and sends 1001 (import), `importItem`
// reads "Export Profile" and sends 1000 (export). The names are kept so that
// every other part of the program finds the rows where it expects them.

#include "View/popover/PopoverPanel.h"

class MenuIconItem;
class QAbstractButton;

class MenuPopoverViewController : public PopoverPanel {
    Q_OBJECT
public:
    static constexpr int kWidth = 186;
    static constexpr int kRowHeight = 40;

    explicit MenuPopoverViewController(QWidget* parent = nullptr);

    void viewDidLoad();
    // A row's tag (555 to 559) to its menu id, posted; any other tag does
    // nothing.
    void action_menubtn(QAbstractButton* sender);
    // The menu id a row's tag stands for, 0 for none.
    static int menuIdForTag(int tag);

    MenuIconItem* exportItem = nullptr;
    MenuIconItem* importItem = nullptr;
    MenuIconItem* resetCurItem = nullptr;
    MenuIconItem* resetAllItem = nullptr;
    MenuIconItem* restoreItem = nullptr;  // "Restore settings…"

protected:
    // The rows' texts, in the language of the moment.
    void viewDidAppear() override;
};
