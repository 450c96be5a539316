// Menu commands: the items of the popovers post "MenuItemMouseUpAction" and
// the controller acts on their ids here.
#include "View/MainController.h"

#include "Common/Globals.h"
#include "SQLite/LocalSQLite.h"
#include "View/popover/LanguagePopoverViewController.h"

#include <QDateTime>

namespace {
constexpr qint64 kMenuDebounceMs = 1000;
constexpr int kMenuSwitchToChinese = 1004;
constexpr int kMenuSwitchToEnglish = 1005;
}  // namespace

void MainController::MenuItemMouseUpAction(const QVariant& object)
{
    const int menuid = object.toMap().value(QStringLiteral("menuid")).toInt();
    if (menuid >= 1000 && menuid <= 1005)
        SystemMenuMsg(menuid);
    // The key menus: an assignment for the clicked key; the floating windows close.
    keyMenuMouseUpAction(menuid);
    // Whatever was chosen, the menus close.
    if (languagePopover)
        languagePopover->hide();
}

void MainController::SystemMenuMsg(int msgId)
{
    // One command a second: a second click of the group within that time is
    // dropped, whichever it is.
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (now - timetickcount < kMenuDebounceMs)
        return;
    timetickcount = now;
    switch (msgId) {
    case kMenuSwitchToChinese:
        switchLanguage(kLanguageChinese);
        break;
    case kMenuSwitchToEnglish:
        switchLanguage(kLanguageEnglish);
        break;
    default:
        // The profile file and reset commands (1000 to 1003) have no menu yet.
        break;
    }
}
