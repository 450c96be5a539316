#include "Simulator/TraceWriter.h"

#include "Common/Hex.h"

#include <cstdio>

std::string traceLine(const TraceRecord& record)
{
    return "{\"t\": " + secondsSinceStart(record.t).toStdString() + ", \"op\": \""
        + (record.op == TraceRecord::Op::Set ? "set" : "get") + "\", \"report\": "
        + std::to_string(record.reportId) + ", \"data\": \"" + hexString(record.data) + "\"}";
}

TraceWriter::TraceWriter(const QString& path, std::size_t memory) : memory_(memory)
{
    if (path.isEmpty())
        return;
    auto file = std::make_unique<QFile>(path);
    if (!file->open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        std::fprintf(stderr, "orvane virtual keyboard: cannot write the trace to %s: %s\n",
                     qPrintable(path), qPrintable(file->errorString()));
        return;
    }
    file_ = std::move(file);
}

void TraceWriter::record(const TraceRecord& record)
{
    if (file_) {
        const std::string line = traceLine(record) + '\n';
        file_->write(line.data(), static_cast<qint64>(line.size()));
        file_->flush();
    }
    if (memory_ == 0)
        return;
    if (recent_.size() == memory_)
        recent_.pop_front();
    recent_.push_back(record);
}
