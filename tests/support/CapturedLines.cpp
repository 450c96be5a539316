#include "support/CapturedLines.h"

#include "Common/OutputLine.h"

#include <mutex>

namespace {
std::mutex bufferMutex;
std::string buffer;
OutputLine::Sink previous;
}  // namespace

void captureLines()
{
    {
        std::lock_guard lock(bufferMutex);
        buffer.clear();
    }
    previous = OutputLine::setSink([](std::string_view line) {
        std::lock_guard lock(bufferMutex);
        buffer.append(line).push_back('\n');
    });
}

std::string capturedLines()
{
    OutputLine::setSink(std::move(previous));
    std::lock_guard lock(bufferMutex);
    return std::exchange(buffer, {});
}
