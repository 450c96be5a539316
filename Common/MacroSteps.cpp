#include "Common/MacroSteps.h"

#include "View/KeyboardLayout/KeyCodeMaps.h"

#include <algorithm>
#include <map>

namespace MacroSteps {
namespace {

bool isDown(int type) { return type == kKeyDownStep || type == kMouseDownStep; }
bool isUp(int type) { return type == kKeyUpStep || type == kMouseUpStep; }
bool isKeyOrButton(int type) { return isDown(type) || isUp(type); }

QString buttonName(int64_t button)
{
    switch (button) {
    case kMiddleButton: return QStringLiteral("Middle");
    case kRightButton: return QStringLiteral("Right");
    default: return QStringLiteral("Left");
    }
}

QString keyName(int64_t code)
{
    const std::optional<KeyCodeRecord> key = keyCodeRecord(int(code));
    if (!key)
        return QStringLiteral("code %1").arg(code);
    // Both Alt keys show as "Option": a text must still tell them apart.
    const auto shared = [&](const auto& entry) { return entry.first != code && entry.second.full_name == key->full_name; };
    return std::any_of(G_KB_SuperKeyCodeMap.begin(), G_KB_SuperKeyCodeMap.end(), shared) ? key->key_name : key->full_name;
}

}  // namespace

QString stepText(const MacroStep& step)
{
    const auto word = [&](bool down) { return down ? QStringLiteral("Down") : QStringLiteral("Up"); };
    switch (step.type) {
    case kDelayStep: return QStringLiteral("Delay (%1)").arg(step.value);
    case kKeyDownStep:
    case kKeyUpStep: return QStringLiteral("Keyboard %1 (%2)").arg(word(step.type == kKeyDownStep), keyName(step.value));
    case kMouseDownStep:
    case kMouseUpStep: return QStringLiteral("Mouse %1 %2").arg(buttonName(step.value), word(step.type == kMouseDownStep));
    default: return QStringLiteral("Step %1 (%2)").arg(step.type).arg(step.value);
    }
}

Steps numbered(Steps steps)
{
    for (std::size_t i = 0; i < steps.size(); ++i)
        steps[i].text = QString::number(i + 1) + QLatin1Char(' ') + stepText(steps[i]);
    return steps;
}

MacroStep delay(int64_t ms) { return {kDelayStep, {}, ms}; }
Steps keyPress(int keyCode) { return {{kKeyDownStep, {}, keyCode}, {kKeyUpStep, {}, keyCode}}; }
Steps mouseClick(int button) { return {{kMouseDownStep, {}, button}, {kMouseUpStep, {}, button}}; }

std::optional<int64_t> parseDelay(const QString& text)
{
    bool ok = false;
    const qlonglong ms = text.trimmed().toLongLong(&ok);
    if (!ok || ms < kMinDelayMs || ms > kMaxDelayMs)
        return std::nullopt;
    return ms;
}

Rows validRows(Rows rows, std::size_t size)
{
    std::erase_if(rows, [size](int row) { return row < 0 || std::size_t(row) >= size; });
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

Edited removeRows(const Steps& steps, const Rows& rows)
{
    const Rows gone = validRows(rows, steps.size());
    Steps kept;
    for (std::size_t i = 0; i < steps.size(); ++i)
        if (!std::binary_search(gone.begin(), gone.end(), int(i)))
            kept.push_back(steps[i]);
    // The row that took the first deleted row's place stays selected, so
    // Delete can be pressed again.
    Rows next;
    if (!gone.empty() && !kept.empty())
        next.push_back(std::min(gone.front(), int(kept.size()) - 1));
    return {numbered(std::move(kept)), next};
}

int insertPlace(const Steps& steps, const Rows& selection, bool after)
{
    const Rows rows = validRows(selection, steps.size());
    if (rows.empty())
        return int(steps.size());
    return after ? rows.back() + 1 : rows.front();
}

Edited insertAt(const Steps& steps, int place, const Steps& added)
{
    place = std::clamp(place, 0, int(steps.size()));
    Steps out = steps;
    out.insert(out.begin() + place, added.begin(), added.end());
    Rows selection;
    for (int i = 0; i < int(added.size()); ++i)
        selection.push_back(place + i);
    return {numbered(std::move(out)), selection};
}

Edited setDelay(const Steps& steps, int row, int64_t ms)
{
    Steps out = steps;
    if (row >= 0 && std::size_t(row) < out.size() && out[std::size_t(row)].type == kDelayStep)
        out[std::size_t(row)].value = ms;
    return {numbered(std::move(out)), {row}};
}

std::optional<Edited> moveRowsTo(const Steps& steps, const Rows& rows, int target)
{
    const Rows moving = validRows(rows, steps.size());
    if (moving.empty())
        return std::nullopt;
    target = std::clamp(target, 0, int(steps.size()));
    Steps picked, rest;
    int place = target;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const bool selected = std::binary_search(moving.begin(), moving.end(), int(i));
        (selected ? picked : rest).push_back(steps[i]);
        if (selected && int(i) < target)
            --place;  // the target row slides up as the picked rows leave
    }
    Steps out = rest;
    out.insert(out.begin() + place, picked.begin(), picked.end());
    if (out == steps || faultCount(out) > faultCount(steps))
        return std::nullopt;
    Rows selection;
    for (int i = 0; i < int(picked.size()); ++i)
        selection.push_back(place + i);
    return Edited{numbered(std::move(out)), selection};
}

std::optional<Edited> moveRows(const Steps& steps, const Rows& rows, int delta)
{
    const Rows moving = validRows(rows, steps.size());
    if (moving.empty() || delta == 0)
        return std::nullopt;
    // One step up puts the block in front of the row above its first; one
    // down, in front of the row two below its last.
    const int target = delta < 0 ? moving.front() - 1 : moving.back() + 2;
    if (target < 0 || target > int(steps.size()))
        return std::nullopt;
    return moveRowsTo(steps, moving, target);
}

std::vector<Fault> faults(const Steps& steps)
{
    std::vector<Fault> out(steps.size(), Fault::None);
    // Held keys and buttons, each with the row of the down that pressed it.
    std::map<std::pair<bool, int64_t>, std::size_t> held;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const MacroStep& step = steps[i];
        if (step.type == kDelayStep && (step.value < 0 || step.value > kMaxDelayMs))
            out[i] = Fault::DelayTooLong;
        if (!isKeyOrButton(step.type))
            continue;
        const std::pair<bool, int64_t> what{step.type == kKeyDownStep || step.type == kKeyUpStep, step.value};
        if (isDown(step.type))
            held.try_emplace(what, i);
        else if (!held.erase(what))
            out[i] = Fault::NeverPressed;
    }
    for (const auto& [what, row] : held)
        out[row] = Fault::NeverReleased;
    return out;
}

int faultCount(const Steps& steps)
{
    const std::vector<Fault> all = faults(steps);
    return int(std::count_if(all.begin(), all.end(), [](Fault f) { return f != Fault::None; }));
}

}  // namespace MacroSteps
