// The one write path of every key assignment.
#include "View/MainController.h"

#include "Common/Records.h"
#include "SQLite/DeviceSQLite.h"

void MainController::addCustomKey(ProfileKey& keydata)
{
    if (!deviceDB)
        return;
    keydata.profId = currentProfile;
    keydata.keyValue = currentKeyValue;
    deviceDB->addKeyProfile(keydata);
    loadKeyMacro();
    setKeyMacroData(currentProfile);
}
