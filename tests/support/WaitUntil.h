#pragma once
// Turns the event loop until `condition` holds or `timeoutMs` pass; answers
// whether it held. The one wait helper of the tests.

#include <functional>

bool waitUntil(const std::function<bool()>& condition, int timeoutMs = 5000);
