#include "View/MainWindowController.h"

#include "View/MainController.h"
#include "View/control/FrameLessView.h"

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
    // The window manager moves the window where it can; a Wayland
    // compositor ignores a window that places itself.
    if (event->button() == Qt::LeftButton && !startSystemMove(this))
        dragOffset_ = event->globalPosition().toPoint() - frameGeometry().topLeft();
}

void WindowBorderless::mouseMoveEvent(QMouseEvent* event)
{
    if (dragOffset_ && (event->buttons() & Qt::LeftButton))
        move(event->globalPosition().toPoint() - *dragOffset_);
}

void WindowBorderless::mouseReleaseEvent(QMouseEvent*)
{
    dragOffset_.reset();
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
