#include "View/control/NamedImage.h"

#include "View/control/KeyboardViewPicture.h"

#include <QPainter>
#include <QSvgRenderer>
#include <QWidget>

namespace {
QString pathOf(const QString& name) { return QStringLiteral(":/images/%1.svg").arg(name); }
}  // namespace

QPixmap NamedImage::pixmap(const QString& name, const QSize& size, qreal devicePixelRatio)
{
    // The keyboard pictures are painted from the layout tables.
    if (KeyboardViewPicture::paints(name))
        return QPixmap::fromImage(KeyboardViewPicture::render(name, size, devicePixelRatio));
    QSvgRenderer renderer(pathOf(name));
    if (!renderer.isValid() || size.isEmpty())
        return {};
    QPixmap pm(size * devicePixelRatio);
    pm.setDevicePixelRatio(devicePixelRatio);
    pm.fill(Qt::transparent);
    QPainter painter(&pm);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    return pm;
}

void NamedImage::paintFill(QPainter& painter, const QWidget& widget, const QString& name)
{
    if (name.isEmpty())
        return;  // no image: nothing to draw
    const QPixmap pm = pixmap(name, widget.size(), widget.devicePixelRatioF());
    if (!pm.isNull())
        painter.drawPixmap(0, 0, pm);
}
