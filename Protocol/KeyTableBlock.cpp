#include "Protocol/KeyTableBlock.h"

#include "Common/KeyCombination.h"

#include <algorithm>

namespace KeyTableBlock {
namespace {

// Entry byte 0: what the key becomes.
constexpr uint8_t kMouseEntry = 1;
constexpr uint8_t kKeyboardEntry = 2;
constexpr uint8_t kConsumerEntry = 3;
constexpr uint8_t kDisableEntry = 5;
constexpr uint8_t kMacroEntry = 6;

constexpr uint8_t kFnUsage = 0xAF;
constexpr uint8_t kDisableMode = 3;

struct FixedEntry {
    int kind;
    int value;  // the menu id stored as `macroValue`
    Entry entry;
};

// The menu assignments with a fixed meaning. Undo takes Left Control where
// its neighbours take Left GUI: the keyboard expects exactly these bytes.
constexpr std::array<FixedEntry, 21> kFixedEntries{{
    {kSystemShortcut, 101, {kKeyboardEntry, 0x10, 0x52, 0}},  // mission control
    {kSystemShortcut, 102, {kKeyboardEntry, 0x00, 0x48, 0}},  // backlight bright
    {kSystemShortcut, 103, {kKeyboardEntry, 0x00, 0x47, 0}},  // backlight dim
    {kSystemShortcut, 104, {kKeyboardEntry, 0x01, 0x1D, 0}},  // undo
    {kSystemShortcut, 105, {kKeyboardEntry, 0x08, 0x06, 0}},  // copy
    {kSystemShortcut, 106, {kKeyboardEntry, 0x08, 0x19, 0}},  // paste
    {kSystemShortcut, 107, {kKeyboardEntry, 0x08, 0x1B, 0}},  // cut
    {kMedia, 121, {kConsumerEntry, 0xCD, 0, 0}},  // play/pause
    {kMedia, 122, {kConsumerEntry, 0xB7, 0, 0}},  // stop
    {kMedia, 123, {kConsumerEntry, 0xB6, 0, 0}},  // previous
    {kMedia, 124, {kConsumerEntry, 0xB5, 0, 0}},  // next
    {kMedia, 125, {kConsumerEntry, 0xE9, 0, 0}},  // volume up
    {kMedia, 126, {kConsumerEntry, 0xEA, 0, 0}},  // volume down
    {kMedia, 127, {kConsumerEntry, 0xE2, 0, 0}},  // mute
    {kMouse, 131, {kMouseEntry, 1, 0x01, 0}},  // left button
    {kMouse, 132, {kMouseEntry, 1, 0x02, 0}},  // right button
    {kMouse, 133, {kMouseEntry, 1, 0x04, 0}},  // middle button
    {kMouse, 134, {kMouseEntry, 1, 0x08, 0}},  // forward
    {kMouse, 135, {kMouseEntry, 1, 0x10, 0}},  // backward
    {kMouse, 136, {kMouseEntry, 3, 0x01, 0}},  // wheel up
    {kMouse, 137, {kMouseEntry, 3, 0xFF, 0}},  // wheel down
}};

constexpr bool isModifier(int usage) { return usage >= 224 && usage <= 231; }
// Usage 224 + n is bit n of the modifier byte.
constexpr uint8_t modifierBit(int usage) { return uint8_t(1u << (usage - 224)); }
constexpr bool fitsByte(int64_t value) { return value >= 0 && value <= 0xFF; }

// `macroValue` is the key, `macro2Value` an optional modifier beside it (a
// usage, or a flagged mask of several: Common/KeyCombination.h). A lone
// modifier moves into the modifier byte.
Entry customKeyEntry(int key, int modifier)
{
    if (modifier & KeyCombination::kMaskFlag) {
        const KeyCombination::Combination combination = KeyCombination::fromRow(key, modifier);
        return {kKeyboardEntry, combination.modifiers, uint8_t(combination.key), 0};
    }
    Entry entry{kKeyboardEntry, 0, 0, 0};
    if (modifier != 0)
        entry[1] = isModifier(modifier) ? modifierBit(modifier) : uint8_t(modifier);
    entry[2] = isModifier(key) ? modifierBit(key) : uint8_t(key);
    if (modifier == 0 && isModifier(key)) {
        entry[1] = modifierBit(key);
        entry[2] = 0;
    }
    return entry;
}

Entry macroEntry(int64_t macroId, std::span<const MacroInfo> macros)
{
    const auto found = std::find_if(macros.begin(), macros.end(),
                                     [macroId](const MacroInfo& macro) { return macro.macroId == macroId; });
    if (found == macros.end())
        return {};
    const int64_t place = found - macros.begin();
    if (!fitsByte(place) || !fitsByte(found->playTimes))
        return {};
    return {kMacroEntry, uint8_t(place), 0, uint8_t(found->playTimes)};
}

}  // namespace

Entry entryFor(const ProfileKey& row, std::span<const MacroInfo> macros)
{
    switch (row.macroType) {
    case kSystemShortcut:
    case kMedia:
    case kMouse: {
        for (const auto& fixed : kFixedEntries)
            if (fixed.kind == row.macroType && fixed.value == row.macroValue)
                return fixed.entry;
        // A value the menus do not give still names the kind of the entry.
        const uint8_t kind = row.macroType == kSystemShortcut ? kKeyboardEntry
                             : row.macroType == kMedia        ? kConsumerEntry
                                                              : kMouseEntry;
        return {kind, 0, 0, 0};
    }
    case kMacro:
        return macroEntry(row.macroValue, macros);
    case kCustomKey:
        return customKeyEntry(row.macroValue, row.macro2Value);
    case kFn:
        return {kKeyboardEntry, 0, kFnUsage, 0};
    case kDisable:
        return {kDisableEntry, kDisableMode, 0, 0};
    default:
        return {};
    }
}

Block build(std::span<const ProfileKey> rows, std::span<const MacroInfo> macros, const SlotLookup& slotOf)
{
    Block block{};
    for (const auto& row : rows) {
        const std::optional<int> slot = slotOf ? slotOf(row.keyValue) : std::nullopt;
        if (!slot || *slot < 0 || *slot >= kSlotCount)
            continue;
        const Entry entry = entryFor(row, macros);
        std::copy(entry.begin(), entry.end(), block.begin() + std::ptrdiff_t(*slot) * std::ptrdiff_t(kEntrySize));
    }
    block[kMarkerAt] = Protocol::kEndMarker0;
    block[kMarkerAt + 1] = Protocol::kEndMarker1;
    return block;
}

}  // namespace KeyTableBlock
