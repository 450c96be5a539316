#include "View/CustomMenu/KeyMenuEntries.h"

#include "Language/AppText.h"
#include "Language/Language.h"

#include <algorithm>

namespace KeyMenuEntries {
namespace {

// "Disable" turns the key off (Caps Lock, Insert), the assignment of id 18.
constexpr Entry kFirstLevel[] = {
    {"menuitem_sysfunc", 10, 283, 50}, {"menuitem_mediafuc", 11, 243, 51}, {"menuitem_macro", 12, 203, 52},
    {"menuitem_mouse", 13, 163, 53},   {"menuitem_keyfunc", 14, 123, 54},  {"menuitem_setfn", 16, 83, 57},
    {"menuitem_disable", 18, 43, 0},   {"menuitem_default", 17, 3, 56},
};
constexpr int kFirstLevelHeight = 326;

constexpr Entry kSystemEntries[] = {
    {"menuitem_mac_mission_control", 101, 243, 60},
    {"menuitem_mac_backlightbrightness_up", 102, 203, 61},
    {"menuitem_mac_backlightbrightness_down", 103, 163, 62},
    {"menuitem_mac_cmd_undo", 104, 123, 63},
    {"menuitem_mac_cmd_copy", 105, 83, 66},
    {"menuitem_mac_cmd_paste", 106, 43, 67},
    {"menuitem_mac_cmd_cut", 107, 3, 68},
};

constexpr Entry kMediaEntries[] = {
    {"menuitem_media_playpause", 121, 243, 75}, {"menuitem_media_stop", 122, 203, 76},
    {"menuitem_media_previous", 123, 163, 77},  {"menuitem_media_next", 124, 123, 78},
    {"menuitem_media_vol_up", 125, 83, 79},     {"menuitem_media_vol_down", 126, 43, 80},
    {"menuitem_media_vol_mute", 127, 3, 81},
};

// The two middle fields are named against their titles: "middle" holds the
// right button and "right" the middle one. The third row sits at 82.
constexpr Entry kMouseEntries[] = {
    {"menuitem_mouse_left", 131, 163, 82},  {"menuitem_mouse_middle", 132, 123, 83},
    {"menuitem_mouse_right", 133, 82, 84},  {"menuitem_mouse_button4", 134, 43, 85},
    {"menuitem_mouse_button5", 135, 3, 86},
};

constexpr int kTallHeight = 286;
constexpr int kMouseHeight = 206;

}  // namespace

std::span<const Entry> firstLevel() { return kFirstLevel; }

int firstLevelHeight() { return kFirstLevelHeight; }

QString title(const Entry& entry)
{
    return entry.textId ? languageText(entry.textId) : appText(AppText::KeyMenuDisable);
}

std::span<const Entry> secondLevel(int type)
{
    switch (type) {
    case kSystemSet:
        return kSystemEntries;
    case kMediaSet:
        return kMediaEntries;
    case kMouseSet:
        return kMouseEntries;
    default:
        return {};
    }
}

int secondLevelHeight(int type) { return type == kMouseSet ? kMouseHeight : kTallHeight; }

std::optional<Assignment> assignmentFor(int menuId)
{
    // The first level's direct entries (18 has no entry but is accepted).
    switch (menuId) {
    case 16:
        return Assignment{16, 1, 0, "Fn"};
    case 17:
        return Assignment{17, 0, 0, ""};
    case 18:
        return Assignment{18, 1, 0, "Disable"};
    default:
        break;
    }
    // A second-level entry assigns its set's type with its own id.
    for (const int type : {kSystemSet, kMediaSet, kMouseSet}) {
        const auto set = secondLevel(type);
        const auto it = std::find_if(set.begin(), set.end(), [menuId](const Entry& e) { return e.menuId == menuId; });
        if (it != set.end())
            return Assignment{type, menuId, it->textId, ""};
    }
    return std::nullopt;
}

}  // namespace KeyMenuEntries
