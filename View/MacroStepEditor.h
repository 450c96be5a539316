#pragma once
// The macro window's step editor: the step list with a row of tools under
// it. Steps are selected (one or several) and deleted, moved up and down by
// button or drag, delays changed in place by a double-click, and delays,
// key presses and mouse clicks inserted before or after the selection. Every
// edit can be undone (Ctrl+Z) and redone (Ctrl+Shift+Z) until the macro is
// saved or recorded anew.
//
// Steps that would not play as recorded (a key or button pressed and never
// released, released and never pressed, a delay the keyboard can't hold) are
// marked in their rows, and a line under the tools shows what the macro
// takes of the keyboard's macro store against what the other macros leave.
// The window asks saveRefusal() before it stores anything.
//
// The steps stay in the window's MacroRecorder; the editor changes them
// through pure step functions and asks the window to show the new list
// (stepsEdited), after which the window calls refresh().

#include "Common/MacroEditHistory.h"
#include "Protocol/MacroStoreFigure.h"

#include <QWidget>

#include <optional>

class DeviceSQLite;
class MacroKeyDialog;
class MacroRecorder;
class MacroTextDialog;
class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;
class QToolButton;

class MacroStepEditor : public QWidget {
    Q_OBJECT
public:
    // Takes `list` in, at the list's place in `parent`.
    MacroStepEditor(QListWidget* list, MacroRecorder& recorder, QWidget* parent);

    // The other macros of the keyboard, for the store figure; read again
    // after each save, since a new macro gets its place then.
    void loadLibrary(const DeviceSQLite* db, int64_t macroId);
    void setRecording(bool recording);
    // After the list's rows were filled anew: selection, marks and figure.
    void refresh();
    void retranslate();
    // Why the macro can't be saved as it stands, in the window's language.
    std::optional<QString> saveRefusal() const;
    void saved(const DeviceSQLite* db, int64_t macroId);

    MacroSteps::Rows selectedRows() const;
    void selectRows(const MacroSteps::Rows& rows);
    // The edits, as the tools and keys make them.
    void deleteSelected();
    void moveSelected(int delta);
    void insert(bool after, const MacroSteps::Steps& steps);
    void editDelay(int row);
    // The selected rows dropped at a point of the list's viewport.
    void dropAt(const QPoint& at);
    void undo();
    void redo();

    QListWidget* list = nullptr;
    QToolButton* btn_delete = nullptr;
    QToolButton* btn_up = nullptr;
    QToolButton* btn_down = nullptr;
    QToolButton* btn_undo = nullptr;
    QToolButton* btn_redo = nullptr;
    QToolButton* btn_text = nullptr;
    QToolButton* btn_insert_before = nullptr;
    QToolButton* btn_insert_after = nullptr;
    QLabel* label_size = nullptr;
    QLineEdit* delayField = nullptr;  // over the delay being changed
    MacroKeyDialog* keyDialog = nullptr;
    MacroTextDialog* textDialog = nullptr;

signals:
    void stepsEdited();
    void message(const QString& text);  // an edit that was refused, and why

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildTools();
    QMenu* insertMenu(bool after);
    void addShortcut(const QKeySequence& keys, void (MacroStepEditor::*slot)());
    void insertKind(int kind, bool after);
    void apply(MacroSteps::Edited edited);
    void commitDelay();
    void closeDelayField();
    bool dropSteps(class QDropEvent* drop);
    void markRows();
    void updateTools();
    MacroStoreFigure::Figure figure() const;

    MacroRecorder& recorder_;
    MacroEditHistory history_;
    std::vector<MacroStoreBlock::MacroSteps> library_;
    std::optional<std::size_t> place_;
    std::optional<MacroSteps::Rows> pendingSelection_;
    int delayRow_ = -1;
    bool recording_ = false;
};
