#pragma once
// The entries of the key menus as data: where each stands, its title's
// text id and menu id, and the assignment a menu id stands for. Frames are
// y-up within their menu, as the menus are drawn.

#include "Common/Records.h"

#include <QString>

#include <optional>
#include <span>

namespace KeyMenuEntries {

struct Entry {
    const char* field;  // the item's object name
    int menuId;
    int y;
    int textId;  // 0: a title of our own (title() below)
};

// The entry's title in the language in force.
QString title(const Entry& entry);

inline constexpr int kItemX = 1;
inline constexpr int kItemWidth = 158;
inline constexpr int kItemHeight = 40;
inline constexpr int kMenuWidth = 160;

// Second-level sets, by their type.
inline constexpr int kSystemSet = 10;
inline constexpr int kMediaSet = 11;
inline constexpr int kMouseSet = 13;

// The first level, top to bottom, 40 units apart, and its height.
std::span<const Entry> firstLevel();
int firstLevelHeight();
// The set of a second-level type; empty for another type.
std::span<const Entry> secondLevel(int type);
// The height of a menu showing that set: 286, or 206 for the mouse set.
int secondLevelHeight(int type);

// What choosing `menuId` assigns to a key: macroType and macroValue, and
// the text the key then shows (a text id, or a fixed text). Nothing for an
// id that assigns nothing.
struct Assignment {
    int macroType = 0;
    int macroValue = 0;
    int textId = 0;       // 0: use fixedText
    const char* fixedText = "";
};
std::optional<Assignment> assignmentFor(int menuId);

}  // namespace KeyMenuEntries
