#include "View/KeyboardLayout/KeyboardLayouts.h"

#include <algorithm>

namespace {

// How a layout table is written down: the keys row by row, and the few keys
// whose width or spacing is not the rule of the model.
struct LayoutDescription {
    std::vector<std::vector<const char*>> rows;
    const KeyWidthTable* widths;
    std::vector<const char*> bottomNormalKeys;  // width "bottomNormal"
    std::map<QString, int> ownWidths;           // widths no width entry holds
    std::vector<const char*> noSeparator;       // besides each row's first key
    std::vector<const char*> extraWidthOne;
};

bool listed(const std::vector<const char*>& names, const QString& name)
{
    return std::any_of(names.begin(), names.end(), [&](const char* n) { return name == QLatin1String(n); });
}

int widthOf(const LayoutDescription& d, const QString& name)
{
    if (auto own = d.ownWidths.find(name); own != d.ownWidths.end())
        return own->second;
    if (name != QLatin1String("normal") && name != QLatin1String("bottomNormal"))
        if (auto entry = d.widths->find(name); entry != d.widths->end())
            return entry->second;
    return d.widths->at(listed(d.bottomNormalKeys, name) ? QStringLiteral("bottomNormal") : QStringLiteral("normal"));
}

LayoutTable buildTable(const LayoutDescription& d)
{
    LayoutTable table;
    for (size_t r = 0; r < d.rows.size(); ++r) {
        for (size_t k = 0; k < d.rows[r].size(); ++k) {
            const QString name = QString::fromLatin1(d.rows[r][k]);
            const bool first = k == 0;
            table.push_back({widthOf(d, name), name, int(r) + 1, listed(d.extraWidthOne, name) ? 1 : 0,
                             (first || listed(d.noSeparator, name)) ? 0 : 1, first, false});
        }
    }
    return table;
}

const std::vector<const char*> kRow1{"escape", "i1", "i2", "i3", "i4", "i5", "i6", "i7",
                                     "i8", "i9", "i0", "minus", "equal", "backspace"};
const std::vector<const char*> kRow2{"tab", "q", "w", "e", "r", "t", "y", "u",
                                     "i", "o", "p", "leftBracket", "rightBracket", "backslash"};
const std::vector<const char*> kRow3{"capsLock", "a", "s", "d", "f", "g", "h",
                                     "j", "k", "l", "semicolon", "quote", "enter"};
const std::vector<const char*> kRow4{"leftShift", "z", "x", "c", "v", "b",
                                     "n", "m", "comma", "period", "slash", "rightShift"};
const std::vector<const char*> kRow5of61k{"leftControl", "leftWin", "leftAlt", "space",
                                          "rightAlt", "menu", "rightControl", "fn"};

std::vector<const char*> plus(std::vector<const char*> row, std::initializer_list<const char*> more)
{
    row.insert(row.end(), more);
    return row;
}

}  // namespace

// clang-format off
const KeyWidthTable& Orvane61K_Key_Width()
{
    static const KeyWidthTable t{{"normal", 42}, {"backspace", 85}, {"tab", 60}, {"backslash", 65},
        {"capsLock", 75}, {"enter", 92}, {"leftShift", 95}, {"rightShift", 115}, {"bottomNormal", 53}, {"space", 263}};
    return t;
}

const KeyWidthTable& Orvane68K_Key_Width()
{
    static const KeyWidthTable t{{"normal", 37}, {"backspace", 75}, {"tab", 57}, {"backslash", 55},
        {"capsLock", 66}, {"enter", 84}, {"leftShift", 86}, {"rightShift", 66}, {"bottomNormal", 47}, {"space", 235}};
    return t;
}

const KeyWidthTable& OrvaneCNC61K_Key_Width()
{
    static const KeyWidthTable t{{"normal", 28}, {"backspace", 62}, {"tab", 48}, {"backslash", 42},
        {"capsLock", 58}, {"enter", 74}, {"leftShift", 79}, {"rightShift", 93}, {"bottomNormal", 39}, {"space", 236}};
    return t;
}

