// The one write path of every key assignment.
#include "View/MainController.h"

#include "Common/Records.h"
#include "SQLite/DeviceSQLite.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/control/KeyboardView.h"

void MainController::addCustomKey(ProfileKey& keydata)
{
    if (!deviceDB)
        return;
    keydata.profId = currentProfile;
    keydata.keyValue = currentKeyValue;
    const int64_t result = deviceDB->addKeyProfile(keydata);
    // The key shows the assignment, or its own name when the row went away.
    if (orvane_keyboardctrl) {
        std::vector<KeyData>& keys = orvane_keyboardctrl->kbKeyArraySelect;
        if (const auto pos = picturePosition(keydata.keyValue, int(keys.size()))) {
            const auto record = keyCodeRecord(keydata.keyValue);
            keys[std::size_t(*pos)].keyMacro = result < 1 && record ? record->full_name : keydata.macroDesc;
            orvane_keyboardctrl->update();
        }
    }
    setKeyMacroData(currentProfile);
}
