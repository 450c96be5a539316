// Menu commands: the items of the popovers post "MenuItemMouseUpAction" and
// the controller acts on their ids here.
#include "View/MainController.h"

#include "Common/Globals.h"
#include "SQLite/LocalSQLite.h"

#include <QDateTime>

namespace {
constexpr qint64 kMenuDebounceMs = 1000;
constexpr int kMenuFirstProfile = 1;
constexpr int kMenuLastProfile = 4;
constexpr int kMenuExportProfile = 1000;
constexpr int kMenuImportProfile = 1001;
constexpr int kMenuResetCurrent = 1002;
constexpr int kMenuResetAll = 1003;
constexpr int kMenuSwitchToChinese = 1004;
constexpr int kMenuSwitchToEnglish = 1005;
constexpr int kMenuRestoreSettings = 1006;
constexpr int kMenuLightTurnOff = 161;
constexpr int kMenuLightUpRgb = 162;
constexpr int kMenuLightImport = 172;
}  // namespace

void MainController::MenuItemMouseUpAction(const QVariant& object)
{
    const int menuid = object.toMap().value(QStringLiteral("menuid")).toInt();
    if (menuid >= kMenuFirstProfile && menuid <= kMenuLastProfile) {
        // A profile picked by hand holds until another application comes to the front.
        profileFollower.profilePickedByHand();
        pickProfile(menuid);
    }
    else if (menuid >= kMenuExportProfile && menuid <= kMenuRestoreSettings)
        SystemMenuMsg(menuid);
    // The light menu: add a user light mode (166), save to a slot (167 to 171).
    if (menuid >= 166 && menuid <= 171)
        UserLightTableMenuMsg(menuid);
    // The light menu over selected keys: full white, or no colour, stored
    // as a colour picked in the panel is.
    if (menuid == kMenuLightUpRgb)
        changeUserLightColor(Qt::white);
    else if (menuid == kMenuLightTurnOff)
        changeUserLightColor(Qt::black);
    else if (menuid == kMenuLightImport)  // once the menus have closed
        QMetaObject::invokeMethod(this, [this] { importLightData(); }, Qt::QueuedConnection);
    // The key menus: an assignment for the clicked key; the floating windows close.
    keyMenuMouseUpAction(menuid);
    // Whatever was chosen, the menus close.
    closePopovers();
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
    case kMenuExportProfile:
        exportKeyProfile();
        break;
    case kMenuImportProfile:
        importKeyProfile();
        break;
    case kMenuResetCurrent:
    case kMenuResetAll:
        askToReset(msgId);
        break;
    case kMenuRestoreSettings:
        showRestoreSettings();
        break;
    default:
        break;
    }
}
