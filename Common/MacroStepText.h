#pragma once
// The text form of a macro's steps, for copying into a chat and pasting
// back: one step per line, numbered, as the macro window lists them and in
// English whatever the window's language.
//
//   1 Keyboard Down (Left Shift)
//   2 Delay (80)
//   3 Mouse Right Up
//
// Reading is strict: a line that is not a step refuses the whole text, with
// its number. The leading number may be left out; blank lines are skipped.
// Keys are named as the active key map names them (by their short id where
// two keys share a name, "code 104" for a key the map lacks), so a text
// reads back on the model it was written for.

#include "Common/MacroSteps.h"

#include <variant>

namespace MacroStepText {

QString write(const MacroSteps::Steps& steps);

struct BadLine {
    int line = 0;  // from 1
    QString text;  // the line as pasted

    bool operator==(const BadLine&) const = default;
};

// The steps, numbered, or the first line that is not a step.
std::variant<MacroSteps::Steps, BadLine> read(const QString& text);

}  // namespace MacroStepText
