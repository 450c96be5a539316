#pragma once
// The macro store: every macro of the library in one block, sent whole after
// each save. A pure function of the macros' steps in list order; a macro's
// place in that list is how a key table cell names it.
//
// The block is refused (nothing is built) when it would not fit the
// keyboard: more than 100 macros, or more reports than 3200 bytes hold. The
// refusal says by how much the library is over, so the window can tell the
// user.

#include "Common/Records.h"
#include "Protocol/Command.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace MacroStoreBlock {

inline constexpr int kMaxMacros = 100;
inline constexpr std::size_t kDirectoryBytes = 4 * kMaxMacros;  // 400
inline constexpr std::size_t kMaxBytes = Protocol::kMacroBufferSize;  // 3200
inline constexpr std::size_t kHeadBytes = 8;
inline constexpr std::size_t kStepBytes = 4;
inline constexpr uint16_t kInsertedDelayMs = 10;

// The first check of an upload, made from two row counts before any step is
// read: 4 bytes a step and 8 a macro must stay within 2500.
inline constexpr int64_t kRecordLimitBytes = 2500;
bool withinRecordLimit(int64_t macroCount, int64_t recordCount);

// Steps of one macro, as stored, in their saved order.
using MacroSteps = std::vector<RecordInfo>;

struct Result {
    std::vector<uint8_t> block;  // reports * 64 bytes; empty when refused
    int reports = 0;             // reports the block needs (also when refused)
    std::size_t end = 0;         // first byte after the last body
    int macros = 0;
    // Over the keyboard's limits by this much; both 0 when the block fits.
    int macrosOver = 0;
    std::size_t bytesOver = 0;

    bool refused() const { return macrosOver > 0 || bytesOver > 0; }
};

// The encoded steps of one macro: a 10 ms delay is put between two key or
// mouse steps that have no recorded delay between them. Records that have no
// encoding (an unknown type, a key code above 255, a mouse value other than
// 1 to 3) are left out.
using Step = std::array<uint8_t, kStepBytes>;
std::vector<Step> encodeSteps(const MacroSteps& steps);

// bytes: 0..399 directory, entry i (4 bytes at 4i) for the macro at place i:
//          [lo hi 00 00]  body offset from the block start  (macro with steps)
//          [FF FF FF FF]  macro without steps, no body
//          [00 00 00 00]  no macro at this place
//        400..end-1 bodies, back to back, each:
//          [k lo, k hi, 0 0 0 0 0 0]  k = steps incl. inserted delays
//          then k steps of 4 bytes  [b0 b1 b2 kind]:
//            50 delay       b0 b1 = milliseconds (little-endian)
//            B0 key down    b2 = key code       30 key up   b2 = key code
//            90 mouse down  b2 = button bit     10 mouse up b2 = button bit
//        64n-2, 64n-1: AA 55, where n = ceil(end / 64) + 1 reports
Result build(std::span<const MacroSteps> macros);

}  // namespace MacroStoreBlock
