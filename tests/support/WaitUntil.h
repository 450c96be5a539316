#pragma once
// Runs the event loop until `condition` holds; false after `timeoutMs`.

#include <functional>

namespace testing_support {
bool waitUntil(const std::function<bool()>& condition, int timeoutMs = 5000);
}
