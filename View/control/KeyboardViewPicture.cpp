#include "View/control/KeyboardViewPicture.h"

#include "View/KeyboardLayout/KeyboardLayouts.h"
#include "View/control/AppFont.h"
#include "View/control/FlippedRect.h"
#include "View/control/Theme.h"

#include <QFont>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

// The hover blue of the window (red 0.224, green 0.647, blue 1.0).
const QColor kHoverBlue = QColor::fromRgbF(0.224f, 0.647f, 1.0f);

struct Palette {
    QColor caseTop, caseBottom, caseEdge, caseHighlight;
    QColor capSkirt, capTop;
};

// Light caps on the white case, dark caps on every other: the legends take
// the KeyView colour, black under a white case and white under the others.
// An unlit light cap is a soft grey, so a key lit white stands out from it.
Palette paletteFor(int colourType, bool metal)
{
    const QColor darkSkirt(0x1b, 0x1d, 0x21), darkTop(0x33, 0x36, 0x3c);
    switch (colourType) {
    case 2: return {QColor(0x34, 0x37, 0x3d), QColor(0x22, 0x24, 0x28), QColor(0x0e, 0x0f, 0x11), QColor(255, 255, 255, 28), darkSkirt, darkTop};
    case 3: return {QColor(0x45, 0x6c, 0xa3), QColor(0x2c, 0x4b, 0x78), QColor(0x1a, 0x2e, 0x4d), QColor(255, 255, 255, 60), darkSkirt, darkTop};
    case 4: return {QColor(0x78, 0x5a, 0xa6), QColor(0x56, 0x3c, 0x7e), QColor(0x33, 0x22, 0x4d), QColor(255, 255, 255, 60), darkSkirt, darkTop};
    default:
        return {metal ? QColor(0xe8, 0xeb, 0xef) : QColor(0xec, 0xee, 0xf1), metal ? QColor(0xc6, 0xcc, 0xd4) : QColor(0xdb, 0xdf, 0xe4),
                QColor(0xa9, 0xb1, 0xbc), QColor(255, 255, 255, 200), QColor(0xcf, 0xd4, 0xdb), QColor(0xee, 0xf0, 0xf3)};
    }
}

// What a cap shows. `lower` set: two legends, shifted above, plain below.
// Words share one size per picture, the navigation words of the narrow
// keys another, so no cap's text looks louder than its neighbours'.
enum class Words { None, Modifier, Navigation };

struct Legend {
    QString upper;
    QString lower;
    Words words = Words::None;
};

Legend legendOf(const QString& name)
{
    constexpr Words kWord = Words::Modifier, kNav = Words::Navigation;
    static const std::map<QString, Legend> legends{
        {"escape", {"Esc", {}, kWord}},       {"backspace", {"Backspace", {}, kWord}}, {"tab", {"Tab", {}, kWord}},
        {"capsLock", {"Caps Lock", {}, kWord}}, {"enter", {"Enter", {}, kWord}},     {"leftShift", {"Shift", {}, kWord}},
        {"rightShift", {"Shift", {}, kWord}}, {"leftControl", {"Ctrl", {}, kWord}},  {"rightControl", {"Ctrl", {}, kWord}},
        {"leftWin", {"Cmd", {}, kWord}},      {"leftAlt", {"Opt", {}, kWord}},       {"rightAlt", {"Opt", {}, kWord}},
        {"menu", {"Menu", {}, kWord}},        {"fn", {"Fn", {}, kWord}},             {"space", {{}, {}}},
        {"home", {"Home", {}, kNav}},        {"pageUp", {"PgUp", {}, kNav}},       {"pageDown", {"PgDn", {}, kNav}},
        {"delete", {"Del", {}, kNav}},       {"upArrow", {"↑", {}}},                   {"downArrow", {"↓", {}}},
        {"leftArrow", {"←", {}}},                {"rightArrow", {"→", {}}},
        {"i1", {"!", "1"}}, {"i2", {"@", "2"}}, {"i3", {"#", "3"}}, {"i4", {"$", "4"}}, {"i5", {"%", "5"}},
        {"i6", {"^", "6"}}, {"i7", {"&", "7"}}, {"i8", {"*", "8"}}, {"i9", {"(", "9"}}, {"i0", {")", "0"}},
        {"minus", {"_", "-"}}, {"equal", {"+", "="}}, {"leftBracket", {"{", "["}}, {"rightBracket", {"}", "]"}},
        {"backslash", {"|", "\\"}}, {"semicolon", {":", ";"}}, {"quote", {"\"", "'"}}, {"comma", {"<", ","}},
        {"period", {">", "."}}, {"slash", {"?", "/"}}};
    if (auto it = legends.find(name); it != legends.end())
        return it->second;
    return {name.toUpper(), {}};  // the letters
}

