#pragma once
// A key combination as a custom key assignment holds it: modifiers held and
// at most one other key, kept in a key assignment's `macroValue` (the key)
// and `macro2Value` (the modifiers), and sent as the key table entry's
// modifier byte beside the key's HID usage.
//
// How the row holds it:
//   a key alone                 macroValue key,        macro2Value 0
//   one modifier and a key      macroValue key,        macro2Value the modifier's usage (224..231)
//   several modifiers and a key macroValue key,        macro2Value 0x100 | modifier mask
//   one modifier alone          macroValue its usage,  macro2Value 0
//   several modifiers alone     macroValue the first,  macro2Value 0x100 | modifier mask
// The flag 0x100 keeps a mask apart from a usage (a mask of 0xE0 would read
// as Left Control otherwise). Modifier mask: usage 224 + n is bit n.

#include <cstdint>
#include <optional>

namespace KeyCombination {

inline constexpr int kMaskFlag = 0x100;

constexpr bool isModifier(int usage) { return usage >= 224 && usage <= 231; }
constexpr uint8_t modifierBit(int usage) { return uint8_t(1u << (usage - 224)); }

struct Combination {
    uint8_t modifiers = 0;  // mask of the modifiers held
    int key = 0;            // the other key's usage; 0 for modifiers alone

    bool empty() const { return modifiers == 0 && key == 0; }
    bool operator==(const Combination&) const = default;
};

struct RowValues {
    int macroValue = 0;
    int macro2Value = 0;
    bool operator==(const RowValues&) const = default;
};

// The row of a combination; none for an empty one.
std::optional<RowValues> toRow(const Combination& combination);
// What a stored row holds, also for rows written elsewhere with a raw
// modifier byte in `macro2Value`.
Combination fromRow(int macroValue, int macro2Value);

}  // namespace KeyCombination
