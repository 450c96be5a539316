#pragma once
// Images by their resource name ("sys_btn_usb_n"), drawn as SVG under
// :/images/, or painted in code (the keyboard pictures). An unknown name
// gives a null pixmap.

#include <QPixmap>
#include <QSize>
#include <QString>

namespace NamedImage {
QPixmap pixmap(const QString& name, const QSize& size, qreal devicePixelRatio = 1.0);
}  // namespace NamedImage
