#pragma once
// A report sequence: what one upload or one poll puts on the wire, built on
// the main thread as plain data and executed step by step on the transport
// thread.

#include "Protocol/CommandFrame.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

struct ReportStep {
    enum class Kind {
        Single,    // one report, reply read and dropped    (sendDeviceData(data:))
        Exchange,  // one report, reply handed back          (getDeviceData(data:))
        Run,       // data reports, nothing read back        (sendDeviceData(data:length:))
        Sleep,     // a pause on the transport thread
    };

    Kind kind = Kind::Single;
    std::vector<uint8_t> data;
    int length = 0;
    std::chrono::milliseconds pause{0};

    static ReportStep single(const CommandFrame& frame) { return {Kind::Single, frame.toVector(), 0, {}}; }
    static ReportStep exchange(const CommandFrame& frame) { return {Kind::Exchange, frame.toVector(), 0, {}}; }
    static ReportStep run(std::vector<uint8_t> buffer, int length) { return {Kind::Run, std::move(buffer), length, {}}; }
    static ReportStep sleep(std::chrono::milliseconds ms) { return {Kind::Sleep, {}, 0, ms}; }
};

struct ReportSequence {
    std::string name;  // shown in the hex dump (ORVANE_HID_DUMP=1)
    std::vector<ReportStep> steps;

    bool carriesDataReports() const
    {
        for (const ReportStep& s : steps)
            if (s.kind == ReportStep::Kind::Run)
                return true;
        return false;
    }
};
