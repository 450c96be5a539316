#pragma once
// Images by their resource name ("sys_btn_usb_n"), drawn as SVG under
// :/images/, or painted in code (the keyboard pictures). An unknown name
// gives a null pixmap.

#include <QPixmap>
#include <QSize>
#include <QString>

class QPainter;
class QWidget;

namespace NamedImage {
QPixmap pixmap(const QString& name, const QSize& size, qreal devicePixelRatio = 1.0);
// Draws the image over the whole of `widget`, at the widget's screen scale.
void paintFill(QPainter& painter, const QWidget& widget, const QString& name);
}  // namespace NamedImage
