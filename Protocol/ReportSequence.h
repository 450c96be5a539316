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
    // A Single whose byte 0 is payload, not the report id (a one-report block).
    bool dataReport = false;

    static ReportStep single(const CommandFrame& frame) { return {Kind::Single, frame.toVector(), 0, {}, false}; }
    static ReportStep singleData(std::vector<uint8_t> buffer) { return {Kind::Single, std::move(buffer), 0, {}, true}; }
    static ReportStep exchange(const CommandFrame& frame) { return {Kind::Exchange, frame.toVector(), 0, {}, false}; }
    static ReportStep run(std::vector<uint8_t> buffer, int length) { return {Kind::Run, std::move(buffer), length, {}, true}; }
    static ReportStep sleep(std::chrono::milliseconds ms) { return {Kind::Sleep, {}, 0, ms, false}; }
};

struct ReportSequence {
    std::string name;  // shown in the hex dump (ORVANE_HID_DUMP=1)
    std::vector<ReportStep> steps;
    // Why this sequence must not go out (a value that does not fit its byte);
    // empty for a sequence that may be sent.
    std::string refusal;

    bool carriesDataReports() const
    {
        for (const ReportStep& s : steps)
            if (s.dataReport)
                return true;
        return false;
    }
};
