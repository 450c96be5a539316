#include "View/ModelList.h"

namespace ModelList {

QRect slotFrame(Slot slot)
{
    switch (slot) {
    case Slot::HiddenAbove: return {15, 518, 138, 58};
    case Slot::Upper: return {15, 460, 138, 58};
    case Slot::Centre: return {0, 320, 166, 76};
    case Slot::Lower: return {15, 190, 138, 58};
    case Slot::HiddenBelow: return {15, 132, 138, 58};
    }
    return {};
}

int before(int model) { return model - 1 < 0 ? 2 : model - 1; }
int after(int model) { return model + 1 > 2 ? 0 : model + 1; }

Slot slotOf(int model, int centre)
{
    if (model == centre)
        return Slot::Centre;
    return model == before(centre) ? Slot::Upper : Slot::Lower;
}

std::optional<Turn> turnTo(int current, int target)
{
    if (target == current)
        return std::nullopt;
    const int p = before(target);
    const int q = after(target);
    // With three models a target that is not in the upper slot is in the
    // lower one. Asking the list rather than the button's frame gives the
    // same answer at rest and the right one while a turn is still running.
    if (slotOf(target, current) == Slot::Lower)
        return Turn{1, {Move{p, Slot::Centre, Slot::Upper}, Move{target, Slot::Lower, Slot::Centre},
                        Move{q, Slot::HiddenBelow, Slot::Lower}}};
    return Turn{0, {Move{p, Slot::HiddenAbove, Slot::Upper}, Move{target, Slot::Upper, Slot::Centre},
                    Move{q, Slot::Centre, Slot::Lower}}};
}

}  // namespace ModelList