const RowYTable& Orvane61K_Y_Pos() { static const RowYTable t{{1, 180}, {2, 137}, {3, 96}, {4, 51}, {5, 10}}; return t; }
const RowYTable& Orvane68K_Y_Pos() { static const RowYTable t{{1, 180}, {2, 142}, {3, 105}, {4, 68}, {5, 31}}; return t; }
const RowYTable& OrvaneCNC61K_Y_Pos() { static const RowYTable t{{1, 200}, {2, 160}, {3, 120}, {4, 80}, {5, 41}}; return t; }

const SizeTable& Orvane61K_Size_Conf()
{
    static const SizeTable t{{"key_height", 41}, {"container_margin_left", 10}, {"key_separator", 1},
        {"container_margin_top", 12}, {"container_margin_right", 21}, {"container_margin_bottom", 17}, {"keypad_margin_left", 9}};
    return t;
}

const SizeTable& Orvane68K_Size_Conf()
{
    static const SizeTable t{{"key_height", 36}, {"container_margin_left", 18}, {"key_separator", 1},
        {"container_margin_top", 13}, {"container_margin_right", 21}, {"container_margin_bottom", 17}, {"keypad_margin_left", 9}};
    return t;
}

const SizeTable& OrvaneCNC61K_Size_Conf()
{
    static const SizeTable t{{"key_height", 28}, {"container_margin_left", 31}, {"key_separator", 12},
        {"container_margin_top", 12}, {"container_margin_right", 21}, {"container_margin_bottom", 17}, {"keypad_margin_left", 9}};
    return t;
}

const LayoutTable& Orvane61kLayout()
{
    static const LayoutTable t = buildTable({
        {kRow1, kRow2, kRow3, kRow4, kRow5of61k},
        &Orvane61K_Key_Width(),
        {"leftControl", "leftWin", "leftAlt", "rightAlt", "menu", "rightControl", "fn"},
        {},
        {"i3", "i8", "equal", "backspace"},
        {}});
    return t;
}

const LayoutTable& Orvane68kLayout()
{
    static const LayoutTable t = buildTable({
        {plus(kRow1, {"home"}), plus(kRow2, {"pageUp"}), plus(kRow3, {"pageDown"}), plus(kRow4, {"upArrow", "delete"}),
         {"leftControl", "leftWin", "leftAlt", "space", "rightAlt", "fn", "rightControl", "leftArrow", "downArrow", "rightArrow"}},
        &Orvane68K_Key_Width(),
        {"leftControl", "leftWin", "leftAlt"},
        {},
        {"i3", "i8", "equal", "backspace", "w", "y", "leftBracket", "f", "h", "k", "quote", "v", "b", "n", "m",
         "period", "fn", "rightControl", "downArrow", "rightArrow"},
        {}});
    return t;
}

const LayoutTable& OrvaneCNC61kLayout()
{
    static const LayoutTable t = buildTable({
        {kRow1, kRow2, kRow3, kRow4, kRow5of61k},
        &OrvaneCNC61K_Key_Width(),
        {"leftControl", "leftWin", "leftAlt"},
        {{"rightAlt", 38}, {"menu", 38}, {"rightControl", 35}, {"fn", 35}},
        {},
        {"i4", "i5", "t", "a"}});
    return t;
}
// clang-format on

std::vector<KeyData> layoutKeys(const LayoutTable& table, const RowYTable& yPos, const SizeTable& sizes,
                                const KeyNameMap& names)
{
    const int keyHeight = sizes.at(QStringLiteral("key_height"));
    const int marginLeft = sizes.at(QStringLiteral("container_margin_left"));
    const int separator = sizes.at(QStringLiteral("key_separator"));
    std::vector<KeyData> keys;
    int x = 0;
    for (size_t i = 0; i < table.size(); ++i) {
        const LayoutRow& row = table[i];
        int pos = row.first_key ? marginLeft + 1 : x;
        if (row.has_seperator == 1)
            pos += separator;
        pos += row.left_extra_width;
        KeyData key;
        key.index = int(i);
        key.rect = QRectF(pos, yPos.at(row.row_num), row.width, keyHeight);
        key.keyname = row.key_standard_name;
        if (auto it = names.find(row.key_standard_name); it != names.end())
            key.keycode = it->second.key_code;
        keys.push_back(key);
        x = pos + row.width;
    }
    return keys;
}

