#pragma once
// The keyboard pictures ("kb_61k", "kb_61k_black", ... "kb_61k_cnc_purple")
// and the key marker ("key_bkg"), painted from the layout tables at any size
// and scale. A picture shows the case and the key caps; the key windows (the
// legends and a thin ring round each cap) stay transparent, so the colour of
// the KeyView under each key shows through them.

#include <QImage>
#include <QSize>
#include <QString>

namespace KeyboardViewPicture {

// True for the names painted here.
bool paints(const QString& name);
// The named picture filling `size` (device-independent pixels) at the given
// device pixel ratio; a null image for names not painted here.
QImage render(const QString& name, const QSize& size, qreal devicePixelRatio);

}  // namespace KeyboardViewPicture
