#pragma once
// The steps of one macro and the edits the macro window makes to them, as
// pure functions of a step list: nothing here knows a widget or a store.
//
// Every edit answers a new list whose texts are numbered again from 1, so
// the list always reads as the keyboard will play it. Rows are indices into
// the list; a selection is given as rows in any order, duplicates ignored.

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

struct MacroStep {
    int type = 0;      // a MacroStepType
    QString text;      // "3 Keyboard Down (A)"; English in both languages
    int64_t value = 0; // milliseconds, key code, or the mouse button (1 left, 2 middle, 3 right)

    bool operator==(const MacroStep&) const = default;
};

// recordType of a stored step.
enum MacroStepType : int { kDelayStep = 1, kKeyDownStep = 2, kKeyUpStep = 3, kMouseDownStep = 4, kMouseUpStep = 5 };

namespace MacroSteps {

using Steps = std::vector<MacroStep>;
using Rows = std::vector<int>;

// What the keyboard's store holds for a delay: 16 bits, and a delay of 0
// plays as none at all.
inline constexpr int64_t kMinDelayMs = 1;
inline constexpr int64_t kMaxDelayMs = 65535;

inline constexpr int kLeftButton = 1;
inline constexpr int kMiddleButton = 2;
inline constexpr int kRightButton = 3;

// The step's text without its number: "Keyboard Down (A)", "Delay (80)".
// A key the active key map does not name reads "Keyboard Down (code 104)";
// keys that share a name go by their ids ("leftAlt", "rightAlt").
QString stepText(const MacroStep& step);
// The steps with their texts rebuilt and numbered from 1.
Steps numbered(Steps steps);

MacroStep delay(int64_t ms);
Steps keyPress(int keyCode);   // down, then up
Steps mouseClick(int button);  // down, then up
// A delay typed by the user: whole milliseconds from 1 to 65535, else none.
std::optional<int64_t> parseDelay(const QString& text);

// Sorted, unique, inside the list.
Rows validRows(Rows rows, std::size_t size);

struct Edited {
    Steps steps;
    Rows selection;  // the rows to select afterwards
};

Edited removeRows(const Steps& steps, const Rows& rows);
// Where an insertion goes: before the first selected row or after the last;
// at the end when nothing is selected.
int insertPlace(const Steps& steps, const Rows& selection, bool after);
Edited insertAt(const Steps& steps, int place, const Steps& added);
Edited setDelay(const Steps& steps, int row, int64_t ms);
// The selected rows moved together one place up (-1) or down (+1), or in
// front of row `target` (0 to size: a drop). None when the move goes
// nowhere or would put a key's or button's release before its press.
std::optional<Edited> moveRows(const Steps& steps, const Rows& rows, int delta);
std::optional<Edited> moveRowsTo(const Steps& steps, const Rows& rows, int target);

// What keeps a step from playing as recorded. A key is pressed by its first
// down and released by the next up; further downs while it is held are the
// key's own repeats.
enum class Fault { None, NeverReleased, NeverPressed, DelayTooLong };
std::vector<Fault> faults(const Steps& steps);  // one per step
int faultCount(const Steps& steps);

}  // namespace MacroSteps
