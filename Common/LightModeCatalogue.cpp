#include "Common/LightModeCatalogue.h"

#include <algorithm>

namespace {

constexpr std::array<LightModeEntry, kLightModeRows> kCatalogue{{
    {1, "continued", 201},
    {2, "singleon", 202},
    {3, "singleoff", 203},
    {4, "glittering", 204},
    {5, "falling", 205},
    {6, "breathing", 206},
    {7, "spectrum", 207},
    {8, "outward", 208},
    {9, "scrolling", 209},
    {10, "adrift", 210},
    {11, "rotating", 211},
    {12, "explode", 212},
    {13, "launch", 213},
    {14, "ripples", 214},
    {15, "tilt", 215},
    {32, "shuttle", 216},
}};

QString iconName(const char* stem, char state)
{
    return QStringLiteral("icon_light_%1_%2").arg(QLatin1String(stem), QChar::fromLatin1(state));
}

}  // namespace

QString LightModeEntry::iconNormal() const { return iconName(stem, 'n'); }
QString LightModeEntry::iconHover() const { return iconName(stem, 'h'); }
QString LightModeEntry::iconSelected() const { return iconName(stem, 's'); }

const std::array<LightModeEntry, kLightModeRows>& lightModeCatalogue() { return kCatalogue; }

int lightModeRow(int mode)
{
    for (int row = 0; row < kLightModeRows; ++row)
        if (kCatalogue[row].mode == mode)
            return row;
    return -1;
}

int lightModeFromStored(const QString& stored)
{
    // Only a damaged database holds anything but digits here; it is read as
    // the empty value rather than as 0.
    // Checked by hand: a regular expression here would bring the pattern
    // engine into every start.
    const qsizetype digits = stored.startsWith(u'-') ? 1 : 0;
    const bool decimal = stored.size() > digits && std::all_of(stored.begin() + digits, stored.end(), [](QChar c) {
        return c >= u'0' && c <= u'9';
    });
    bool ok = false;
    const int mode = decimal ? stored.toInt(&ok, 10) : 0;
    return ok ? mode : 1;
}
