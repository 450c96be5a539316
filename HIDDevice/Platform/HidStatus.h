#pragma once
// The outcome of one transfer or one step of device access: what kind of
// failure it was, and in words why, so that a message in the window or a line
// in a log can say what happened instead of showing a number.

#include <ostream>
#include <string>
#include <utility>

enum class HidResult {
    Success,
    NotResponding,  // device gone, or the transfer failed
    NoPermission,   // the node exists but we may not open it
    BadArgument,    // the request itself is wrong (size, report id, interface)
};

class HidStatus {
public:
    HidStatus() = default;
    // A failure without a more precise reason carries the kind's own words.
    HidStatus(HidResult result) : result_(result), reason_(describe(result)) {}  // NOLINT: implicit by design
    HidStatus(HidResult result, std::string reason) : result_(result), reason_(std::move(reason)) {}

    HidResult result() const { return result_; }
    const std::string& reason() const { return reason_; }
    bool ok() const { return result_ == HidResult::Success; }
    explicit operator bool() const { return ok(); }

    friend bool operator==(const HidStatus& a, HidResult b) { return a.result_ == b; }

    static std::string describe(HidResult result)
    {
        switch (result) {
        case HidResult::Success: return {};
        case HidResult::NotResponding: return "the keyboard did not respond";
        case HidResult::NoPermission: return "no permission to open the keyboard";
        case HidResult::BadArgument: return "the request does not fit this interface";
        }
        return {};
    }

private:
    HidResult result_ = HidResult::Success;
    std::string reason_;
};

// For test failure messages.
inline std::ostream& operator<<(std::ostream& out, const HidStatus& status)
{
    return out << (status.ok() ? std::string("success") : status.reason());
}
