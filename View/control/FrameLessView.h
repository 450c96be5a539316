#pragma once
// Windows and views without a frame of their own.
//
// FramelessWindow: a frameless tool window on an opaque floating panel of
// one colour (white unless told otherwise), the base of the floating menus
// and the key tool tip. It floats over the main window, may take the
// keyboard focus, and is shown and hidden, never rebuilt.
// FloatingPanel: how every floating menu, dialog and tool tip is made and
// drawn, so that they all look alike.
// DragView and DragImageView: a press on them drags their window.
// DragColorWell: a colour swatch; a click asks for the colour panel
// (clicked()), a press that moves drags its window like the views above.

#include "View/control/NamedImageView.h"

#include <QAbstractButton>
#include <QColor>
#include <QWidget>

class QPainter;

namespace FloatingPanel {
// A frameless tool window that draws its own shadow.
Qt::WindowFlags windowFlags();
// Fills `rect` with `background` made opaque, with an edge and a shadow
// line along the lower and right sides. Nothing of the panel is transparent: a
// translucent window shows the picture's legends through its text, and
// without a compositor its clear corners turn black or grey.
void paint(QPainter& painter, const QRect& rect, const QColor& background);
}  // namespace FloatingPanel

// Hands the pointer to the window manager or compositor to move `widget`'s
// window (the only way a Wayland window moves). False where the platform
// cannot (offscreen); the caller then moves the window itself.
bool startSystemMove(QWidget* widget);

class FramelessWindow : public QWidget {
    Q_OBJECT
public:
    explicit FramelessWindow(QWidget* parent = nullptr);

    void setBackgroundColor(const QColor& color);
    QColor backgroundColor() const { return background_; }
    // Moves the window so that its top-left corner is at `topLeft`, given in
    // screen coordinates with y growing upward from the screen's bottom.
    void setFrameTopLeftPoint(const QPointF& topLeft);
    // The window's frame in the same coordinates: origin bottom-left.
    QRect flippedFrame() const;
    // Turns a point of the screen, y down, into the y-up coordinates above.
    static QPointF toFlippedScreen(const QPoint& globalPoint);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor background_ = Qt::white;
};

class DragView : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;

protected:
    void mousePressEvent(QMouseEvent* event) override;
};

class DragImageView : public NamedImageView {
    Q_OBJECT
public:
    explicit DragImageView(QWidget* parent = nullptr);

protected:
    void mousePressEvent(QMouseEvent* event) override;
};

class DragColorWell : public QAbstractButton {
    Q_OBJECT
public:
    explicit DragColorWell(QWidget* parent = nullptr);
    void setColor(const QColor& color);
    QColor color() const { return color_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    QColor color_ = Qt::white;
};

