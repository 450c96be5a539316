#include "View/MainWindowController.h"

#include "View/MainController.h"
#include "View/control/FrameLessView.h"

#include <QApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QVBoxLayout>

WindowBorderless::WindowBorderless(QWidget* parent) : QWidget(parent, Qt::Window | Qt::FramelessWindowHint)
{
    setWindowTitle(QStringLiteral("Orvane Keyboard Studio"));
}

void WindowBorderless::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    pressPoint_ = event->globalPosition().toPoint();
    dragOffset_ = *pressPoint_ - frameGeometry().topLeft();
}

// Only a press that moves hands the pointer to the window manager: a move
// started by a quick click can outlive its release (the manager grabs the
// pointer after the button is already up), and the window then follows the
// pointer until the next click.
void WindowBorderless::mouseMoveEvent(QMouseEvent* event)
{
    if (!pressPoint_ || !(event->buttons() & Qt::LeftButton))
        return;
    const QPoint at = event->globalPosition().toPoint();
    if ((at - *pressPoint_).manhattanLength() < QApplication::startDragDistance())
        return;
    // The window manager moves the window where it can; a Wayland
    // compositor ignores a window that places itself.
    if (startSystemMove(this))
        pressPoint_.reset();
    else
        move(at - dragOffset_);
}

void WindowBorderless::mouseReleaseEvent(QMouseEvent*)
{
    pressPoint_.reset();
}

MainWindowController::MainWindowController(MainController* controller)
    : window_(std::make_unique<WindowBorderless>())
{
    auto* layout = new QVBoxLayout(window_.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(controller);
    windowDidLoad();
}

void MainWindowController::windowDidLoad()
{
    window_->setFixedSize(MainController::kWindowWidth, MainController::kWindowHeight);
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QRect area = screen->availableGeometry();
        window_->move(area.center() - QPoint(MainController::kWindowWidth / 2, MainController::kWindowHeight / 2));
    }
}
