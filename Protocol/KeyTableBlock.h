#pragma once
// The key table of one profile, as the keyboard keeps it: one 4-byte entry
// per physical key, in the key's slot (`layout_index`), built from the
// profile's assignments. A pure function of its inputs: the rows, the macro
// list (a macro entry names the macro by its place there) and a lookup from
// key code to slot in the active code map.

#include "Common/Records.h"
#include "Protocol/Command.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace KeyTableBlock {

using Block = std::array<uint8_t, Protocol::kKeyTableBytes>;
using Entry = std::array<uint8_t, 4>;

inline constexpr std::size_t kEntrySize = 4;
inline constexpr std::size_t kMarkerAt = Protocol::kKeyTableBytes - 2;  // 574
// Entries must end before the marker: slots 0 to 142.
inline constexpr int kSlotCount = int(kMarkerAt / kEntrySize);

// The slot of a key code in the active code map, or none when the map has no
// such key.
using SlotLookup = std::function<std::optional<int>(int keyCode)>;

// Kinds of assignment (`macroType`).
enum Kind : int {
    kSystemShortcut = 10,
    kMedia = 11,
    kMacro = 12,
    kMouse = 13,
    kCustomKey = 14,
    kFn = 16,
    kDisable = 18,
};

// What one assignment puts into its key's entry. All zero (the key keeps the
// keyboard's own function) for an unknown kind, for a macro missing from
// `macros`, and for a macro whose place or play count does not fit a byte.
Entry entryFor(const ProfileKey& row, std::span<const MacroInfo> macros);

// The whole table. Rows whose key code has no slot in the active code map
// are skipped, as they cannot be addressed.
//
// bytes:  0..3     4..7          4s..4s+3               572..573  574   575
//        [slot 0] [slot 1] ... [slot s: b0 b1 b2 b3] ... [00 00]  [AA]  [55]
//
// Entry of a slot (all zero: the keyboard's own function):
//   b0 1 mouse      b1 1 buttons / 3 wheel   b2 button mask / wheel 01 or FF
//   b0 2 keyboard   b1 modifier mask         b2 HID usage
//   b0 3 consumer   b1 usage, low byte
//   b0 5 disabled   b1 3
//   b0 6 macro      b1 place in the macro list             b3 play count
// Modifier mask: 01 LCtrl 02 LShift 04 LAlt 08 LGUI 10 RCtrl 20 RShift
// 40 RAlt 80 RGUI. Only 9 reports of 64 bytes go out: the whole block.
Block build(std::span<const ProfileKey> rows, std::span<const MacroInfo> macros, const SlotLookup& slotOf);

}  // namespace KeyTableBlock
