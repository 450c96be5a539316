// The 68-key model's maps.
#include "View/KeyboardLayout/KeyVocabulary.h"

#include <array>

namespace {

using KeyVocabulary::ModelKey;

// `escape` and `backtick` share light slot 19; `backtick` has a code row
// but no key in the picture (its position 100 lies beyond the 68 keys).
// clang-format off
constexpr std::array<ModelKey, 69> kKeys{{
    {"escape", 1, 19, 0}, {"backtick", 1, 19, 100},
    {"i1", 1, 20, 1}, {"i2", 1, 21, 2}, {"i3", 1, 22, 3}, {"i4", 1, 23, 4}, {"i5", 1, 24, 5},
    {"i6", 1, 25, 6}, {"i7", 1, 26, 7}, {"i8", 1, 27, 8}, {"i9", 1, 28, 9}, {"i0", 1, 29, 10},
    {"minus", 1, 30, 11}, {"equal", 1, 31, 12}, {"backspace", 1, 103, 13}, {"home", 1, 117, 14},

    {"tab", 2, 37, 15}, {"q", 2, 38, 16}, {"w", 2, 39, 17}, {"e", 2, 40, 18}, {"r", 2, 41, 19},
    {"t", 2, 42, 20}, {"y", 2, 43, 21}, {"u", 2, 44, 22}, {"i", 2, 45, 23}, {"o", 2, 46, 24},
    {"p", 2, 47, 25}, {"leftBracket", 2, 48, 26}, {"rightBracket", 2, 49, 27}, {"backslash", 2, 67, 28},
    {"pageUp", 2, 118, 29},

    {"capsLock", 3, 55, 30}, {"a", 3, 56, 31}, {"s", 3, 57, 32}, {"d", 3, 58, 33}, {"f", 3, 59, 34},
    {"g", 3, 60, 35}, {"h", 3, 61, 36}, {"j", 3, 62, 37}, {"k", 3, 63, 38}, {"l", 3, 64, 39},
    {"semicolon", 3, 65, 40}, {"quote", 3, 66, 41}, {"enter", 3, 85, 42}, {"pageDown", 3, 121, 43},
    {"leftShift", 3, 73, 44}, {"z", 3, 74, 45}, {"x", 3, 75, 46}, {"c", 3, 76, 47}, {"v", 3, 77, 48},
    {"b", 3, 78, 49}, {"n", 3, 79, 50}, {"m", 3, 80, 51}, {"comma", 3, 81, 52}, {"period", 3, 82, 53},
    {"slash", 3, 83, 54}, {"rightShift", 3, 84, 55}, {"upArrow", 3, 101, 56}, {"delete", 3, 119, 57},
    {"leftControl", 3, 91, 58}, {"leftWin", 3, 92, 60}, {"leftAlt", 3, 93, 59}, {"space", 3, 94, 61},
    {"rightAlt", 3, 98, 64}, {"fn", 3, 96, 63}, {"rightControl", 3, 95, 62},
    {"leftArrow", 3, 99, 65}, {"downArrow", 3, 100, 66}, {"rightArrow", 3, 102, 67},
}};
// clang-format on

}  // namespace

const KeyVocabulary::ModelMaps& KeyVocabulary::orvane68kMaps()
{
    static const ModelMaps built = modelMaps(kKeys, {});
    return built;
}
