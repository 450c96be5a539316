#include "View/control/FrameLessView.h"

#include "View/control/Theme.h"

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

Qt::WindowFlags FloatingPanel::windowFlags()
{
    // The compositor's shadow would make the panel look different on a
    // desktop with one and without one: the panel draws its own.
    return Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint;
}

void FloatingPanel::paint(QPainter& painter, const QRect& rect, const QColor& background)
{
    QColor opaque = background;
    opaque.setAlpha(255);
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect, opaque);
    // Light falls from the upper left: a pale edge there, the shadow's
    // darker one along the lower and right sides, inside the window, where
    // the entries (1 unit in from each side) leave room for it.
    painter.fillRect(QRect(rect.left(), rect.top(), rect.width(), 1), Theme::floatingEdge());
    painter.fillRect(QRect(rect.left(), rect.top(), 1, rect.height()), Theme::floatingEdge());
    painter.fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), Theme::floatingShadow());
    painter.fillRect(QRect(rect.right(), rect.top(), 1, rect.height()), Theme::floatingShadow());
    painter.restore();
}

FramelessWindow::FramelessWindow(QWidget* parent) : QWidget(parent, FloatingPanel::windowFlags()) {}

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
    FloatingPanel::paint(painter, rect(), background_);
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

