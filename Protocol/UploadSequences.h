#pragma once
// The report sequences of every upload, built as data for the transport
// thread. Each builder takes the finished payload of its block; the framing
// (opening command, header, data, closing frames, and which bytes of the
// reused frame buffer stay set) is decided here and nowhere else.
//
// A profile, target or count that does not fit its single byte leaves the
// sequence with a `refusal`; the transport queue does not send such a one.

#include "Protocol/ReportSequence.h"
#include "Protocol/Command.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace UploadSequences {

using Report = std::array<uint8_t, Protocol::kReportSize>;
using NineReports = std::array<uint8_t, Protocol::kKeyTableBytes>;

// 0x18; 0x11 (profile, 9); run of 9; 0x02 keeping the profile.
ReportSequence keyTable(int profile, const NineReports& table);

// 0x18; 0x13 (profile, 1); the block as a single report; 0x02; 0xF0, both
// keeping the profile. Used for built-in and user light modes alike.
ReportSequence lightMode(int profile, const Report& block);

// 0x18; 0x23 (128 + slot, 9); run of 9; 0x02; 0xF0 on a cleared frame.
ReportSequence userLightColors(int slot, const NineReports& colors);

// Saving a user light slot: its colours, then, as a sequence of its own, the
// light mode that shows the slot (on the profile in use).
std::vector<ReportSequence> userLightSave(int slot, const NineReports& colors, int profile, const Report& modeBlock);

// Blanking every custom slot: one colour sequence per slot, slots 1 to 6.
inline constexpr int kUserLightSlots = 6;
std::vector<ReportSequence> userLightReset(const NineReports& blankColors);

// 0x18; 0x17 (profile, 1); the block as a single report; 0x02 on a cleared frame.
ReportSequence systemSettings(int profile, const Report& block);

// 0x19; 0x15 (0, n); 30 ms; run of n; 30 ms; 0x02 with the count cleared.
// `store` holds n * 64 bytes.
ReportSequence macroStore(std::span<const uint8_t> store);

// 0x30 exchanged (the reply's byte 9 is the active profile); 0x02.
ReportSequence statusPoll();

}  // namespace UploadSequences
