#include "Protocol/CommandFrame.h"

#include <algorithm>

CommandFrame::CommandFrame(Protocol::Command command, uint8_t target, uint8_t dataCount)
{
    clear();
    setCommand(command);
    setTarget(target);
    setDataCount(dataCount);
}

void CommandFrame::clear()
{
    bytes_.fill(0);
    bytes_[Protocol::Offset::ReportId] = Protocol::kReportId;
}

int Protocol::clampReportedProfile(uint8_t byte9)
{
    return std::clamp<int>(byte9, kFirstProfile, kLastProfile);
}
