#include "View/control/FrameLessView.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

namespace {

// The height of the desktop that y-up screen points count from.
int screenHeight()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->geometry().height() : 0;
}

void startWindowDrag(QWidget* widget, QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    startSystemMove(widget);
    event->accept();
}

}  // namespace

bool startSystemMove(QWidget* widget)
{
    QWindow* handle = widget->window()->windowHandle();
    return handle && handle->startSystemMove();
}

FramelessWindow::FramelessWindow(QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint)
{
    setAttribute(Qt::WA_TranslucentBackground);
}

void FramelessWindow::setBackgroundColor(const QColor& color)
{
    background_ = color;
    update();
}

QPointF FramelessWindow::toFlippedScreen(const QPoint& globalPoint)
{
    return QPointF(globalPoint.x(), screenHeight() - globalPoint.y());
}

void FramelessWindow::setFrameTopLeftPoint(const QPointF& topLeft)
{
    move(QPoint(qRound(topLeft.x()), screenHeight() - qRound(topLeft.y())));
}

QRect FramelessWindow::flippedFrame() const
{
    const QRect frame = geometry();
    return QRect(frame.x(), screenHeight() - frame.y() - frame.height(), frame.width(), frame.height());
}

void FramelessWindow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), background_);
}

void DragView::mousePressEvent(QMouseEvent* event) { startWindowDrag(this, event); }

DragImageView::DragImageView(QWidget* parent) : NamedImageView(parent)
{
    // Unlike other pictures, this one takes the press.
    setAttribute(Qt::WA_TransparentForMouseEvents, false);
}

void DragImageView::mousePressEvent(QMouseEvent* event) { startWindowDrag(this, event); }

DragColorWell::DragColorWell(QWidget* parent) : QAbstractButton(parent) {}

void DragColorWell::setColor(const QColor& color)
{
    color_ = color;
    update();
}

void DragColorWell::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(0xc4, 0xc9, 0xd1));
    painter.setBrush(color_);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
}

// A press that turns into a move hands the pointer to the window manager: the
// button is released first, so it does not also count as a click.
void DragColorWell::mouseMoveEvent(QMouseEvent* event)
{
    if (!isDown() || !(event->buttons() & Qt::LeftButton))
        return QAbstractButton::mouseMoveEvent(event);
    setDown(false);
    startSystemMove(this);
    event->accept();
}

