#pragma once
// Frames are given with the origin at the bottom left and y growing upward;
// Qt's origin is the top left. One conversion, so the numbers in the code
// can stay as they are written.

#include <QRect>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

inline QRect flippedRect(int parentHeight, int x, int y, int w, int h)
{
    return QRect(x, parentHeight - y - h, w, h);
}

// A rectangle in picture units (y upward, within `bounds`) as it shows in a
// view of `viewSize` that scales those bounds to fill it.
inline QRectF flippedRect(const QSizeF& bounds, const QSizeF& viewSize, const QRectF& r)
{
    const qreal sx = viewSize.width() / bounds.width();
    const qreal sy = viewSize.height() / bounds.height();
    return QRectF(r.x() * sx, (bounds.height() - r.y() - r.height()) * sy, r.width() * sx, r.height() * sy);
}

// The reverse for a point: a position in a view of `viewSize` as picture
// units of `bounds`, y upward.
inline QPointF unflippedPoint(const QSizeF& bounds, const QSizeF& viewSize, const QPointF& p)
{
    const qreal sx = bounds.width() / viewSize.width();
    const qreal sy = bounds.height() / viewSize.height();
    return QPointF(p.x() * sx, bounds.height() - p.y() * sy);
}
