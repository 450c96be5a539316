#include "View/control/CaseColorButton.h"

#include <QPainter>

CaseColorButton::CaseColorButton(int tag, const QColor& color, QWidget* parent)
    : QAbstractButton(parent), tag_(tag), color_(color)
{
    setCursor(Qt::PointingHandCursor);
}

void CaseColorButton::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QPointF centre = QRectF(rect()).center();
    if (looksSelected()) {
        p.setPen(QPen(QColor::fromRgbF(0.224f, 0.647f, 1.0f), 2));
        p.setBrush(Qt::NoBrush);
        p.drawEllipse(centre, width() / 2.0 - 1, height() / 2.0 - 1);
    }
    const qreal r = 8.5;  // the swatch keeps its size; only the ring comes and goes
    p.setPen(QPen(color_.lightness() > 200 ? QColor(0xb4, 0xbb, 0xc5) : color_.darker(140), 1));
    p.setBrush(color_);
    p.drawEllipse(centre, r, r);
}
