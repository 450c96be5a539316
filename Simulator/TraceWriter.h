#pragma once
// TraceWriter: the virtual keyboard's record of every report on the wire.
//
// Each set and get becomes one JSON object on its own line, flushed at once so
// that a trace survives a crash and can be followed while the app runs:
//   {"t": 0.120, "op": "set", "report": 4, "data": "0418000000..."}
// For a get the data is the reply. The last records are also kept in memory
// for tests, whether or not a file was given.

#include "Simulator/FirmwareModel.h"

#include <QFile>
#include <QString>

#include <deque>
#include <memory>
#include <string>

struct TraceRecord {
    enum class Op { Set, Get };
    FirmwareModel::Time t{};
    Op op = Op::Set;
    uint8_t reportId = Protocol::kReportId;
    FirmwareModel::Report data{};
};

// One record as its trace line, without the line break.
std::string traceLine(const TraceRecord& record);

class TraceWriter {
public:
    static constexpr std::size_t kDefaultMemory = 256;

    // An empty path keeps the records in memory only. A file that cannot be
    // opened is reported on standard error once; the memory still fills.
    explicit TraceWriter(const QString& path = {}, std::size_t memory = kDefaultMemory);

    void record(const TraceRecord& record);

    bool isWritingFile() const { return file_ != nullptr; }
    // Oldest first, at most the `memory` given at construction.
    const std::deque<TraceRecord>& recent() const { return recent_; }

private:
    std::unique_ptr<QFile> file_;
    std::size_t memory_;
    std::deque<TraceRecord> recent_;
};
