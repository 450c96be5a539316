#pragma once
// The one borderless window: 1160 by 720, centred, movable by its
// background, holding the MainController.

#include <QPoint>

#include <memory>
#include <optional>
#include <QWidget>

class MainController;

class WindowBorderless : public QWidget {
    Q_OBJECT
public:
    explicit WindowBorderless(QWidget* parent = nullptr);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    // Set by a left press on the background, cleared by its release or by the
    // window manager taking the move over.
    std::optional<QPoint> pressPoint_;
    QPoint dragOffset_;
};

class MainWindowController {
public:
    explicit MainWindowController(MainController* controller);
    void windowDidLoad();
    WindowBorderless* window() { return window_.get(); }

private:
    std::unique_ptr<WindowBorderless> window_;
};
