#include "Common/OutputLine.h"

#include <iostream>
#include <mutex>

// Warnings and errors only: standard error carries nothing of ours unless
// something went wrong (QT_LOGGING_RULES="orvane.info=true" shows the rest).
Q_LOGGING_CATEGORY(lcOrvane, "orvane", QtWarningMsg)

namespace OutputLine {
namespace {

std::mutex& sinkMutex()
{
    static std::mutex m;
    return m;
}

Sink& currentSink()
{
    static Sink sink;
    return sink;
}

}  // namespace

void print(std::string_view line)
{
    std::lock_guard lock(sinkMutex());
    if (currentSink()) {
        currentSink()(line);
        return;
    }
    std::cout << line << std::endl;
}

Sink setSink(Sink sink)
{
    std::lock_guard lock(sinkMutex());
    return std::exchange(currentSink(), std::move(sink));
}

}  // namespace OutputLine
