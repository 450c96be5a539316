#pragma once
// The profile menu: a transient popup under the profile button with the four
// profiles a user can choose (menu ids 1 to 4). A click on a row posts
// "MenuItemMouseUpAction" by itself; the controller switches profile and
// closes the popup. Profile 5 is reached only from the keyboard.

#include "View/popover/PopoverPanel.h"

class MenuItem;

class PofilePopoverViewController : public PopoverPanel {
    Q_OBJECT
public:
    static constexpr int kWidth = 150;
    static constexpr int kRowHeight = 40;

    explicit PofilePopoverViewController(QWidget* parent = nullptr);

    void viewDidLoad();

    MenuItem* profileA = nullptr;
    MenuItem* profileB = nullptr;
    MenuItem* profileC = nullptr;
    MenuItem* profileD = nullptr;

protected:
    // The rows' texts, in the language of the moment.
    void viewDidAppear() override;
};
