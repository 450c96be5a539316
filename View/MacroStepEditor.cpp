#include "View/MacroStepEditor.h"

#include "Language/AppText.h"
#include "SQLite/DeviceSQLite.h"
#include "View/MacroRecorder.h"
#include "View/MacroStepDialogs.h"
#include "View/control/TableItemView.h"
#include "View/control/Theme.h"

#include <QAction>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QMenu>
#include <QMimeData>
#include <QToolButton>

using namespace MacroSteps;

namespace {

constexpr int kToolsHeight = 84;
constexpr int kToolHeight = 26;
constexpr int kGap = 4;
constexpr int64_t kNewDelayMs = 100;
enum InsertKind { kInsertDelay, kInsertKey, kInsertLeft, kInsertMiddle, kInsertRight };

QToolButton* tool(QWidget* parent, const char* name, int x, int y, int width)
{
    auto* button = new QToolButton(parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setGeometry(x, y, width, kToolHeight);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

QString bytes(std::size_t n) { return QLocale(QLocale::English).toString(qulonglong(n)); }

QString faultWord(Fault fault)
{
    switch (fault) {
    case Fault::NeverReleased: return appText(AppText::StepNeverReleased);
    case Fault::NeverPressed: return appText(AppText::StepNeverPressed);
    case Fault::DelayTooLong: return appText(AppText::StepDelayTooLong);
    case Fault::None: break;
    }
    return {};
}

}  // namespace

MacroStepEditor::MacroStepEditor(QListWidget* steps, MacroRecorder& recorder, QWidget* parent)
    : QWidget(parent), list(steps), recorder_(recorder)
{
    setObjectName(QStringLiteral("MacroStepEditor"));
    setGeometry(list->geometry());
    list->setParent(this);
    list->show();
    list->setGeometry(0, 0, width(), height() - kToolsHeight);
    list->setFocusPolicy(Qt::StrongFocus);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    // A drag offers a copy that the drop turns into a step move: a move
    // would have the list remove the dragged rows itself afterwards.
    list->setDragDropMode(QAbstractItemView::DragDrop);
    list->setDefaultDropAction(Qt::CopyAction);
    list->setStyleSheet(list->styleSheet() + QStringLiteral(" QListWidget::item:selected { background: %1; }")
                                                 .arg(Theme::selectedRow().name()));
    list->viewport()->installEventFilter(this);
    connect(list, &QListWidget::itemSelectionChanged, this, [this] { updateTools(); });
    connect(list, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) { editDelay(list->row(item)); });
    buildTools();
    addShortcut(QKeySequence::Delete, &MacroStepEditor::deleteSelected);
    addShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z), &MacroStepEditor::undo);
    addShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), &MacroStepEditor::redo);
    keyDialog = new MacroKeyDialog(this);
    textDialog = new MacroTextDialog(this);
    updateTools();
}

void MacroStepEditor::buildTools()
{
    const int y = height() - kToolsHeight + kGap;
    btn_delete = tool(this, "btn_delete", 0, y, 72);
    btn_up = tool(this, "btn_up", 76, y, 32);
    btn_down = tool(this, "btn_down", 112, y, 32);
    btn_undo = tool(this, "btn_undo", 148, y, 60);
    btn_redo = tool(this, "btn_redo", 212, y, 60);
    btn_text = tool(this, "btn_text", 276, y, width() - 276);
    btn_insert_before = tool(this, "btn_insert_before", 0, y + kToolHeight + kGap, width() / 2 - 2);
    btn_insert_after = tool(this, "btn_insert_after", width() / 2 + 2, y + kToolHeight + kGap, width() / 2 - 2);
    btn_up->setText(QStringLiteral("\u2191"));
    btn_down->setText(QStringLiteral("\u2193"));
    connect(btn_delete, &QToolButton::clicked, this, [this] { deleteSelected(); });
    connect(btn_up, &QToolButton::clicked, this, [this] { moveSelected(-1); });
    connect(btn_down, &QToolButton::clicked, this, [this] { moveSelected(+1); });
    connect(btn_undo, &QToolButton::clicked, this, [this] { undo(); });
    connect(btn_redo, &QToolButton::clicked, this, [this] { redo(); });
    connect(btn_text, &QToolButton::clicked, this, [this] {
        textDialog->showSteps(recorder_.steps(), [this](Steps steps) { apply({std::move(steps), {}}); });
    });
    for (QToolButton* insert : {btn_insert_before, btn_insert_after}) {
        insert->setPopupMode(QToolButton::InstantPopup);
        insert->setMenu(insertMenu(insert == btn_insert_after));
    }
    label_size = new QLabel(this);
    label_size->setObjectName(QStringLiteral("label_size"));
    label_size->setGeometry(0, y + 2 * (kToolHeight + kGap), width(), kToolHeight - 6);
}

