#pragma once
// The model list at the window's left edge: three buttons, one per model,
// index equal to `keyboardType` (0 68-key, 1 61-key, 2 CNC), shown in three
// slots with the chosen model in the centre. The list goes round: after the
// CNC comes the 68-key. Choosing a neighbour turns the list by one place.
//
// Frames are given y-up in the window, as flippedRect takes them.

#include <QRect>

#include <array>
#include <optional>

namespace ModelList {

enum class Slot { HiddenAbove, Upper, Centre, Lower, HiddenBelow };

QRect slotFrame(Slot slot);

// The model above `model` in the list, and the one below it.
int before(int model);
int after(int model);

// The slot each model's button stands in while `centre` is the chosen model.
Slot slotOf(int model, int centre);

struct Move {
    int model;
    Slot from;
    Slot to;
};

// The turn from `current` to its neighbour `target`: the keyboard picture's
// slide direction (1 when the list moves up, 0 when it moves down) and the
// three buttons' moves. The button that wraps round enters from the hidden
// place on its side. No turn when target is current.
struct Turn {
    int slideType;
    std::array<Move, 3> moves;
};
std::optional<Turn> turnTo(int current, int target);

}  // namespace ModelList