struct PictureKind {
    const KeyboardModelLayout* model = nullptr;
    int colourType = 1;
};

std::optional<PictureKind> pictureKindFor(const QString& name)
{
    for (const KeyboardModelLayout* model : {&keyboardModel61k(), &keyboardModel68k(), &keyboardModelCnc()})
        for (int type = 1; type <= 4; ++type)
            if (!name.isEmpty() && model->pictures[size_t(type - 1)] == name)
                return PictureKind{model, type};
    return std::nullopt;
}

QFont legendFont(qreal pixelSize)
{
    AppFont::registerFaces();
    QFont font(AppFont::families().front());
    font.setFamilies(AppFont::families());
    font.setStyleHint(QFont::SansSerif);
    font.setWeight(QFont::DemiBold);
    font.setPixelSize(std::max(1, qRound(pixelSize)));
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

// The largest size up to `pixelSize` at which `text` fits `width`.
int fittedPixelSize(const QString& text, qreal pixelSize, qreal width)
{
    QFont font = legendFont(pixelSize);
    while (font.pixelSize() > 6 && QFontMetricsF(font).horizontalAdvance(text) > width)
        font.setPixelSize(font.pixelSize() - 1);
    return font.pixelSize();
}

// A key's parts: the well (the key's light, left open), the cap's skirt
// inside it and the top face that carries the legend.
struct Cap {
    QRectF well, skirt, face;
    qreal radius;
};

Cap capOf(const QRectF& key, qreal unit)
{
    const qreal ring = std::max<qreal>(1.0, 0.028 * unit);
    Cap cap;
    cap.well = key.adjusted(0.04 * unit, 0.04 * unit, -0.04 * unit, -0.04 * unit);
    cap.skirt = cap.well.adjusted(ring, ring, -ring, -ring);
    cap.face = cap.skirt.adjusted(0.09 * unit, 0.05 * unit, -0.09 * unit, -0.14 * unit);
    cap.radius = 0.12 * unit;
    return cap;
}

qreal legendRoom(const QRectF& face) { return face.width() - 0.12 * face.height(); }

// Legends are cut out of the cap, so they show the colour beneath it. Every
// word of a picture is set at one size, so no cap's text looks louder.
using WordSizes = std::map<Words, int>;

void cutLegend(QPainter& p, const QRectF& face, const Legend& legend, qreal unit, const WordSizes& wordSizes)
{
    if (legend.upper.isEmpty())
        return;
    p.save();
    p.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    p.setPen(Qt::black);
    const qreal room = legendRoom(face);
    if (legend.words != Words::None) {
        p.setFont(legendFont(wordSizes.at(legend.words)));
        p.drawText(face, Qt::AlignCenter, legend.upper);
    } else if (legend.lower.isEmpty()) {
        p.setFont(legendFont(fittedPixelSize(legend.upper, unit * 0.33, room)));
        p.drawText(face, Qt::AlignCenter, legend.upper);
    } else {
        p.setFont(legendFont(fittedPixelSize(legend.upper, unit * 0.25, room)));
        const QRectF upper(face.left(), face.top(), face.width(), face.height() * 0.5);
        const QRectF lower(face.left(), face.center().y(), face.width(), face.height() * 0.5);
        p.drawText(upper.adjusted(0, face.height() * 0.06, 0, 0), Qt::AlignCenter, legend.upper);
        p.drawText(lower.adjusted(0, 0, 0, -face.height() * 0.06), Qt::AlignCenter, legend.lower);
    }
    p.restore();
}

WordSizes wordSizesOf(const std::vector<QString>& names, const std::vector<QRectF>& rects, qreal unit)
{
    WordSizes wordSizes{{Words::Modifier, qRound(unit * 0.25)}, {Words::Navigation, qRound(unit * 0.25)}};
    for (size_t i = 0; i < names.size(); ++i)
        if (const Legend legend = legendOf(names[i]); legend.words != Words::None) {
            int& size = wordSizes[legend.words];
            size = std::min(size, fittedPixelSize(legend.upper, size, legendRoom(capOf(rects[i], unit).face)));
        }
    return wordSizes;
}

// One line of text centred in `box`, as QPainter::drawText centres it.
void addCentredText(QPainterPath& path, const QRectF& box, const QFont& font, const QString& text)
{
    const QFontMetricsF metrics(font);
    const QPointF baseline(box.center().x() - metrics.horizontalAdvance(text) / 2,
                           box.center().y() + (metrics.ascent() - metrics.descent()) / 2);
    path.addText(baseline, font, text);
}

// The legend that cutLegend cuts, as a path: a lit cap draws it in ink.
QPainterPath legendPath(const QRectF& face, const Legend& legend, qreal unit, const WordSizes& wordSizes)
{
    QPainterPath path;
    if (legend.upper.isEmpty())
        return path;
    const qreal room = legendRoom(face);
    if (legend.words != Words::None) {
        addCentredText(path, face, legendFont(wordSizes.at(legend.words)), legend.upper);
    } else if (legend.lower.isEmpty()) {
        addCentredText(path, face, legendFont(fittedPixelSize(legend.upper, unit * 0.33, room)), legend.upper);
    } else {
        const QFont font = legendFont(fittedPixelSize(legend.upper, unit * 0.25, room));
        const QRectF upper(face.left(), face.top(), face.width(), face.height() * 0.5);
        const QRectF lower(face.left(), face.center().y(), face.width(), face.height() * 0.5);
        addCentredText(path, upper.adjusted(0, face.height() * 0.06, 0, 0), font, legend.upper);
        addCentredText(path, lower.adjusted(0, 0, 0, -face.height() * 0.06), font, legend.lower);
    }
    return path;
}

void paintCase(QPainter& p, const QRectF& box, const Palette& pal, qreal unit)
{
    const qreal radius = 0.26 * unit;
    QLinearGradient fill(box.topLeft(), box.bottomLeft());
    fill.setColorAt(0, pal.caseTop);
    fill.setColorAt(1, pal.caseBottom);
    p.setPen(QPen(pal.caseEdge, 1));
    p.setBrush(fill);
    p.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    // A highlight along the inner edge, as light catches a machined rim.
    p.setPen(QPen(pal.caseHighlight, 1));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(box.adjusted(1.5, 1.5, -1.5, -1.5), radius - 1, radius - 1);
}

void paintKey(QPainter& p, const Cap& cap, const Legend& legend, const Palette& pal, qreal unit, const WordSizes& wordSizes)
{
    p.save();
    p.setCompositionMode(QPainter::CompositionMode_Clear);
    p.setPen(Qt::NoPen);
    p.setBrush(Qt::black);
    p.drawRoundedRect(cap.well, cap.radius * 1.2, cap.radius * 1.2);
    p.restore();

    p.setPen(Qt::NoPen);
    p.setBrush(pal.capSkirt);
    p.drawRoundedRect(cap.skirt, cap.radius, cap.radius);
    QLinearGradient top(cap.face.topLeft(), cap.face.bottomLeft());
    top.setColorAt(0, pal.capTop);
    top.setColorAt(1, pal.capTop.darker(104));
    p.setBrush(top);
    p.drawRoundedRect(cap.face, cap.radius * 0.8, cap.radius * 0.8);
    cutLegend(p, cap.face, legend, unit, wordSizes);
}

void paintKeyboard(QPainter& p, const PictureKind& kind, const QSizeF& size)
{
    const KeyboardModelLayout& model = *kind.model;
    const QSizeF bounds(model.frame.width, model.frame.height);
    const auto keys = layoutKeys(*model.layout, *model.yPos, *model.sizes, {});
    std::vector<QRectF> rects;
    QRectF keysBox;
    for (const KeyData& key : keys) {
        rects.push_back(flippedRect(bounds, size, key.rect));
        keysBox = keysBox.united(rects.back());
    }
    const qreal unit = rects.front().height();  // one key height sets every proportion
    std::vector<QString> names;
    for (const KeyData& key : keys)
        names.push_back(key.keyname);
    const WordSizes wordSizes = wordSizesOf(names, rects, unit);
    // An even rim round the keys, as wide as the picture allows.
    const QRectF all(QPointF(0, 0), size);
    const qreal room = std::min({keysBox.left(), keysBox.top(), all.right() - keysBox.right(), all.bottom() - keysBox.bottom()});
    const qreal rim = std::min(room, 0.3 * unit);
    const Palette pal = paletteFor(kind.colourType, model.keyboardLayout == 2);
    paintCase(p, keysBox.adjusted(-rim, -rim, rim, rim), pal, unit);
    for (size_t i = 0; i < keys.size(); ++i)
        paintKey(p, capOf(rects[i], unit), legendOf(keys[i].keyname), pal, unit, wordSizes);
}

// The marker over a hovered or selected key: a soft blue veil with an even
// outline at any key size.
void paintKeyMarker(QPainter& p, const QSizeF& size)
{
    const qreal unit = std::min(size.width(), size.height());
    const QRectF box = QRectF(QPointF(0, 0), size).adjusted(1, 1, -1, -1);
    QColor veil = kHoverBlue;
    veil.setAlpha(56);
    p.setPen(QPen(kHoverBlue, 2));
    p.setBrush(veil);
    p.drawRoundedRect(box, 0.16 * unit, 0.16 * unit);
}

}  // namespace

