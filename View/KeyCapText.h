#pragma once
// What the keyboard picture shows for one key assignment: the short text on
// the key's cap ("Mute", "Copy", "M: Greeting", "Fn", "Off", "Ctrl+Shift+K")
// in the language in force, and the text of the key's tool tip. A macro is
// named as it is called now, so a renamed macro's keys follow it, and a
// macro that is gone leaves its keys with their own function.

#include "Common/Records.h"

#include <QString>

#include <optional>
#include <span>

namespace KeyCapText {

// The cap's text; empty when the key does what it does on its own (no
// assignment, Default, a macro that is gone, its own key again).
QString capText(const ProfileKey& row, std::span<const MacroInfo> macros);
// The tool tip's assignment text: the stored description, or for a macro
// its present name; none when the key shows its own name.
std::optional<QString> toolTipText(const ProfileKey& row, std::span<const MacroInfo> macros);

}  // namespace KeyCapText
