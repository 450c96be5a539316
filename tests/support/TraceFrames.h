#pragma once
// The frames a virtual keyboard received after a moment, as hex, with the
// profile polls (0x30 and the 0x02 that closes it) left out: what a user
// action sent, whole, to compare with what another action sent.
#include "Simulator/VirtualKeyboard.h"
#include "support/HexBytes.h"

#include <string>
#include <vector>

namespace testing_support {

inline std::vector<std::string> framesSince(const VirtualKeyboard& keyboard, FirmwareModel::Time from)
{
    std::vector<std::string> out;
    bool closingPoll = false;
    for (const TraceRecord& r : keyboard.recentTrace()) {
        if (r.t <= from || r.op != TraceRecord::Op::Set)
            continue;
        const bool poll = r.data[1] == 0x30;
        if (!poll && !(closingPoll && r.data[1] == 0x02))
            out.push_back(hexFromBytes(std::vector<uint8_t>(r.data.begin(), r.data.end())));
        closingPoll = poll;
    }
    return out;
}

inline FirmwareModel::Time lastFrameTime(const VirtualKeyboard& keyboard)
{
    const auto trace = keyboard.recentTrace();
    return trace.empty() ? FirmwareModel::Time{} : trace.back().t;
}

}  // namespace testing_support
