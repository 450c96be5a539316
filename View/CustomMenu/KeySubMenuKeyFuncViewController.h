#pragma once
// KeySubMenuKeyFuncViewController: the small floating dialog in which the
// user presses a key, or a combination such as Ctrl+Shift+K, on any
// keyboard, for the key of the picture that is being reassigned. While it is
// shown, a local event monitor sees each key pressed and released in the
// application's windows.
//
// Modifiers held when another key goes down are captured with it; a
// modifier pressed alone is captured alone until a key follows. Any key with
// a HID usage can be bound, whatever the model; a key without one is refused
// with a note under the field, and the capture before it stays. Each showing
// starts empty and OK waits for a capture. OK posts "CustomKeyFuncMsg" with
// "keyvalue" and "modifiers" (a key assignment's `macroValue` and
// `macro2Value`, Common/KeyCombination.h) and "keyDesc"; Cancel posts
// "keyvalue" 0, which assigns nothing: the key keeps what it had.

#include "Common/KeyCombination.h"

#include <QPointer>
#include <QWidget>

#include <vector>

class QKeyEvent;
class QLabel;
class QLineEdit;
class QPushButton;

class KeySubMenuKeyFuncViewController : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWidth = 300;
    static constexpr int kHeight = 176;

    explicit KeySubMenuKeyFuncViewController(QWidget* parent = nullptr);
    ~KeySubMenuKeyFuncViewController() override;

    void viewDidAppear();
    void viewDidDisappear();
    // Takes a key event of the application's windows.
    void fillBindInput(const QKeyEvent& event);
    void action_onkeyfunc();
    void action_cancelkeyfunc();

    QLineEdit* edit_keyfunc = nullptr;
    QLabel* label_keyfunc = nullptr;
    QLabel* label_note = nullptr;  // why a key was refused
    QPushButton* btn_cancelfunc = nullptr;
    QPushButton* btn_okfunc = nullptr;
    int eventHandler = 0;  // the local monitor's token while shown
    QString currentModifyKeysStr;
    KeyCombination::Combination captured;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void startLocalEventMoniter();
    void showCaptured();

    uint8_t heldModifiers_ = 0;
};

// The dialog's floating window, made on first use with `owner` as its
// parent, then only shown and hidden.
extern QPointer<KeySubMenuKeyFuncViewController> kbKeyFuncSubMenu;
// Makes the window if needed and brings it to the front.
KeySubMenuKeyFuncViewController* ShowKBKeyFuncSubMenu(QWidget* owner);
