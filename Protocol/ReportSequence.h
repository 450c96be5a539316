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

// Which whole upload a sequence carries, when stopping it half-way would
// leave the keyboard holding part old, part new: one profile's key table, one
// user light slot or the macro store. Such a sequence is marked from its
// hand-over until it has gone out complete, and what stays marked is sent
// again at the next connection.
struct UploadMark {
    enum class Kind { None, KeyTable, UserLightSlot, MacroStore };
    Kind kind = Kind::None;
    int target = 0;      // the profile or the slot; 0 for the macro store
    int64_t source = 0;  // for a slot: the stored user light mode it shows, 0 for blank colours

    explicit operator bool() const { return kind != Kind::None; }
    bool sameUpload(const UploadMark& other) const { return kind == other.kind && target == other.target; }
};

struct ReportSequence {
    std::string name;  // shown in the hex dump (ORVANE_HID_DUMP=1)
    std::vector<ReportStep> steps;
    // Why this sequence must not go out (a value that does not fit its byte);
    // empty for a sequence that may be sent.
    std::string refusal;
    UploadMark mark;

    bool carriesDataReports() const
    {
        for (const ReportStep& s : steps)
            if (s.dataReport)
                return true;
        return false;
    }
};
