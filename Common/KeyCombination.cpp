#include "Common/KeyCombination.h"

#include <bit>

namespace KeyCombination {

std::optional<RowValues> toRow(const Combination& combination)
{
    if (combination.empty())
        return std::nullopt;
    const int count = std::popcount(combination.modifiers);
    const int first = 224 + std::countr_zero(unsigned(combination.modifiers));
    if (combination.key != 0) {
        if (count == 0)
            return RowValues{combination.key, 0};
        return RowValues{combination.key, count == 1 ? first : kMaskFlag | combination.modifiers};
    }
    return RowValues{first, count == 1 ? 0 : kMaskFlag | combination.modifiers};
}

Combination fromRow(int macroValue, int macro2Value)
{
    Combination combination;
    if (macro2Value & kMaskFlag)
        combination.modifiers = uint8_t(macro2Value & 0xFF);
    else if (isModifier(macro2Value))
        combination.modifiers = modifierBit(macro2Value);
    else
        combination.modifiers = uint8_t(macro2Value);
    if (isModifier(macroValue))
        combination.modifiers |= modifierBit(macroValue);
    else
        combination.key = macroValue;
    return combination;
}

}  // namespace KeyCombination