bool KeyboardViewPicture::paints(const QString& name)
{
    return name == QLatin1String("key_bkg") || pictureKindFor(name).has_value();
}

QImage KeyboardViewPicture::render(const QString& name, const QSize& size, qreal devicePixelRatio)
{
    if (!paints(name) || size.isEmpty())
        return {};
    QImage image(size * devicePixelRatio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    if (const auto kind = pictureKindFor(name))
        paintKeyboard(p, *kind, QSizeF(size));
    else
        paintKeyMarker(p, QSizeF(size));
    return image;
}

namespace {

// `text` on one line, or split at its last "+" or space before the middle
// onto two, at the largest size from `largest` down to `smallest` that fits
// `box`; the last line is elided at the smallest size.
void drawFittedFunction(QPainter& p, const QRectF& box, const QString& text, qreal largest, qreal smallest)
{
    QStringList lines{text};
    const qsizetype cut = std::max(text.lastIndexOf(QLatin1Char('+'), text.size() / 2), text.lastIndexOf(QLatin1Char(' '), text.size() / 2));
    const QStringList twoLines = cut > 0 ? QStringList{text.left(cut + 1).trimmed(), text.mid(cut + 1).trimmed()} : lines;
    for (const QStringList& candidate : {lines, twoLines}) {
        for (int size = qRound(largest); size >= qRound(smallest); --size) {
            const QFont font = legendFont(size);
            const QFontMetricsF metrics(font);
            const bool fits = std::all_of(candidate.begin(), candidate.end(), [&](const QString& line) {
                return metrics.horizontalAdvance(line) <= box.width();
            }) && metrics.height() * candidate.size() <= box.height() + 1;
            if (fits) {
                p.setFont(font);
                p.drawText(box, Qt::AlignCenter, candidate.join(QLatin1Char('\n')));
                return;
            }
        }
    }
    const QFont font = legendFont(smallest);
    p.setFont(font);
    const QFontMetricsF metrics(font);
    const QStringList last = metrics.height() * 2 <= box.height() + 1 ? twoLines : lines;
    QStringList shown = last;
    shown.back() = metrics.elidedText(shown.back(), Qt::ElideRight, box.width());
    p.drawText(box, Qt::AlignCenter, shown.join(QLatin1Char('\n')));
}

}  // namespace

bool KeyboardViewPicture::hasLightCaps(const QString& pictureName)
{
    const auto kind = pictureKindFor(pictureName);
    return !kind || kind->colourType == 1;
}

void KeyboardViewPicture::paintAssignedCap(QPainter& p, const QString& pictureName, const QString& keyName,
                                           const QRectF& key, qreal unit, const QString& function,
                                           const QColor& functionColour)
{
    const auto kind = pictureKindFor(pictureName);
    if (!kind || unit <= 0)
        return;
    const Palette pal = paletteFor(kind->colourType, kind->model->keyboardLayout == 2);
    const Cap cap = capOf(key, unit);
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    // A fresh top face hides the cut-out legend beneath.
    QLinearGradient top(cap.face.topLeft(), cap.face.bottomLeft());
    top.setColorAt(0, pal.capTop);
    top.setColorAt(1, pal.capTop.darker(104));
    p.setPen(Qt::NoPen);
    p.setBrush(top);
    p.drawRoundedRect(cap.face, cap.radius * 0.8, cap.radius * 0.8);

    const Legend legend = legendOf(keyName);
    const QString printed = legend.lower.isEmpty() ? legend.upper : legend.lower;
    const QRectF upper(cap.face.left(), cap.face.top(), cap.face.width(), cap.face.height() * 0.36);
    const QRectF lower(cap.face.left(), upper.bottom(), cap.face.width(), cap.face.height() - upper.height());
    // The printed legend in the colour the picture's legends show.
    p.setPen(kind->colourType == 1 ? Qt::black : Qt::white);
    p.setFont(legendFont(fittedPixelSize(printed, unit * 0.17, legendRoom(cap.face))));
    p.drawText(upper, Qt::AlignCenter, printed);
    p.setPen(functionColour);
    drawFittedFunction(p, lower.adjusted(1, 0, -1, 0), function, unit * 0.25, std::max<qreal>(7.0, unit * 0.15));
    p.restore();
}

std::vector<KeyboardViewPicture::CapFill> KeyboardViewPicture::capFills(
    const std::vector<std::pair<QString, QRectF>>& keys)
{
    std::vector<CapFill> fills;
    if (keys.empty())
        return fills;
    std::vector<QString> names;
    std::vector<QRectF> rects;
    for (const auto& [name, rect] : keys) {
        names.push_back(name);
        rects.push_back(rect);
    }
    const qreal unit = rects.front().height();
    const WordSizes wordSizes = wordSizesOf(names, rects, unit);
    for (size_t i = 0; i < keys.size(); ++i) {
        const QPointF origin = rects[i].topLeft();
        const Cap cap = capOf(rects[i], unit);
        fills.push_back({cap.skirt.translated(-origin), cap.face.translated(-origin), cap.radius,
                         legendPath(cap.face, legendOf(names[i]), unit, wordSizes).translated(-origin)});
    }
    return fills;
}

void KeyboardViewPicture::paintCapFill(QPainter& p, const CapFill& cap, const QColor& colour)
{
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    // The skirt a shade deeper than the face, as on an unlit cap, so a lit
    // key keeps the shape of a key.
    p.setBrush(colour.darker(112));
    p.drawRoundedRect(cap.skirt, cap.radius, cap.radius);
    p.setBrush(colour);
    p.drawRoundedRect(cap.face, cap.radius * 0.8, cap.radius * 0.8);
    p.setBrush(Theme::legendInkOn(colour));
    p.drawPath(cap.legend);
    p.restore();
}
