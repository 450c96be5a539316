// The two resets: one profile back to its defaults, or the whole device
// database wiped and seeded again; each brings the keyboard into step.
#include "View/MainController.h"

#include "Common/OutputLine.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/Snapshot.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"

namespace {
// The profiles a full reset rewrites on the keyboard; the fifth, reached only
// from the keyboard, keeps what it has.
constexpr int kResetProfiles[] = {1, 2, 3, 4};
}  // namespace

void MainController::resetCurrent()
{
    OutputLine::print("resetCurrent ");
    if (!deviceState)
        return;
    // A reset the store could not make sends nothing: the keyboard keeps
    // what the store keeps (the store's failure is said by its watch).
    if (!deviceDB)
        return;
    // Nothing is reset that could not be undone.
    const auto snapshot = snapshotBefore(SnapshotKind::kResetCurrent);
    if (!snapshot || !deviceDB->resetProfile(currentProfile)
        || !deviceDB->updateConfigData(currentProfile, QStringLiteral("currentLightMode"), QStringLiteral("1")))
        return;
    swicthProfile(currentProfile);
    setKeyMacroData(currentProfile);
    // The switch above has sent the settings already; they go out once more,
    // as the keyboard has always received them after a reset.
    setHFDSystemSetData(currentProfile);
    showExchangeResult(appText(AppText::ResetProfileDone).arg(languageText(profileTextId(currentProfile))), *snapshot);
}

void MainController::resetAllData()
{
    OutputLine::print("resetAllData ");
    if (!deviceState)
        return;
    if (!deviceDB)
        return;
    const auto snapshot = snapshotBefore(SnapshotKind::kResetAll);
    if (!snapshot || !deviceDB->dropTable())
        return;
    initSQLite();
    if (!deviceDB)
        return;
    loadMacroData();
    loadUserlightData();
    fillFlagAndNormalKeys();
    // The seeded profile; a store that cannot say which it is (a failed
    // reseed) leaves the keyboard as it is rather than guess.
    bool ok = false;
    const int profile = deviceDB->getConfigData(1, QStringLiteral("currentProfile")).toInt(&ok);
    if (!ok) {
        qCWarning(lcOrvane) << "reset of all data: no stored profile after the reseed; nothing sent";
        return;
    }
    swicthProfile(profile);
    for (int p : kResetProfiles)
        setKeyMacroData(p);
    for (int p : kResetProfiles)
        setHFDSystemSetData(p);
    resetUserLightData();
    // The macros went with the store: the keyboard's go too, so it holds
    // what the window shows.
    SaveMacroToKeyboard();
    loadKeyMacro();
    showExchangeResult(appText(AppText::ResetAllDone), *snapshot);
}