QMenu* MacroStepEditor::insertMenu(bool after)
{
    auto* menu = new QMenu(this);
    for (int kind : {kInsertDelay, kInsertKey, kInsertLeft, kInsertMiddle, kInsertRight})
        menu->addAction(QString())->setData(kind);
    connect(menu, &QMenu::triggered, this, [this, after](QAction* action) { insertKind(action->data().toInt(), after); });
    return menu;
}

void MacroStepEditor::addShortcut(const QKeySequence& keys, void (MacroStepEditor::*slot)())
{
    auto* action = new QAction(this);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(action, &QAction::triggered, this, [this, slot] {
        if (!recording_ && !delayField)
            (this->*slot)();
    });
    addAction(action);
}

void MacroStepEditor::retranslate()
{
    btn_delete->setText(appText(AppText::StepDelete));
    btn_up->setToolTip(appText(AppText::StepMoveUp));
    btn_down->setToolTip(appText(AppText::StepMoveDown));
    btn_undo->setText(appText(AppText::StepUndo));
    btn_redo->setText(appText(AppText::StepRedo));
    btn_text->setText(appText(AppText::StepTextButton));
    btn_insert_before->setText(appText(AppText::StepInsertBefore));
    btn_insert_after->setText(appText(AppText::StepInsertAfter));
    const AppText kinds[] = {AppText::StepInsertDelay, AppText::StepInsertKeyPress, AppText::StepInsertLeftClick,
                             AppText::StepInsertMiddleClick, AppText::StepInsertRightClick};
    for (QToolButton* insert : {btn_insert_before, btn_insert_after})
        for (QAction* action : insert->menu()->actions())
            action->setText(appText(kinds[action->data().toInt()]));
    refresh();
}

void MacroStepEditor::loadLibrary(const DeviceSQLite* db, int64_t macroId)
{
    library_.clear();
    place_.reset();
    std::vector<MacroInfo> macros;
    if (db)
        db->queryAllMacroData(macros);
    for (const MacroInfo& macro : macros) {
        if (macro.macroId == macroId)
            place_ = library_.size();
        db->queryMacroRecord(macro.macroId, library_.emplace_back());
    }
    refresh();
}

void MacroStepEditor::saved(const DeviceSQLite* db, int64_t macroId)
{
    history_.clear();
    loadLibrary(db, macroId);
}

void MacroStepEditor::setRecording(bool recording)
{
    recording_ = recording;
    closeDelayField();
    if (recording) {
        history_.clear();  // a recording starts the list anew
        list->clearSelection();
    }
    updateTools();
}

MacroStoreFigure::Figure MacroStepEditor::figure() const
{
    return MacroStoreFigure::figure(library_, place_, recorder_.steps());
}

