#pragma once
// Names for every HID usage of the Keyboard/Keypad page that the host's key
// codes reach (Common/InputKeyCodes), so a key can be bound whatever model
// is connected: F5 on a keyboard without an F row. The key vocabulary's
// full name where it has the usage, else the name a keyboard prints.

#include "Common/KeyCombination.h"

#include <QString>

#include <optional>

namespace KeyUsageNames {

// None for a usage the page has no key for.
std::optional<QString> usageName(int usage);
// "Ctrl+Shift+K": the modifiers in the order Ctrl, Shift, Alt, Super, left
// before right, then the key. A lone modifier keeps its full name ("Left
// Control"). Empty for an empty combination or a key without a name.
QString combinationText(const KeyCombination::Combination& combination);

}  // namespace KeyUsageNames
