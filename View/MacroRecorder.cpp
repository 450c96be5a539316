#include "View/MacroRecorder.h"

#include "View/KeyboardLayout/KeyCodeMaps.h"

#include <algorithm>

namespace {
enum StepType { kDelay = 1, kKeyDown = 2, kKeyUp = 3, kMouseDown = 4, kMouseUp = 5 };
}

void MacroRecorder::start()
{
    steps_.clear();
}

void MacroRecorder::append(int type, const QString& text, int64_t value)
{
    steps_.push_back({type, QString::number(steps_.size() + 1) + QLatin1Char(' ') + text, value});
}

void MacroRecorder::addDelayTime(int64_t timeMs)
{
    if (!recordDelay || steps_.empty())
        return;
    const int64_t delay = std::clamp<int64_t>(timeMs - lastRecordTime, 0, kMaxDelayMs);
    append(kDelay, QStringLiteral("Delay (%1)").arg(delay), delay);
}

bool MacroRecorder::keyEvent(int usage, bool down, int64_t timeMs)
{
    if (usage == 0)
        return false;
    const std::optional<KeyCodeRecord> key = keyCodeRecord(usage);
    if (!key)
        return false;
    const std::size_t before = steps_.size();
    addDelayTime(timeMs);
    if (recordKeyboard) {
        lastRecordTime = timeMs;
        append(down ? kKeyDown : kKeyUp,
               QStringLiteral("Keyboard %1 (%2)").arg(down ? QStringLiteral("Down") : QStringLiteral("Up"), key->full_name),
               usage);
    }
    return steps_.size() != before;
}

bool MacroRecorder::mouseEvent(bool down, int64_t timeMs)
{
    if (!recordMouse)
        return false;
    addDelayTime(timeMs);
    lastRecordTime = timeMs;
    append(down ? kMouseDown : kMouseUp, down ? QStringLiteral("Mouse Left Down") : QStringLiteral("Mouse Left Up"), 1);
    return true;
}
