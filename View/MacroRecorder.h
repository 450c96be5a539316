#pragma once
// The step rules of the macro recorder, apart from any widget: which key,
// mouse and delay steps an input adds, with their stored texts. Times are
// milliseconds since 1970, given by the caller, so the rules can be driven
// with any clock.
//
// A delay is measured from the last recorded key or mouse step and is never
// the first step. A key that the active code map does not know adds nothing:
// the list has no name for it and the keyboard could not play it.

#include "Common/MacroSteps.h"

#include <QString>

#include <cstdint>
#include <vector>

class MacroRecorder {
public:
    static constexpr int64_t kMaxDelayMs = 100000;

    bool recordKeyboard = true;
    bool recordMouse = true;
    bool recordDelay = true;

    // A recording always starts from an empty list.
    void start();
    const std::vector<MacroStep>& steps() const { return steps_; }
    void setSteps(std::vector<MacroStep> steps) { steps_ = std::move(steps); }

    // A key event with the key's HID usage (0 for a key nobody could name).
    // True when a step was added.
    bool keyEvent(int usage, bool down, int64_t timeMs);
    // A left button press or release on the window.
    bool mouseEvent(bool down, int64_t timeMs);

private:
    void addDelayTime(int64_t timeMs);
    void append(int type, const QString& text, int64_t value);

    std::vector<MacroStep> steps_;
    int64_t lastRecordTime = 0;
};
