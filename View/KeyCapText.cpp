#include "View/KeyCapText.h"

#include "Common/KeyCombination.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "Protocol/KeyTableBlock.h"
#include "View/CustomMenu/KeyMenuEntries.h"
#include "View/KeyboardLayout/KeyUsageNames.h"

#include <algorithm>

namespace KeyCapText {
namespace {

constexpr int kFnKeyCode = 175;  // the Fn key, which Fn on itself leaves as it is

const MacroInfo* macroOf(int64_t macroId, std::span<const MacroInfo> macros)
{
    const auto found = std::find_if(macros.begin(), macros.end(),
                                    [macroId](const MacroInfo& macro) { return macro.macroId == macroId; });
    return found == macros.end() ? nullptr : &*found;
}

}  // namespace

QString capText(const ProfileKey& row, std::span<const MacroInfo> macros)
{
    using namespace KeyTableBlock;
    switch (row.macroType) {
    case kSystemShortcut:
    case kMedia:
    case kMouse: {
        const auto entry = KeyMenuEntries::assignmentFor(row.macroValue);
        return entry && entry->textId ? languageText(entry->textId) : row.macroDesc;
    }
    case kMacro: {
        const MacroInfo* macro = macroOf(row.macroValue, macros);
        return macro ? appText(AppText::KeyCapMacro).arg(macro->macroName) : QString();
    }
    case kCustomKey: {
        const KeyCombination::Combination combination = KeyCombination::fromRow(row.macroValue, row.macro2Value);
        if (combination == KeyCombination::Combination{0, row.keyValue} ||
            (KeyCombination::isModifier(row.keyValue) && combination.key == 0 &&
             combination.modifiers == KeyCombination::modifierBit(row.keyValue)))
            return {};
        const QString text = KeyUsageNames::combinationText(combination);
        return text.isEmpty() ? row.macroDesc : text;
    }
    case kFn:
        return row.keyValue == kFnKeyCode ? QString() : QStringLiteral("Fn");
    case kDisable:
        return appText(AppText::KeyCapDisabled);
    default:
        return {};
    }
}

std::optional<QString> toolTipText(const ProfileKey& row, std::span<const MacroInfo> macros)
{
    if (row.macroType != KeyTableBlock::kMacro)
        return row.macroDesc;
    if (const MacroInfo* macro = macroOf(row.macroValue, macros))
        return macro->macroName;
    return std::nullopt;
}

}  // namespace KeyCapText