std::optional<QString> MacroStepEditor::saveRefusal() const
{
    const std::vector<Fault> all = faults(recorder_.steps());
    for (std::size_t row = 0; row < all.size(); ++row) {
        switch (all[row]) {
        case Fault::NeverReleased: return appText(AppText::StepSaveNeverReleased).arg(row + 1);
        case Fault::NeverPressed: return appText(AppText::StepSaveNeverPressed).arg(row + 1);
        case Fault::DelayTooLong: return appText(AppText::StepSaveDelayTooLong).arg(row + 1);
        case Fault::None: break;
        }
    }
    const MacroStoreFigure::Figure f = figure();
    if (f.macrosOver > 0)
        return appText(AppText::StepSaveTooManyMacros).arg(MacroStoreBlock::kMaxMacros);
    if (f.bytesOver > 0)
        return appText(AppText::StepSaveTooLong)
            .arg(bytes(f.macroBytes), bytes(f.roomBytes), bytes(f.macroBytes - f.roomBytes));
    if (f.recordBytesOver > 0)
        return appText(AppText::StepSaveTooManySteps)
            .arg(bytes(std::size_t(MacroStoreBlock::kRecordLimitBytes + f.recordBytesOver)),
                 bytes(std::size_t(MacroStoreBlock::kRecordLimitBytes)), bytes(std::size_t(f.recordBytesOver)));
    return std::nullopt;
}

Rows MacroStepEditor::selectedRows() const
{
    Rows rows;
    for (const QModelIndex& index : list->selectionModel()->selectedIndexes())
        rows.push_back(index.row());
    return validRows(rows, std::size_t(list->count()));
}

void MacroStepEditor::selectRows(const Rows& rows)
{
    list->clearSelection();
    for (int row : validRows(rows, std::size_t(list->count())))
        list->item(row)->setSelected(true);
    if (!rows.empty() && rows.front() < list->count())
        list->setCurrentRow(rows.front(), QItemSelectionModel::NoUpdate);
}

void MacroStepEditor::apply(Edited edited)
{
    closeDelayField();  // it would stand over another row now
    if (edited.steps == recorder_.steps())
        return;
    history_.push(recorder_.steps());
    recorder_.setSteps(std::move(edited.steps));
    pendingSelection_ = std::move(edited.selection);
    emit stepsEdited();
}

void MacroStepEditor::deleteSelected()
{
    if (!selectedRows().empty())
        apply(removeRows(recorder_.steps(), selectedRows()));
}

void MacroStepEditor::moveSelected(int delta)
{
    if (std::optional<Edited> moved = moveRows(recorder_.steps(), selectedRows(), delta))
        apply(std::move(*moved));
}

void MacroStepEditor::insert(bool after, const Steps& steps)
{
    apply(insertAt(recorder_.steps(), insertPlace(recorder_.steps(), selectedRows(), after), steps));
}

void MacroStepEditor::insertKind(int kind, bool after)
{
    switch (kind) {
    case kInsertDelay:
        insert(after, {delay(kNewDelayMs)});
        editDelay(selectedRows().empty() ? -1 : selectedRows().front());
        break;
    case kInsertKey: keyDialog->ask([this, after](int code) { insert(after, keyPress(code)); }); break;
    case kInsertLeft: insert(after, mouseClick(kLeftButton)); break;
    case kInsertMiddle: insert(after, mouseClick(kMiddleButton)); break;
    case kInsertRight: insert(after, mouseClick(kRightButton)); break;
    default: break;
    }
}

void MacroStepEditor::undo()
{
    closeDelayField();
    if (std::optional<Steps> back = history_.undo(recorder_.steps())) {
        recorder_.setSteps(std::move(*back));
        pendingSelection_ = Rows{};
        emit stepsEdited();
    }
}

void MacroStepEditor::redo()
{
    closeDelayField();
    if (std::optional<Steps> again = history_.redo(recorder_.steps())) {
        recorder_.setSteps(std::move(*again));
        pendingSelection_ = Rows{};
        emit stepsEdited();
    }
}

void MacroStepEditor::editDelay(int row)
{
    const Steps& steps = recorder_.steps();
    if (recording_ || row < 0 || std::size_t(row) >= steps.size() || steps[std::size_t(row)].type != kDelayStep)
        return;
    closeDelayField();
    delayRow_ = row;
    delayField = new QLineEdit(list->viewport());
    delayField->setObjectName(QStringLiteral("delayField"));
    delayField->setGeometry(list->visualItemRect(list->item(row)));
    delayField->setText(QString::number(steps[std::size_t(row)].value));
    delayField->selectAll();
    delayField->installEventFilter(this);
    connect(delayField, &QLineEdit::returnPressed, this, [this] { commitDelay(); });
    delayField->show();
    delayField->setFocus();
}

