#pragma once
// Collects the app's diagnostic lines between captureLines() and
// capturedLines(), as "line\n" each, instead of letting them reach stdout.

#include <string>

void captureLines();
std::string capturedLines();
