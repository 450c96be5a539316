#pragma once
// The keyboard pictures ("kb_61k", "kb_61k_black", ... "kb_61k_cnc_purple")
// and the key marker ("key_bkg"), painted from the layout tables at any size
// and scale. A picture shows the case and the key caps; the key windows (the
// legends and a thin ring round each cap) stay transparent, so the colour of
// the KeyView under each key shows through them.

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QSize>
#include <QString>

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

}  // namespace KeyboardViewPicture
