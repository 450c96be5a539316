#include "View/KeyboardLayout/KeyCodeMaps.h"

#include "View/KeyboardLayout/KeyVocabulary.h"

const KeyNameMap& Orvane61K_SuperKeyNameMap() { return KeyVocabulary::orvane61kMaps().names; }
const KeyCodeMap& Orvane61K_SuperKeyCodeMap1() { return KeyVocabulary::orvane61kMaps().codes[0]; }
const KeyCodeMap& Orvane61K_SuperKeyCodeMap2() { return KeyVocabulary::orvane61kMaps().codes[1]; }
const KeyCodeMap& Orvane61K_SuperKeyCodeMap3() { return KeyVocabulary::orvane61kMaps().codes[2]; }
const KeyNameMap& Orvane68K_SuperKeyNameMap() { return KeyVocabulary::orvane68kMaps().names; }
const KeyCodeMap& Orvane68K_SuperKeyCodeMap1() { return KeyVocabulary::orvane68kMaps().codes[0]; }
const KeyCodeMap& Orvane68K_SuperKeyCodeMap2() { return KeyVocabulary::orvane68kMaps().codes[1]; }
const KeyCodeMap& Orvane68K_SuperKeyCodeMap3() { return KeyVocabulary::orvane68kMaps().codes[2]; }

KeyNameMap G_KB_SuperKeyNameMap;
KeyCodeMap G_KB_SuperKeyCodeMap;
std::vector<int> G_KB_FlagKeys;
std::vector<int> G_KB_NormalKeys;

void selectKeyMaps(KeyMapModel model, CodeMapStart start)
{
    const bool is61k = model == KeyMapModel::Orvane61k;
    G_KB_SuperKeyNameMap = is61k ? Orvane61K_SuperKeyNameMap() : Orvane68K_SuperKeyNameMap();
    if (start == CodeMapStart::Empty)
        G_KB_SuperKeyCodeMap.clear();
    // Rows of a model shown earlier survive a KeepCurrent start; the keys of
    // the picture always resolve to the active model's rows, since those win.
    G_KB_SuperKeyCodeMap = appendDictionary(G_KB_SuperKeyCodeMap, is61k ? Orvane61K_SuperKeyCodeMap1() : Orvane68K_SuperKeyCodeMap1());
    G_KB_SuperKeyCodeMap = appendDictionary(G_KB_SuperKeyCodeMap, is61k ? Orvane61K_SuperKeyCodeMap2() : Orvane68K_SuperKeyCodeMap2());
    G_KB_SuperKeyCodeMap = appendDictionary(G_KB_SuperKeyCodeMap, is61k ? Orvane61K_SuperKeyCodeMap3() : Orvane68K_SuperKeyCodeMap3());
}

void fillFlagAndNormalKeys()
{
    G_KB_FlagKeys.clear();
    G_KB_NormalKeys.clear();
    for (const auto& [name, record] : G_KB_SuperKeyNameMap)
        (record.key_type ? G_KB_FlagKeys : G_KB_NormalKeys).push_back(record.key_code);
}

std::optional<KeyNameRecord> keyNameRecord(const QString& keyName)
{
    const auto it = G_KB_SuperKeyNameMap.find(keyName);
    if (it == G_KB_SuperKeyNameMap.end())
        return std::nullopt;
    return it->second;
}

std::optional<KeyCodeRecord> keyCodeRecord(int keyCode)
{
    const auto it = G_KB_SuperKeyCodeMap.find(keyCode);
    if (it == G_KB_SuperKeyCodeMap.end())
        return std::nullopt;
    return it->second;
}

std::optional<int> picturePosition(int keyCode, int keyCount)
{
    const auto record = keyCodeRecord(keyCode);
    if (!record || record->pos_index < 0 || record->pos_index >= keyCount)
        return std::nullopt;
    return record->pos_index;
}
