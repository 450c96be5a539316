// The key menus: a click on a key of the picture opens a menu at the
// pointer, hovering an entry opens its second level beside it, and a click
// on an entry assigns a function to the key. The floating windows are made
// on first use and afterwards only shown and hidden.
#include "View/MainController.h"

#include "Common/NotificationCenter.h"
#include "Common/Records.h"
#include "Language/Language.h"
#include "SQLite/DeviceSQLite.h"
#include "View/MacroController.h"
#include "View/CustomMenu/KeyMenuEntries.h"
#include "View/CustomMenu/KeyMenuViewController.h"
#include "View/CustomMenu/KeySubMenuKeyFuncViewController.h"
#include "View/CustomMenu/KeySubMenuLightViewController.h"
#include "View/CustomMenu/KeySubMenuMacroViewController.h"
#include "View/CustomWindow/KBToolTipsViewController.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/control/FloatingWindowGroup.h"
#include "View/control/KeyboardView.h"
#include "View/control/SelectKeyView.h"

#include <QCursor>

#include <algorithm>

namespace {

// Where the pointer is, as a y-up screen point.
QPointF pointerLocation() { return FramelessWindow::toFlippedScreen(QCursor::pos()); }

void showAt(FramelessWindow* window, const QPointF& topLeft)
{
    window->setFrameTopLeftPoint(topLeft);
    window->show();
    window->raise();
}

// A first-level entry's second level starts this far below the menu's top.
std::optional<int> secondLevelOffset(int menuid)
{
    if (menuid < 10 || menuid > 14)
        return std::nullopt;
    return (menuid - 10) * 40;
}

}  // namespace

void MainController::registerKeyMenuNotifications()
{
    if (keyMenuObserved_)
        return;
    keyMenuObserved_ = true;
    auto& center = NotificationCenter::defaultCenter();
    center.addObserver(QStringLiteral("MenuItemEnteredAction"),
                       [this](const QVariant& o) { MenuItemEnteredAction(o); }, this);
    center.addObserver(QStringLiteral("ShowKeyboardToolTipWnd"),
                       [this](const QVariant& o) { ShowKeyboardToolTipWnd(o); }, this);
    // The user light list asks for its shapes of the light menu here.
    showLightMenu = [this](int menuType) { showKeyLightSubMenu(menuType); };
}

void MainController::showMenuForClickedKey()
{
    if (!orvane_keyboardctrl)
        return;
    const auto& keys = orvane_keyboardctrl->kbKeyArraySelect;
    const auto checked = std::count_if(keys.begin(), keys.end(), [this](const KeyData& key) {
        const SelectKeyView* view = orvane_keyboardctrl->selectKeyView(key.index);
        return view && view->keyCheck;
    });
    if (checked >= 2) {
        showKeyLightSubMenu(1);
        return;
    }
    if (!keyboardKeyMenu) {
        keyboardKeyMenu = new KeyMenuViewController(this);
        trackFloatingWindow(keyboardKeyMenu);
    }
    showAt(keyboardKeyMenu, pointerLocation());
    // The key being assigned stays marked while its menu is open.
    orvane_keyboardctrl->setMarkedKey(orvane_keyboardctrl->selectKeyItem);
}

void MainController::trackFloatingWindow(QWidget* window, bool takesEscape)
{
    if (!floatingWindows_)
        floatingWindows_ = new FloatingWindowGroup([this] { hideFloatingWindows(); }, this);
    floatingWindows_->add(window, takesEscape);
}

void MainController::showKeyLightSubMenu(int menuType)
{
    if (!kbKeyLightSubMenu) {
        kbKeyLightSubMenu = new KeySubMenuLightViewController(this);
        trackFloatingWindow(kbKeyLightSubMenu);
    }
    kbKeyLightSubMenu->setMenuType(menuType);
    showAt(kbKeyLightSubMenu, pointerLocation());
}