void MacroStepEditor::commitDelay()
{
    if (!delayField)
        return;
    const std::optional<int64_t> ms = parseDelay(delayField->text());
    if (!ms) {
        emit message(appText(AppText::StepDelayRange));
        delayField->selectAll();
        return;
    }
    const int row = delayRow_;
    closeDelayField();
    emit message(QString());
    apply(setDelay(recorder_.steps(), row, *ms));
}

void MacroStepEditor::closeDelayField()
{
    if (!delayField)
        return;
    delayField->removeEventFilter(this);
    delayField->deleteLater();
    delayField = nullptr;
    delayRow_ = -1;
    list->setFocus();
}

bool MacroStepEditor::eventFilter(QObject* watched, QEvent* event)
{
    if (delayField && watched == delayField) {
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            closeDelayField();
            return true;
        }
        if (event->type() == QEvent::FocusOut) {
            // A click elsewhere keeps a good value and drops any other.
            if (parseDelay(delayField->text()))
                commitDelay();
            else
                closeDelayField();
        }
        return false;
    }
    if (watched == list->viewport() && event->type() == QEvent::Drop)
        return dropSteps(static_cast<QDropEvent*>(event));
    return QWidget::eventFilter(watched, event);
}

bool MacroStepEditor::dropSteps(QDropEvent* drop)
{
    // The list only lends its dragging: the move is a step edit, and the
    // list must not move or remove rows of its own.
    if (drop->source() != list) {
        drop->ignore();
        return true;
    }
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    dropAt(drop->position().toPoint());
    return true;
}

void MacroStepEditor::dropAt(const QPoint& at)
{
    if (recording_)
        return;
    int target = list->count();
    if (QListWidgetItem* item = list->itemAt(at)) {
        const QRect rect = list->visualItemRect(item);
        target = list->row(item) + (at.y() > rect.center().y() ? 1 : 0);
    }
    if (std::optional<Edited> moved = moveRowsTo(recorder_.steps(), selectedRows(), target))
        apply(std::move(*moved));
}

void MacroStepEditor::refresh()
{
    if (pendingSelection_) {
        selectRows(*pendingSelection_);
        pendingSelection_.reset();
    }
    markRows();
    const MacroStoreFigure::Figure f = figure();
    label_size->setText(appText(AppText::StepStoreFigure).arg(bytes(f.macroBytes), bytes(f.roomBytes)));
    Theme::setTextColor(label_size, f.fits() ? Theme::normalText() : Theme::problemText());
    updateTools();
}

void MacroStepEditor::markRows()
{
    const std::vector<Fault> all = faults(recorder_.steps());
    for (int row = 0; row < list->count() && std::size_t(row) < all.size(); ++row) {
        auto* view = qobject_cast<RecordTableItemView*>(list->itemWidget(list->item(row)));
        if (!view)
            continue;
        auto* mark = view->findChild<QLabel*>(QStringLiteral("stepMark"));
        if (!mark) {
            mark = new QLabel(view);
            mark->setObjectName(QStringLiteral("stepMark"));
            mark->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            mark->setAttribute(Qt::WA_TransparentForMouseEvents);
            mark->setGeometry(view->width() / 2, 0, view->width() / 2 - 8, view->height());
            Theme::setTextColor(mark, Theme::problemText());
        }
        mark->setText(faultWord(all[std::size_t(row)]));
        mark->setVisible(all[std::size_t(row)] != Fault::None);
    }
}

void MacroStepEditor::updateTools()
{
    const bool editing = !recording_;
    const bool selected = editing && !selectedRows().empty();
    btn_delete->setEnabled(selected);
    btn_up->setEnabled(selected);
    btn_down->setEnabled(selected);
    btn_undo->setEnabled(editing && history_.canUndo());
    btn_redo->setEnabled(editing && history_.canRedo());
    for (QToolButton* b : {btn_text, btn_insert_before, btn_insert_after})
        b->setEnabled(editing);
}
