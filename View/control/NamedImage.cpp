#include "View/control/NamedImage.h"

#include <QPainter>
#include <QSvgRenderer>

namespace {
QString pathOf(const QString& name) { return QStringLiteral(":/images/%1.svg").arg(name); }
}  // namespace

QPixmap NamedImage::pixmap(const QString& name, const QSize& size, qreal devicePixelRatio)
{
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