void MainController::MenuItemEnteredAction(const QVariant& object)
{
    const QVariant id = object.toMap().value(QStringLiteral("menuid"));
    if (id.typeId() != QMetaType::Int)
        return;
    const int menuid = id.toInt();
    const std::optional<int> offset = keyboardKeyMenu ? secondLevelOffset(menuid) : std::nullopt;
    // The second level that stays open is moved rather than hidden and shown
    // again, which would flicker under the pointer.
    QWidget* next = !offset ? nullptr : menuid == 12 ? static_cast<QWidget*>(kbKeyMacroSubMenu)
                                      : menuid == 14 ? kbKeyFuncSubMenu.data()
                                                     : static_cast<QWidget*>(keyboardKeySubMenu);
    for (QWidget* window : std::initializer_list<QWidget*>{keyboardKeySubMenu, kbKeyFuncSubMenu, kbKeyLightSubMenu,
                                                           kbKeyMacroSubMenu, keyboardToolTips})
        if (window && window != next)
            window->hide();
    if (!offset)
        return;
    const QRect frame = keyboardKeyMenu->flippedFrame();
    const QPointF pt(frame.x() + frame.width() + 2, frame.y() + frame.height() - 3 - *offset);
    switch (menuid) {
    case 12:
        showKeyMacroSubMenu(pt, menuid);
        break;
    case 14:
        showKeyFuncSubMenu(pt, menuid);
        break;
    default:
        showKeySubMenu(pt, menuid);
        break;
    }
}

void MainController::showKeySubMenu(const QPointF& pt, int menuid)
{
    if (!keyboardKeySubMenu) {
        keyboardKeySubMenu = new KeySubMenuViewController(this);
        trackFloatingWindow(keyboardKeySubMenu);
    }
    keyboardKeySubMenu->setSubMenuType(menuid);
    showAt(keyboardKeySubMenu, pt);
}

void MainController::showKeyMacroSubMenu(const QPointF& pt, int)
{
    if (!deviceDB)
        return;
    if (!kbKeyMacroSubMenu) {
        kbKeyMacroSubMenu = new KeySubMenuMacroViewController(this);
        trackFloatingWindow(kbKeyMacroSubMenu);
    }
    currentDeviceDB = deviceDB.get();
    kbKeyMacroSubMenu->deviceDB = currentDeviceDB;
    showAt(kbKeyMacroSubMenu, pt);
}

// "Key Commands" opens the capture dialog as its second level, placed like
// the others: its top-left corner at `pt`, y up. Flipping the y axis is its
// own inverse, so the same helper turns `pt` back into screen coordinates.
void MainController::showKeyFuncSubMenu(const QPointF& pt, int)
{
    KeySubMenuKeyFuncViewController* dialog = ShowKBKeyFuncSubMenu(this);
    trackFloatingWindow(dialog, true);
    dialog->move(FramelessWindow::toFlippedScreen(pt.toPoint()).toPoint());
}

void MainController::keyMenuMouseUpAction(int menuid)
{
    if (KeyMenuEntries::assignmentFor(menuid))
        addMenuItem(menuid);
    hideFloatingWindows();
}

void MainController::hideFloatingWindows()
{
    for (QWidget* window : std::initializer_list<QWidget*>{keyboardKeyMenu, keyboardKeySubMenu, kbKeyFuncSubMenu,
                                                           kbKeyLightSubMenu, kbKeyMacroSubMenu, keyboardToolTips})
        if (window)
            window->hide();
    if (orvane_keyboardctrl)
        orvane_keyboardctrl->setMarkedKey(-1);
}

void MainController::addMenuItem(int menuid)
{
    const auto assignment = KeyMenuEntries::assignmentFor(menuid);
    if (!assignment)
        return;
    ProfileKey key;
    key.macroType = assignment->macroType;
    key.macroValue = assignment->macroValue;
    // The title in the language of the moment: a stored text stays as it is.
    key.macroDesc = assignment->textId ? languageText(assignment->textId) : QString::fromUtf8(assignment->fixedText);
    addCustomKey(key);
}
