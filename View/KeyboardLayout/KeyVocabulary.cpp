#include "View/KeyboardLayout/KeyVocabulary.h"

#include <array>
#include <cstring>
#include <stdexcept>

namespace KeyVocabulary {
namespace {

// clang-format off
constexpr std::array<Word, 73> kWords{{
    {"escape",       41,  "Esc",         "Escape",        1,   false},
    {"pause",        72,  "Pause",       "Pause",         115, false},
    {"i1",           30,  "1",           "1",             20,  false},
    {"i2",           31,  "2",           "2",             21,  false},
    {"i3",           32,  "3",           "3",             22,  false},
    {"i4",           33,  "4",           "4",             23,  false},
    {"i5",           34,  "5",           "5",             24,  false},
    {"i6",           35,  "6",           "6",             25,  false},
    {"i7",           36,  "7",           "7",             26,  false},
    {"i8",           37,  "8",           "8",             27,  false},
    {"i9",           38,  "9",           "9",             28,  false},
    {"i0",           39,  "0",           "0",             29,  false},
    {"minus",        45,  "-",           "-",             30,  false},
    {"equal",        46,  "=",           "=",             31,  false},
    {"backspace",    42,  "Backspace",   "Backspace",     103, false, "Back"},
    {"insert",       73,  "Ins",         "Insert",        116, false},
    {"home",         74,  "Home",        "Home",          117, false},
    {"pageUp",       75,  "Page Up",     "Page Up",       118, false},
    {"tab",          43,  "Tab",         "Tab",           37,  false},
    {"q",            20,  "Q",           "Q",             38,  false},
    {"w",            26,  "W",           "W",             39,  false},
    {"e",            8,   "E",           "E",             40,  false},
    {"r",            21,  "R",           "R",             41,  false},
    {"t",            23,  "T",           "T",             42,  false},
    {"y",            28,  "Y",           "Y",             43,  false},
    {"u",            24,  "U",           "U",             44,  false},
    {"i",            12,  "I",           "I",             45,  false},
    {"o",            18,  "O",           "O",             46,  false},
    {"p",            19,  "P",           "P",             47,  false},
    {"leftBracket",  47,  "[",           "[",             48,  false},
    {"rightBracket", 48,  "]",           "]",             49,  false},
    {"backslash",    49,  "\\",          "\\",            67,  false},
    {"delete",       76,  "Del",         "Delete",        119, false},
    {"end",          77,  "End",         "End",           120, false},
    {"pageDown",     78,  "Page Down",   "Page Down",     121, false},
    {"capsLock",     57,  "CAPS",        "Caps Lock",     55,  true},
    {"a",            4,   "A",           "A",             56,  false},
    {"s",            22,  "S",           "S",             57,  false},
    {"d",            7,   "D",           "D",             58,  false},
    {"f",            9,   "F",           "F",             59,  false},
    {"g",            10,  "G",           "G",             60,  false},
    {"h",            11,  "H",           "H",             61,  false},
    {"j",            13,  "J",           "J",             62,  false},
    {"k",            14,  "K",           "K",             63,  false},
    {"l",            15,  "L",           "L",             64,  false},
    {"semicolon",    51,  ";",           ";",             65,  false},
    {"quote",        52,  "'",           "'",             66,  false},
    {"enter",        40,  "Enter",       "Enter",         85,  false},
    {"leftShift",    225, "Left Shift",  "Left Shift",    73,  true},
    {"z",            29,  "Z",           "Z",             74,  false},
    {"x",            27,  "X",           "X",             75,  false},
    {"c",            6,   "C",           "C",             76,  false},
    {"v",            25,  "V",           "V",             77,  false},
    {"b",            5,   "B",           "B",             78,  false},
    {"n",            17,  "N",           "N",             79,  false},
    {"m",            16,  "M",           "M",             80,  false},
    {"comma",        54,  "<",           "<",             81,  false},
    {"period",       55,  ">",           ">",             82,  false},
    {"slash",        56,  "?",           "?",             83,  false},
    {"rightShift",   229, "Right Shift", "Right Shift",   84,  true},
    {"upArrow",      82,  "Up Arrow",    "Up Arrow",      101, false},
    {"leftControl",  224, "Left Ctrl",   "Left Control",  91,  true},
    {"leftWin",      227, "Left Cmd",    "Left Command",  92,  true},
    {"leftAlt",      226, "Option",      "Option",        93,  true},
    {"space",        44,  "Space",       "Space",         94,  false},
    {"rightAlt",     230, "Option",      "Option",        95,  true},
    {"menu",         101, "Menu",        "Menu",          97,  false},
    {"fn",           175, "Fn",          "Fn",            96,  false},
    {"rightControl", 228, "Right Ctrl",  "Right Control", 98,  true},
    {"leftArrow",    80,  "Left Arrow",  "Left Arrow",    99,  false},
    {"downArrow",    81,  "Down Arrow",  "Down Arrow",    100, false},
    {"rightArrow",   79,  "Right Arrow", "Right Arrow",   102, false},
    {"backtick",     53,  "~",           "backtick",      19,  false},
}};
// clang-format on

std::optional<Keyboard_Key_Type> typeOf(const Word& w)
{
    return w.flag ? std::optional(Keyboard_Key_Type::flag) : std::nullopt;
}

}  // namespace

const Word& word(const char* keyName)
{
    for (const Word& w : kWords)
        if (std::strcmp(w.key_name, keyName) == 0)
            return w;
    // The model tables name only words listed above; a typo there must fail
    // the first build of the tables, not answer a wrong key.
    throw std::logic_error(std::string("unknown key name ") + keyName);
}

const Word* wordOfCode(int keyCode)
{
    for (const Word& w : kWords)
        if (w.key_code == keyCode)
            return &w;
    return nullptr;
}

ModelMaps modelMaps(std::span<const ModelKey> keys, std::span<const char* const> namesWithoutKey)
{
    ModelMaps maps;
    auto addName = [&maps](const Word& w) {
        maps.names[QString::fromLatin1(w.key_name)] = {w.key_code, QString::fromLatin1(w.short_name),
                                                       QString::fromLatin1(w.full_name), w.layout_index, typeOf(w)};
    };
    for (const char* name : namesWithoutKey)
        addName(word(name));
    for (const ModelKey& key : keys) {
        const Word& w = word(key.key_name);
        addName(w);
        const char* shortName = w.code_short_name ? w.code_short_name : w.short_name;
        maps.codes[key.map - 1][w.key_code] = {QString::fromLatin1(w.key_name), QString::fromLatin1(shortName),
                                               QString::fromLatin1(w.full_name), w.layout_index, key.light_index,
                                               key.pos_index, typeOf(w)};
    }
    return maps;
}

}  // namespace KeyVocabulary
