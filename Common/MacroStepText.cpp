#include "Common/MacroStepText.h"

#include "View/KeyboardLayout/KeyCodeMaps.h"

#include <QRegularExpression>
#include <QStringList>

namespace MacroStepText {
namespace {

using MacroSteps::Steps;

// The longest pause the recorder writes; longer is no recording of ours.
constexpr int64_t kLongestRecordedDelay = 100000;

// A whole line; the optional leading number is the list's and is rebuilt
// on reading.
QRegularExpression linePattern(const char* body)
{
    return QRegularExpression(QStringLiteral("^(?:\\d+\\s+)?") + QLatin1String(body) + QStringLiteral("$"),
                              QRegularExpression::CaseInsensitiveOption);
}

std::optional<int64_t> keyCode(const QString& name)
{
    static const QRegularExpression codeName(QStringLiteral("^code (\\d{1,3})$"));
    const QRegularExpressionMatch code = codeName.match(name);
    if (code.hasMatch()) {
        const int value = code.captured(1).toInt();
        return value <= 0xFF ? std::optional<int64_t>(value) : std::nullopt;
    }
    for (const auto& [usage, key] : G_KB_SuperKeyCodeMap)
        if (key.full_name.compare(name, Qt::CaseInsensitive) == 0 || key.key_name.compare(name, Qt::CaseInsensitive) == 0)
            return usage;
    return std::nullopt;
}

int64_t button(const QString& name)
{
    if (name.compare(QStringLiteral("Middle"), Qt::CaseInsensitive) == 0)
        return MacroSteps::kMiddleButton;
    if (name.compare(QStringLiteral("Right"), Qt::CaseInsensitive) == 0)
        return MacroSteps::kRightButton;
    return MacroSteps::kLeftButton;
}

bool isDown(const QString& word) { return word.compare(QStringLiteral("Down"), Qt::CaseInsensitive) == 0; }

std::optional<MacroStep> readLine(const QString& line)
{
    static const QRegularExpression delayLine = linePattern("Delay \\((\\d{1,6})\\)");
    static const QRegularExpression keyLine = linePattern("Keyboard (Down|Up) \\((.+)\\)");
    static const QRegularExpression mouseLine = linePattern("Mouse (Left|Middle|Right) (Down|Up)");
    if (const auto m = delayLine.match(line); m.hasMatch()) {
        const int64_t ms = m.captured(1).toLongLong();
        return ms <= kLongestRecordedDelay ? std::optional(MacroSteps::delay(ms)) : std::nullopt;
    }
    if (const auto m = keyLine.match(line); m.hasMatch()) {
        const std::optional<int64_t> code = keyCode(m.captured(2).trimmed());
        if (!code)
            return std::nullopt;
        return MacroStep{isDown(m.captured(1)) ? kKeyDownStep : kKeyUpStep, {}, *code};
    }
    if (const auto m = mouseLine.match(line); m.hasMatch())
        return MacroStep{isDown(m.captured(2)) ? kMouseDownStep : kMouseUpStep, {}, button(m.captured(1))};
    return std::nullopt;
}

}  // namespace

QString write(const Steps& steps)
{
    QStringList lines;
    for (const MacroStep& step : MacroSteps::numbered(steps))
        lines << step.text;
    return lines.join(QLatin1Char('\n'));
}

std::variant<Steps, BadLine> read(const QString& text)
{
    Steps steps;
    const QStringList lines = text.split(QRegularExpression(QStringLiteral("\\r\\n|\\n|\\r")));
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].simplified();
        if (line.isEmpty())
            continue;
        const std::optional<MacroStep> step = readLine(line);
        if (!step)
            return BadLine{i + 1, lines[i]};
        steps.push_back(*step);
    }
    return MacroSteps::numbered(std::move(steps));
}

}  // namespace MacroStepText
