#pragma once
// The keyboard pictures ("kb_61k", "kb_61k_black", ... "kb_61k_cnc_purple")
// and the key marker ("key_bkg"), painted from the layout tables at any size
// and scale. A picture shows the case and the key caps; the key windows (the
// legends and a thin ring round each cap) stay transparent, so the colour of
// the KeyView under each key shows through them.

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRectF>
#include <QSize>
#include <QString>

#include <utility>
#include <vector>

class QPainter;

namespace KeyboardViewPicture {

// True for the names painted here.
bool paints(const QString& name);
// The named picture filling `size` (device-independent pixels) at the given
// device pixel ratio; a null image for names not painted here.
QImage render(const QString& name, const QSize& size, qreal devicePixelRatio);

// True when the picture's caps are light (the white case).
bool hasLightCaps(const QString& pictureName);
// Paints, over the key `keyName` of the picture `pictureName`, a cap that
// shows what the key does now: its printed legend small at the top and
// `function` below it in `functionColour`, on two lines and smaller where
// one line at the picture's size would not fit, ending in "…" where even
// that is too long. `key` is the key's rectangle and `unit` the height of
// one key, both in the painter's coordinates.
void paintAssignedCap(QPainter& p, const QString& pictureName, const QString& keyName, const QRectF& key, qreal unit,
                      const QString& function, const QColor& functionColour);

// The parts of a painted key's cap, in the coordinates of the key rectangle
// given: a lit key is filled over them, so its colour reads as the cap's.
struct CapFill {
    QRectF skirt, face;
    qreal radius = 0;
    QPainterPath legend;  // the cap's legend as the picture sets it
};
// One CapFill per key, from the key names and rectangles of one picture (in
// the picture's pixels), matching what render() draws for them.
std::vector<CapFill> capFills(const std::vector<std::pair<QString, QRectF>>& keys);
// Paints a cap lit in `colour`: skirt, face and a legend that stays readable.
void paintCapFill(QPainter& p, const CapFill& cap, const QColor& colour);

}  // namespace KeyboardViewPicture
