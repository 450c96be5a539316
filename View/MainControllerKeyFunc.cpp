// Writing one key assignment: the capture dialog's message and the write
// path that every menu's assignment takes.
#include "View/MainController.h"

#include "Common/Records.h"
#include "Language/AppText.h"
#include "SQLite/DeviceSQLite.h"
#include "View/CustomMenu/KeyMenuViewController.h"
#include "View/CustomMenu/KeySubMenuKeyFuncViewController.h"

namespace {
constexpr int kCustomKeyType = 14;
}

void MainController::CustomKeyFuncMsg(const QVariant& object)
{
    const QVariantMap message = object.toMap();
    const QVariant keyValue = message.value(QStringLiteral("keyvalue"));
    const QVariant keyDesc = message.value(QStringLiteral("keyDesc"));
    if (keyValue.typeId() != QMetaType::Int || keyDesc.typeId() != QMetaType::QString)
        return;
    // Nothing captured (Cancel): the key keeps what it had.
    if (keyValue.toInt() != 0) {
        ProfileKey keydata;
        keydata.macroType = kCustomKeyType;
        keydata.macroValue = keyValue.toInt();
        keydata.macro2Value = message.value(QStringLiteral("modifiers"), 0).toInt();
        keydata.macroDesc = keyDesc.toString();
        addCustomKey(keydata);
    }
    // The menus that led here close with the dialog.
    hideFloatingWindows();
}

void MainController::addCustomKey(ProfileKey& keydata)
{
    // The key is the one clicked now; the profile is the one the keyboard
    // is on once a status poll's reply that is owed has been acted on, so
    // what is stored, shown and sent agree.
    keydata.keyValue = currentKeyValue;
    afterPollReply([this, keydata]() mutable {
        if (!deviceDB)
            return;
        keydata.profId = currentProfile;
        const int64_t result = deviceDB->addKeyProfile(keydata);
        // A row was wanted and none is there: the store refused the write
        // and kept the key's earlier assignment, which the key goes on
        // showing.
        if (result < 1 && keydata.macroValue != 0)
            showProblem(appText(AppText::KeyAssignmentSaveFailed), QStringLiteral("key-assignment"));
        loadKeyMacro();
        setKeyMacroData(currentProfile);
    });
}
