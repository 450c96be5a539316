#pragma once
// KeySubMenuKeyFuncViewController: the small floating dialog in which the
// user presses one key, on any keyboard, for the key of the picture that is
// being reassigned. While it is shown, a local event monitor takes over each
// key pressed; the key logger has stored the key's HID usage by then. OK and
// Cancel post "CustomKeyFuncMsg"; MainController writes the assignment.
//
// Each press replaces the one before, so a held modifier followed by a
// letter ends as the letter alone. A key with no row in the active model's
// code map is taken by its name where the key vocabulary has one, and
// otherwise refused with a note in the field.

#include <QPointer>
#include <QWidget>

#include <vector>

class QLabel;
class QLineEdit;
class QPushButton;

class KeySubMenuKeyFuncViewController : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWidth = 300;
    static constexpr int kHeight = 150;

    explicit KeySubMenuKeyFuncViewController(QWidget* parent = nullptr);
    ~KeySubMenuKeyFuncViewController() override;

    void viewDidAppear();
    void viewDidDisappear();
    // Takes over the last pressed key.
    void fillBindInput();
    void action_onkeyfunc();
    void action_cancelkeyfunc();

    QLineEdit* edit_keyfunc = nullptr;
    QLabel* label_keyfunc = nullptr;
    QPushButton* btn_cancelfunc = nullptr;
    QPushButton* btn_okfunc = nullptr;
    int eventHandler = 0;  // the local monitor's token while shown
    QString currentModifyKeysStr;
    std::vector<int> currentModifyKeys;
    int currentKeyValue = 0;  // the captured key's code

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void startLocalEventMoniter();
};

// The dialog's floating window, made on first use with `owner` as its
// parent, then only shown and hidden.
extern QPointer<KeySubMenuKeyFuncViewController> kbKeyFuncSubMenu;
// Makes the window if needed and brings it to the front.
KeySubMenuKeyFuncViewController* ShowKBKeyFuncSubMenu(QWidget* owner);
