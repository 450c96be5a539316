#pragma once
// The two small windows of the macro step editor, each made once by the
// editor and shown again: picking the key of a key press to insert, and the
// steps as text for copying and pasting. Both are modal to the macro window
// and answer through a callback, never by blocking.

#include "Common/MacroSteps.h"

#include <QDialog>

#include <functional>

class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

class MacroKeyDialog : public QDialog {
    Q_OBJECT
public:
    explicit MacroKeyDialog(QWidget* parent);

    // Lists the active model's keys and shows the window; `chosen` gets the
    // key's HID usage when the user inserts it.
    void ask(std::function<void(int keyCode)> chosen);

    QComboBox* keyList = nullptr;
    QPushButton* btn_insert = nullptr;

protected:
    // A key typed here is the key to insert, Escape aside.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void retranslate();

    QLabel* hint_ = nullptr;
    QPushButton* cancel_ = nullptr;
    std::function<void(int)> chosen_;
};

class MacroTextDialog : public QDialog {
    Q_OBJECT
public:
    explicit MacroTextDialog(QWidget* parent);

    // Shows the steps as text; `apply` gets pasted steps that read as steps.
    void showSteps(const MacroSteps::Steps& steps, std::function<void(MacroSteps::Steps)> apply);

    QPlainTextEdit* textView = nullptr;
    QLabel* label_problem = nullptr;
    QPushButton* btn_copy = nullptr;
    QPushButton* btn_apply = nullptr;

private:
    void tryApply();

    QLabel* hint_ = nullptr;
    QPushButton* cancel_ = nullptr;
    std::function<void(MacroSteps::Steps)> apply_;
};
