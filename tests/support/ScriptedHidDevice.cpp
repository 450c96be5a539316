#include "support/ScriptedHidDevice.h"

#include "support/HexBytes.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace testing_support {

namespace {
const char* kindName(int k)
{
    static const char* names[] = {"set", "get", "sleep", "begin", "end"};
    return names[k];
}
}  // namespace

ScriptedHidDevice::~ScriptedHidDevice()
{
    if (!verified_)
        verify();
}

ScriptedHidDevice& ScriptedHidDevice::expectSet(std::vector<uint8_t> bytes, HidResult status)
{
    std::lock_guard lock(mutex_);
    script_.push_back({Expectation::Kind::Set, std::move(bytes), status, 0, false});
    return *this;
}

ScriptedHidDevice& ScriptedHidDevice::expectGet(std::vector<uint8_t> reply, HidResult status)
{
    std::lock_guard lock(mutex_);
    script_.push_back({Expectation::Kind::Get, std::move(reply), status, 0, false});
    return *this;
}

ScriptedHidDevice& ScriptedHidDevice::expectSleep(std::chrono::milliseconds ms)
{
    std::lock_guard lock(mutex_);
    script_.push_back({Expectation::Kind::Sleep, {}, HidResult::Success, ms.count(), false});
    return *this;
}

ScriptedHidDevice& ScriptedHidDevice::expectBegin(bool carriesDataReports)
{
    std::lock_guard lock(mutex_);
    script_.push_back({Expectation::Kind::Begin, {}, HidResult::Success, 0, carriesDataReports});
    return *this;
}

ScriptedHidDevice& ScriptedHidDevice::expectEnd()
{
    std::lock_guard lock(mutex_);
    script_.push_back({Expectation::Kind::End, {}, HidResult::Success, 0, false});
    return *this;
}

ScriptedHidDevice::Expectation ScriptedHidDevice::next(Expectation::Kind kind, const std::string& what)
{
    std::lock_guard lock(mutex_);
    if (script_.empty()) {
        ADD_FAILURE() << "unexpected " << what << ": the script is finished";
        return {kind, {}, HidResult::NotResponding, 0, false};
    }
    Expectation e = script_.front();
    script_.pop_front();
    if (e.kind != kind)
        ADD_FAILURE() << "expected " << kindName(static_cast<int>(e.kind)) << ", got " << what;
    return e;
}

DeviceComm::Sleeper ScriptedHidDevice::sleeper()
{
    return [this](std::chrono::milliseconds ms) {
        const Expectation e = next(Expectation::Kind::Sleep, "sleep " + std::to_string(ms.count()) + " ms");
        if (e.kind == Expectation::Kind::Sleep)
            EXPECT_EQ(e.ms, ms.count()) << "pause length";
    };
}

HidStatus ScriptedHidDevice::setFeatureReport(uint8_t reportId, std::span<const uint8_t> data)
{
    const std::vector<uint8_t> sent(data.begin(), data.end());
    const Expectation e = next(Expectation::Kind::Set, "set " + hexFromBytes(sent));
    EXPECT_EQ(reportId, 4) << "report id";
    if (e.kind == Expectation::Kind::Set)
        EXPECT_EQ(hexFromBytes(sent), hexFromBytes(e.bytes)) << "frame sent";
    return e.status;
}

HidStatus ScriptedHidDevice::getFeatureReport(uint8_t reportId, std::span<uint8_t> buffer, std::size_t& length)
{
    const Expectation e = next(Expectation::Kind::Get, "get");
    EXPECT_EQ(reportId, 4) << "report id";
    EXPECT_EQ(length, 64u) << "length asked for";
    if (e.status != HidResult::Success)
        return e.status;  // like the platforms: a failed read leaves buffer and length alone
    const std::size_t n = std::min({e.bytes.size(), buffer.size(), length});
    std::copy_n(e.bytes.begin(), n, buffer.begin());
    length = n;
    return {};
}

void ScriptedHidDevice::beginSequence(bool carriesDataReports)
{
    const Expectation e = next(Expectation::Kind::Begin, "begin of a sequence");
    if (e.kind == Expectation::Kind::Begin)
        EXPECT_EQ(e.flag, carriesDataReports) << "sequence carries data reports";
}

void ScriptedHidDevice::endSequence()
{
    next(Expectation::Kind::End, "end of a sequence");
}

void ScriptedHidDevice::verify()
{
    verified_ = true;
    std::lock_guard lock(mutex_);
    if (!script_.empty())
        ADD_FAILURE() << script_.size() << " expected step(s) never happened, first: "
                      << kindName(static_cast<int>(script_.front().kind)) << " " << hexFromBytes(script_.front().bytes);
}

}  // namespace testing_support
