#pragma once
// The macro window: a dialog around MaroController, modal to the main
// window, movable by its background and centred over its parent when it
// opens. It closes itself for good: the next opening makes a new one.
// Closing it with steps not saved asks first.

#include <QPoint>
#include <QWidget>

class MaroController;

class MacroWindowController : public QWidget {
    Q_OBJECT
public:
    explicit MacroWindowController(QWidget* parent);

    void windowDidLoad();
    MaroController* controller() const { return controller_; }
    // Closes it even with steps not saved (their database went away).
    void closeWithoutAsking()
    {
        discardConfirmed_ = true;
        close();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    MaroController* controller_ = nullptr;
    QPoint pressPoint_;
    QPoint dragOffset_;
    bool dragging_ = false;
    bool discardConfirmed_ = false;
};
