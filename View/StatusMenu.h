#pragma once
// The tray icon's menu: Show Orvane Keyboard Studio, the four profiles with
// the one in use checked, and Quit. A profile chosen here goes the way of a
// row of the profile menu ("MenuItemMouseUpAction" with its id), so the
// keyboard receives the same frames. Texts and checks are set each time the
// menu opens, so it follows the language and the keyboard's own switches.
// The menu exists whether or not the desktop has a tray to show it in.

#include <QObject>

#include <array>
#include <memory>

class MainController;
class QAction;
class QMenu;

class StatusMenu : public QObject {
    Q_OBJECT
public:
    explicit StatusMenu(const MainController* controller, QObject* parent = nullptr);
    ~StatusMenu() override;

    QMenu* menu() const { return menu_.get(); }
    // Texts in the language shown; the profile in use checked, the profiles
    // enabled only while a keyboard is connected (as the profile menu).
    void refresh();

    QAction* showAction = nullptr;
    std::array<QAction*, 4> profileActions{};
    QAction* quitAction = nullptr;

signals:
    void showRequested();
    void quitRequested();

private:
    void chooseProfile(int profile);

    const MainController* controller_;
    std::unique_ptr<QMenu> menu_;
};
