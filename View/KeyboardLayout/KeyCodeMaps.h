#pragma once
// The key vocabulary: how a key is known by name (`key_name`), by its HID
// usage on the keyboard page (`key_code`), by its slot in the keyboard's key
// table (`layout_index`), by its slot in the per-key colour data
// (`light_index`) and by its index in the picture's key arrays
// (`pos_index`).
//
// Each model has one name map and three code maps (one per group of keyboard
// rows). Building a layout selects the active model's maps into the working
// maps below; everything else reads the working maps. They are used on the
// main thread only. A code the active model does not know is answered with
// "no such key" (an empty optional), never with a made-up record, since a
// host keyboard may send keys this model lacks.

#include <QString>

#include <map>
#include <optional>
#include <vector>

enum class Keyboard_Key_Type { flag, normalKey };

struct KeyNameRecord {
    int key_code = 0;
    QString short_name;
    QString full_name;
    int layout_index = 0;
    // Only modifier keys (and Caps Lock) carry a type; none stores normalKey.
    std::optional<Keyboard_Key_Type> key_type;
};

struct KeyCodeRecord {
    QString key_name;
    QString short_name;
    QString full_name;
    int layout_index = 0;
    int light_index = 0;
    int pos_index = 0;
    std::optional<Keyboard_Key_Type> key_type;
};

using KeyNameMap = std::map<QString, KeyNameRecord>;
using KeyCodeMap = std::map<int, KeyCodeRecord>;

// `dict` with every entry of `dic2` added; on a key both hold, `dic2` wins.
template <typename Map>
Map appendDictionary(const Map& dict, const Map& dic2)
{
    Map merged = dic2;
    merged.insert(dict.begin(), dict.end());  // keeps dic2's entry on a clash
    return merged;
}

// The per-model source tables, built once on first use.
const KeyNameMap& Orvane61K_SuperKeyNameMap();
const KeyCodeMap& Orvane61K_SuperKeyCodeMap1();
const KeyCodeMap& Orvane61K_SuperKeyCodeMap2();
const KeyCodeMap& Orvane61K_SuperKeyCodeMap3();
const KeyNameMap& Orvane68K_SuperKeyNameMap();
const KeyCodeMap& Orvane68K_SuperKeyCodeMap1();
const KeyCodeMap& Orvane68K_SuperKeyCodeMap2();
const KeyCodeMap& Orvane68K_SuperKeyCodeMap3();

// The working maps of the active model; empty before the first layout.
extern KeyNameMap G_KB_SuperKeyNameMap;
extern KeyCodeMap G_KB_SuperKeyCodeMap;
extern std::vector<int> G_KB_FlagKeys;
extern std::vector<int> G_KB_NormalKeys;

enum class KeyMapModel { Orvane61k, Orvane68k };
enum class CodeMapStart {
    Empty,        // the 61k and 68k builders
    KeepCurrent,  // the CNC builder appends onto what an earlier model left
};

// Sets the name map to the model's and merges its three code maps into the
// code map, starting from an empty one or from what it holds now.
void selectKeyMaps(KeyMapModel model, CodeMapStart start);

// Refills G_KB_FlagKeys and G_KB_NormalKeys from the name map.
void fillFlagAndNormalKeys();

std::optional<KeyNameRecord> keyNameRecord(const QString& keyName);
std::optional<KeyCodeRecord> keyCodeRecord(int keyCode);

// The index into the picture's key arrays for a code, or none when the
// model has no such key or its index lies outside `keyCount` keys (the
// 68-key model's backtick has a code row but no place in the picture).
std::optional<int> picturePosition(int keyCode, int keyCount);
