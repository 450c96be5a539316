// The 61-key model's maps, also used by the 61-key CNC model.
#include "View/KeyboardLayout/KeyVocabulary.h"

#include <array>

namespace {

using KeyVocabulary::ModelKey;

// The bottom row's light slots do not follow the key-table slots:
// menu 96, rightControl 97, fn 98.
// clang-format off
constexpr std::array<ModelKey, 61> kKeys{{
    {"escape", 1, 1, 0}, {"i1", 1, 20, 1}, {"i2", 1, 21, 2}, {"i3", 1, 22, 3}, {"i4", 1, 23, 4},
    {"i5", 1, 24, 5}, {"i6", 1, 25, 6}, {"i7", 1, 26, 7}, {"i8", 1, 27, 8}, {"i9", 1, 28, 9},
    {"i0", 1, 29, 10}, {"minus", 1, 30, 11}, {"equal", 1, 31, 12}, {"backspace", 1, 103, 13},

    {"tab", 2, 37, 14}, {"q", 2, 38, 15}, {"w", 2, 39, 16}, {"e", 2, 40, 17}, {"r", 2, 41, 18},
    {"t", 2, 42, 19}, {"y", 2, 43, 20}, {"u", 2, 44, 21}, {"i", 2, 45, 22}, {"o", 2, 46, 23},
    {"p", 2, 47, 24}, {"leftBracket", 2, 48, 25}, {"rightBracket", 2, 49, 26}, {"backslash", 2, 67, 27},

    {"capsLock", 3, 55, 28}, {"a", 3, 56, 29}, {"s", 3, 57, 30}, {"d", 3, 58, 31}, {"f", 3, 59, 32},
    {"g", 3, 60, 33}, {"h", 3, 61, 34}, {"j", 3, 62, 35}, {"k", 3, 63, 36}, {"l", 3, 64, 37},
    {"semicolon", 3, 65, 38}, {"quote", 3, 66, 39}, {"enter", 3, 85, 40},
    {"leftShift", 3, 73, 41}, {"z", 3, 74, 42}, {"x", 3, 75, 43}, {"c", 3, 76, 44}, {"v", 3, 77, 45},
    {"b", 3, 78, 46}, {"n", 3, 79, 47}, {"m", 3, 80, 48}, {"comma", 3, 81, 49}, {"period", 3, 82, 50},
    {"slash", 3, 83, 51}, {"rightShift", 3, 84, 52},
    {"leftControl", 3, 91, 53}, {"leftWin", 3, 92, 55}, {"leftAlt", 3, 93, 54}, {"space", 3, 94, 56},
    {"rightAlt", 3, 95, 57}, {"menu", 3, 96, 58}, {"fn", 3, 98, 60}, {"rightControl", 3, 97, 59},
}};
// clang-format on

// Names the 61-key firmware knows although the 61-key board has no such
// key: they stay in the name map and have no code row.
constexpr std::array<const char*, 11> kNamesWithoutKey{
    "pause", "insert", "home", "pageUp", "delete", "end", "pageDown", "upArrow", "leftArrow", "downArrow",
    "rightArrow"};

}  // namespace

const KeyVocabulary::ModelMaps& KeyVocabulary::orvane61kMaps()
{
    static const ModelMaps built = modelMaps(kKeys, kNamesWithoutKey);
    return built;
}
