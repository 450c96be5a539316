#pragma once
// What the keyboard says it received. Its reply to the 0x02 that closes an
// upload carries, in bytes 4 and 5 (little-endian), the 16-bit sum of every
// byte of that upload's data reports. These pure functions find that frame in
// a sequence, work out the sum the keyboard should report from the bytes the
// sequence puts on the wire, and judge a reply against it.

#include "Protocol/Command.h"
#include "Protocol/ReportSequence.h"

#include <cstdint>
#include <optional>
#include <span>

namespace UploadConfirmation {

// The upload a sequence carries, as its header frame names it.
struct Upload {
    Protocol::Command header = Protocol::Command::KeyTable;
    int target = 0;  // the header's byte 2: a profile, 128 + a user light slot, or 0
};

// How a sequence with data reports is checked: the step of its closing 0x02
// and the sum the keyboard must answer there. Nothing for a sequence without
// data reports (a status poll) or without a closing 0x02.
struct Check {
    std::size_t closingStep = 0;
    uint16_t expectedSum = 0;
    Upload upload;
};
std::optional<Check> checkFor(const ReportSequence& sequence);

// The sum of the data reports exactly as they go out: a run's n - 1 reports,
// a one-report block's 64 bytes.
uint16_t dataSum(const ReportSequence& sequence);

enum class Verdict {
    Confirmed,   // the keyboard reports the sum sent
    Wrong,       // it reports another sum: something was lost or changed
    NotCounted,  // 0 in both bytes for a sum that is not 0: the firmware does not count
};
Verdict judge(std::span<const uint8_t> reply, uint16_t expectedSum);

}  // namespace UploadConfirmation
