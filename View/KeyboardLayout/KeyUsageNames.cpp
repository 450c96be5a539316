#include "View/KeyboardLayout/KeyUsageNames.h"

#include "View/KeyboardLayout/KeyVocabulary.h"

#include <QStringList>

#include <array>
#include <bit>
#include <utility>

namespace KeyUsageNames {
namespace {

// The usages the vocabulary has no word for.
// clang-format off
constexpr std::pair<int, const char*> kNames[] = {
    {0x31, "\\"}, {0x32, "Non-US #"}, {0x35, "`"},
    {0x3A, "F1"}, {0x3B, "F2"}, {0x3C, "F3"}, {0x3D, "F4"}, {0x3E, "F5"}, {0x3F, "F6"},
    {0x40, "F7"}, {0x41, "F8"}, {0x42, "F9"}, {0x43, "F10"}, {0x44, "F11"}, {0x45, "F12"},
    {0x46, "Print Screen"}, {0x47, "Scroll Lock"}, {0x48, "Pause"}, {0x49, "Insert"},
    {0x53, "Num Lock"}, {0x54, "Keypad /"}, {0x55, "Keypad *"}, {0x56, "Keypad -"}, {0x57, "Keypad +"},
    {0x58, "Keypad Enter"}, {0x59, "Keypad 1"}, {0x5A, "Keypad 2"}, {0x5B, "Keypad 3"}, {0x5C, "Keypad 4"},
    {0x5D, "Keypad 5"}, {0x5E, "Keypad 6"}, {0x5F, "Keypad 7"}, {0x60, "Keypad 8"}, {0x61, "Keypad 9"},
    {0x62, "Keypad 0"}, {0x63, "Keypad ."}, {0x64, "Non-US \\"}, {0x65, "Menu"}, {0x66, "Power"},
    {0x67, "Keypad ="},
    {0x68, "F13"}, {0x69, "F14"}, {0x6A, "F15"}, {0x6B, "F16"}, {0x6C, "F17"}, {0x6D, "F18"},
    {0x6E, "F19"}, {0x6F, "F20"}, {0x70, "F21"}, {0x71, "F22"}, {0x72, "F23"}, {0x73, "F24"},
    {0x74, "Execute"}, {0x75, "Help"}, {0x76, "Menu"}, {0x77, "Select"}, {0x78, "Stop"}, {0x79, "Again"},
    {0x7A, "Undo"}, {0x7B, "Cut"}, {0x7C, "Copy"}, {0x7D, "Paste"}, {0x7E, "Find"}, {0x7F, "Mute"},
    {0x80, "Volume Up"}, {0x81, "Volume Down"}, {0x85, "Keypad ,"},
    {0x87, "International 1"}, {0x88, "International 2"}, {0x89, "International 3"},
    {0x8A, "International 4"}, {0x8B, "International 5"}, {0x8C, "International 6"},
    {0x90, "Lang 1"}, {0x91, "Lang 2"}, {0x92, "Lang 3"}, {0x93, "Lang 4"}, {0x94, "Lang 5"},
    {0xB6, "Keypad ("}, {0xB7, "Keypad )"},
    {0xE3, "Left Super"}, {0xE7, "Right Super"},
};
// clang-format on

// Bit n of the modifier mask, as a combination names it.
constexpr std::array<const char*, 8> kModifierWords{
    "Ctrl", "Shift", "Alt", "Super", "Right Ctrl", "Right Shift", "Right Alt", "Right Super"};

}  // namespace

std::optional<QString> usageName(int usage)
{
    if (const KeyVocabulary::Word* word = KeyVocabulary::wordOfCode(usage))
        return QString::fromLatin1(word->full_name);
    for (const auto& [code, name] : kNames)
        if (code == usage)
            return QString::fromLatin1(name);
    return std::nullopt;
}

QString combinationText(const KeyCombination::Combination& combination)
{
    const int modifiers = std::popcount(combination.modifiers);
    if (combination.key == 0 && modifiers == 1)
        return usageName(224 + std::countr_zero(unsigned(combination.modifiers))).value_or(QString());
    QStringList parts;
    for (int bit = 0; bit < 8; ++bit)
        if (combination.modifiers & (1u << bit))
            parts << QString::fromLatin1(kModifierWords[std::size_t(bit)]);
    if (combination.key != 0) {
        const std::optional<QString> key = usageName(combination.key);
        if (!key)
            return {};
        parts << *key;
    }
    return parts.join(QLatin1Char('+'));
}

}  // namespace KeyUsageNames
