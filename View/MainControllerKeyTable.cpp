// The key table of a profile: built from the stored assignments and sent
// whole, and the assignments' texts shown on the keys of the picture.
#include "View/MainController.h"

#include "Common/OutputLine.h"
#include "Protocol/KeyTableBlock.h"
#include "Protocol/UploadSequences.h"
#include "SQLite/DeviceSQLite.h"
#include "View/KeyCapText.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/control/KeyboardView.h"

#include <algorithm>

namespace {

std::optional<int> activeSlotOf(int keyCode)
{
    if (const auto record = keyCodeRecord(keyCode))
        return record->layout_index;
    return std::nullopt;
}

}  // namespace

void MainController::setKeyMacroData(int profile)
{
    // A failed read is not an empty profile: sending an empty table would
    // take every assignment off the keyboard while the store still holds
    // them. Nothing goes out then.
    std::vector<ProfileKey> rows;
    if (!deviceDB || !deviceDB->queryKeysProfile(profile, rows)) {
        qCWarning(lcOrvane) << "key table of profile" << profile << "not sent: its assignments could not be read";
        return;
    }
    // Macro entries name a macro by its place in the list, so the list is
    // read only when some row needs it.
    std::vector<MacroInfo> macros;
    if (std::any_of(rows.begin(), rows.end(), [](const ProfileKey& row) { return row.macroType == KeyTableBlock::kMacro; }))
        deviceDB->queryAllMacroData(macros);
    const KeyTableBlock::Block table = KeyTableBlock::build(rows, macros, activeSlotOf);
    submitSequence(UploadSequences::keyTable(profile, table));
}

void MainController::loadKeyMacro()
{
    if (!orvane_keyboardctrl)
        return;
    orvane_keyboardctrl->resetKeyMacro();
    std::vector<ProfileKey> rows;
    std::vector<MacroInfo> macros;
    if (deviceDB) {
        deviceDB->queryKeysProfile(currentProfile, rows);
        deviceDB->queryAllMacroData(macros);
    }
    std::vector<KeyData>& keys = orvane_keyboardctrl->kbKeyArraySelect;
    std::vector<QString> caps(keys.size());
    for (const ProfileKey& row : rows) {
        // A key this model lacks has no place in the picture.
        const auto pos = picturePosition(row.keyValue, int(keys.size()));
        if (!pos)
            continue;
        if (const auto text = KeyCapText::toolTipText(row, macros))
            keys[std::size_t(*pos)].keyMacro = *text;
        caps[std::size_t(*pos)] = KeyCapText::capText(row, macros);
    }
    orvane_keyboardctrl->setKeyCapTexts(std::move(caps));
}
