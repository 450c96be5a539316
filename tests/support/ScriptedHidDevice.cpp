#include "support/ScriptedHidDevice.h"

#include "support/HexBytes.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace testing_support {

DeviceComm::Sleeper ScriptedHidDevice::sleeper()
{
    return [this](std::chrono::milliseconds ms) { log.push_back("pause " + std::to_string(ms.count())); };
}

HidStatus ScriptedHidDevice::setFeatureReport(uint8_t reportId, std::span<const uint8_t> data)
{
    EXPECT_EQ(reportId, 4) << "report id";
    log.push_back("set " + hexFromBytes({data.begin(), data.end()}));
    if (setResults.empty())
        return {};
    const HidResult result = setResults.front();
    setResults.pop_front();
    return result;
}

HidStatus ScriptedHidDevice::getFeatureReport(uint8_t reportId, std::span<uint8_t> buffer, std::size_t& length)
{
    EXPECT_EQ(reportId, 4) << "report id";
    EXPECT_EQ(length, 64u) << "length asked for";
    log.push_back("get");
    if (replies.empty())
        return HidResult::NotResponding;
    const Reply r = replies.front();
    replies.pop_front();
    if (r.status != HidResult::Success)
        return r.status;  // like the platforms: a failed read leaves buffer and length alone
    length = std::min({r.bytes.size(), buffer.size(), length});
    std::copy_n(r.bytes.begin(), length, buffer.begin());
    return {};
}

}  // namespace testing_support