namespace {
KeyboardModelLayout makeModel(int layout, KeyMapModel maps, CodeMapStart start, const LayoutTable& table,
                              const RowYTable& yPos, const SizeTable& sizes, PictureFrame frame, const char* localKey,
                              std::array<QString, 4> pictures)
{
    return {layout, maps, start, &table, &yPos, &sizes, frame, QString::fromLatin1(localKey), std::move(pictures)};
}
}  // namespace

const KeyboardModelLayout& keyboardModel61k()
{
    static const KeyboardModelLayout m = makeModel(
        1, KeyMapModel::Orvane61k, CodeMapStart::Empty, Orvane61kLayout(), Orvane61K_Y_Pos(), Orvane61K_Size_Conf(),
        {215, 280, 660, 235}, "kb_61k", {QStringLiteral("kb_61k"), QStringLiteral("kb_61k_black"), {}, {}});
    return m;
}

const KeyboardModelLayout& keyboardModel68k()
{
    static const KeyboardModelLayout m = makeModel(
        3, KeyMapModel::Orvane68k, CodeMapStart::Empty, Orvane68kLayout(), Orvane68K_Y_Pos(), Orvane68K_Size_Conf(),
        {225, 280, 643, 229}, "kb_68k", {QStringLiteral("kb_68k"), QStringLiteral("kb_68k_black"), {}, {}});
    return m;
}

const KeyboardModelLayout& keyboardModelCnc()
{
    static const KeyboardModelLayout m = makeModel(
        2, KeyMapModel::Orvane61k, CodeMapStart::KeepCurrent, OrvaneCNC61kLayout(), OrvaneCNC61K_Y_Pos(),
        OrvaneCNC61K_Size_Conf(), {215, 280, 641, 238}, "kb_61k_cnc",
        {QStringLiteral("kb_61k_cnc"), QStringLiteral("kb_61k_cnc_black"), QStringLiteral("kb_61k_cnc_blue"),
         QStringLiteral("kb_61k_cnc_purple")});
    return m;
}

const KeyboardModelLayout& keyboardModelForLayout(int keyboardLayout)
{
    switch (keyboardLayout) {
    case 2: return keyboardModelCnc();
    case 3: return keyboardModel68k();
    default: return keyboardModel61k();
    }
}

const KeyboardModelLayout& keyboardModelForKeyboardType(int keyboardType)
{
    switch (keyboardType) {
    case 0: return keyboardModel68k();
    case 2: return keyboardModelCnc();
    default: return keyboardModel61k();
    }
}

std::optional<CaseColour> caseColourForDigit(const KeyboardModelLayout& model, const QString& digit)
{
    bool ok = false;
    const int type = digit.toInt(&ok);
    if (!ok || digit.size() != 1 || type < 1 || type > 4 || model.pictures[type - 1].isEmpty())
        return std::nullopt;
    return CaseColour{type, kCaseColourFirstTag + type - 1};
}

QString casePictureForDigit(const KeyboardModelLayout& model, const QString& digit)
{
    const auto colour = caseColourForDigit(model, digit);
    return casePictureForType(model, colour ? colour->type : 1);
}

QString casePictureForType(const KeyboardModelLayout& model, int type)
{
    if (type < 1 || type > 4 || model.pictures[type - 1].isEmpty())
        return model.pictures[0];
    return model.pictures[type - 1];
}

std::optional<int> caseColourSlide(int oldType, int newType)
{
    if (oldType == newType)
        return std::nullopt;
    return newType > oldType ? 3 : 2;
}
