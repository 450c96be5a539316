#include "View/control/NamedImage.h"

#include "View/control/KeyboardViewPicture.h"

#include <QHash>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <QWidget>

#include <memory>

namespace {
QString pathOf(const QString& name) { return QStringLiteral(":/images/%1.svg").arg(name); }

// Each image's document is read once; the widgets live on the main thread.
QSvgRenderer& rendererOf(const QString& name)
{
    static QHash<QString, std::shared_ptr<QSvgRenderer>> renderers;
    std::shared_ptr<QSvgRenderer>& renderer = renderers[name];
    if (!renderer)
        renderer = std::make_shared<QSvgRenderer>(pathOf(name));
    return *renderer;
}

QPixmap drawNamed(const QString& name, const QSize& size, qreal devicePixelRatio)
{
    // The keyboard pictures are painted from the layout tables.
    if (KeyboardViewPicture::paints(name))
        return QPixmap::fromImage(KeyboardViewPicture::render(name, size, devicePixelRatio));
    QSvgRenderer& renderer = rendererOf(name);
    if (!renderer.isValid() || size.isEmpty())
        return {};
    QPixmap pm(size * devicePixelRatio);
    pm.setDevicePixelRatio(devicePixelRatio);
    pm.fill(Qt::transparent);
    QPainter painter(&pm);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    return pm;
}
}  // namespace

QPixmap NamedImage::pixmap(const QString& name, const QSize& size, qreal devicePixelRatio)
{
    // Buttons repaint on every hover and on every frame of a slide, and the
    // slide shows the keyboard pictures again and again: each name is drawn
    // once per size and scale.
    const QString key = QStringLiteral("orvane:%1:%2x%3@%4").arg(name).arg(size.width()).arg(size.height()).arg(devicePixelRatio);
    QPixmap pm;
    if (QPixmapCache::find(key, &pm))
        return pm;
    pm = drawNamed(name, size, devicePixelRatio);
    if (!pm.isNull())
        QPixmapCache::insert(key, pm);
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
