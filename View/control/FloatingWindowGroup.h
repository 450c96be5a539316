#pragma once
// The floating menus and dialogs over the main window, closed together the
// way a desktop menu closes: on Escape, and on a press anywhere outside them
// (the picture, the page pane, the title bar, another window of ours). The
// owner says what closing means (hiding every floating window, letting go of
// the key they worked on); the group only decides when. One group serves
// the key menus and the light menus alike.
//
// A member that takes keys itself (the key capture dialog, where Escape is a
// key to bind) is told at add(); while one such is shown, Escape is its key.

#include <QObject>
#include <QPointer>

#include <functional>
#include <vector>

class QWidget;

class FloatingWindowGroup : public QObject {
    Q_OBJECT
public:
    explicit FloatingWindowGroup(std::function<void()> closeAll, QObject* parent = nullptr);
    ~FloatingWindowGroup() override;

    void add(QWidget* window, bool takesEscape = false);
    // True while a member is shown.
    bool anyShown() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Member {
        QPointer<QWidget> window;
        bool takesEscape = false;
    };
    bool isMember(const QWidget* window) const;
    bool escapeTaken() const;

    std::function<void()> closeAll_;
    std::vector<Member> members_;
};
