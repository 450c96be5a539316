#pragma once
// Undo and redo of the macro window's step edits: whole step lists, since a
// macro holds at most a few hundred steps. Cleared when the macro is saved
// or recorded anew.

#include "Common/MacroSteps.h"

#include <optional>
#include <vector>

class MacroEditHistory {
public:
    // Before each edit, the list as it was; a new edit drops what was undone.
    void push(MacroSteps::Steps before)
    {
        undone_.clear();
        done_.push_back(std::move(before));
    }
    // The list to show instead of `current`, or none when there is nothing.
    std::optional<MacroSteps::Steps> undo(MacroSteps::Steps current) { return swap(done_, undone_, std::move(current)); }
    std::optional<MacroSteps::Steps> redo(MacroSteps::Steps current) { return swap(undone_, done_, std::move(current)); }
    bool canUndo() const { return !done_.empty(); }
    bool canRedo() const { return !undone_.empty(); }
    void clear()
    {
        done_.clear();
        undone_.clear();
    }

private:
    using Stack = std::vector<MacroSteps::Steps>;
    static std::optional<MacroSteps::Steps> swap(Stack& from, Stack& to, MacroSteps::Steps current)
    {
        if (from.empty())
            return std::nullopt;
        MacroSteps::Steps back = std::move(from.back());
        from.pop_back();
        to.push_back(std::move(current));
        return back;
    }

    Stack done_;
    Stack undone_;
};
