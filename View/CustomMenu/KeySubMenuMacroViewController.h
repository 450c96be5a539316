#pragma once
// The key menu's macro list: one row per stored macro, in the store's
// order, and a "Create Macro" button. Choosing a row posts
// "MacroFunctionAction" with the macro's id, which puts that macro on the
// key the menu was opened for; the button posts "SubMenuItemMacroAction"
// with "type" 1 and "macroid" 0, which opens the macro window. The list is
// read again each time the window shows, and the window takes the height
// the list needs, up to six rows before it scrolls.

#include "View/control/FrameLessView.h"

#include <QList>
#include <QVariantMap>

class DeviceSQLite;
class IconButton;
class QLabel;
class QListWidget;

class KeySubMenuMacroViewController : public FramelessWindow {
    Q_OBJECT
public:
    explicit KeySubMenuMacroViewController(QWidget* parent = nullptr);

    void loadMacroData();

    QListWidget* macro_tableview = nullptr;  // identifier "macrotable"; it scrolls by itself
    QWidget* macro_scrollview = nullptr;     // the same widget
    IconButton* btn_createMacro = nullptr;
    QList<QVariantMap> macro_datas;  // "macroid", "text"
    // The device store the list is read from, set before each showing.
    DeviceSQLite* deviceDB = nullptr;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void viewDidLoad();
    void viewDidAppear();
    void layoutForRows(int rows);
    void selectionDidChange();
};
