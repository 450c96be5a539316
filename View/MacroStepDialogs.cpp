#include "View/MacroStepDialogs.h"

#include "Common/InputKeyCodes.h"
#include "Common/MacroStepText.h"
#include "Language/AppText.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/control/Theme.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QHBoxLayout* buttonRow(QVBoxLayout* layout, std::initializer_list<QPushButton*> buttons)
{
    auto* row = new QHBoxLayout;
    row->addStretch();
    for (QPushButton* button : buttons)
        row->addWidget(button);
    layout->addLayout(row);
    return row;
}

}  // namespace

MacroKeyDialog::MacroKeyDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("MacroKeyDialog"));
    setWindowModality(Qt::WindowModal);
    auto* layout = new QVBoxLayout(this);
    hint_ = new QLabel(this);
    keyList = new QComboBox(this);
    keyList->setObjectName(QStringLiteral("keyList"));
    keyList->installEventFilter(this);
    layout->addWidget(hint_);
    layout->addWidget(keyList);
    btn_insert = new QPushButton(this);
    cancel_ = new QPushButton(this);
    btn_insert->setAutoDefault(false);
    cancel_->setAutoDefault(false);
    buttonRow(layout, {cancel_, btn_insert});
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
    connect(btn_insert, &QPushButton::clicked, this, [this] {
        accept();
        if (chosen_ && keyList->currentIndex() >= 0)
            chosen_(keyList->currentData().toInt());
    });
}

void MacroKeyDialog::retranslate()
{
    setWindowTitle(appText(AppText::StepKeyDialogTitle));
    hint_->setText(appText(AppText::StepKeyDialogHint));
    btn_insert->setText(appText(AppText::StepKeyDialogInsert));
    cancel_->setText(appText(AppText::StepDialogCancel));
}

void MacroKeyDialog::ask(std::function<void(int keyCode)> chosen)
{
    chosen_ = std::move(chosen);
    retranslate();
    // The model may have changed since the last time.
    keyList->clear();
    for (const auto& [code, key] : G_KB_SuperKeyCodeMap)
        keyList->addItem(key.full_name, code);
    QDialog::show();
    keyList->setFocus();
}

bool MacroKeyDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const std::optional<int> usage = hidUsageFromNativeScanCode(key->nativeScanCode());
        const int row = usage ? keyList->findData(*usage) : -1;
        if (key->key() != Qt::Key_Escape && row >= 0) {
            keyList->setCurrentIndex(row);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

MacroTextDialog::MacroTextDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("MacroTextDialog"));
    setWindowModality(Qt::WindowModal);
    resize(420, 360);
    auto* layout = new QVBoxLayout(this);
    hint_ = new QLabel(this);
    hint_->setWordWrap(true);
    textView = new QPlainTextEdit(this);
    textView->setObjectName(QStringLiteral("textView"));
    textView->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    label_problem = new QLabel(this);
    label_problem->setWordWrap(true);
    Theme::setTextColor(label_problem, Theme::problemText());
    for (QWidget* w : std::initializer_list<QWidget*>{hint_, textView, label_problem})
        layout->addWidget(w);
    btn_copy = new QPushButton(this);
    btn_apply = new QPushButton(this);
    cancel_ = new QPushButton(this);
    buttonRow(layout, {btn_copy, cancel_, btn_apply});
    connect(btn_copy, &QPushButton::clicked, this,
            [this] { QApplication::clipboard()->setText(textView->toPlainText()); });
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
    connect(btn_apply, &QPushButton::clicked, this, [this] { tryApply(); });
}

void MacroTextDialog::showSteps(const MacroSteps::Steps& steps, std::function<void(MacroSteps::Steps)> apply)
{
    apply_ = std::move(apply);
    setWindowTitle(appText(AppText::StepTextDialogTitle));
    hint_->setText(appText(AppText::StepTextDialogHint));
    btn_copy->setText(appText(AppText::StepTextCopy));
    btn_apply->setText(appText(AppText::StepTextApply));
    cancel_->setText(appText(AppText::StepDialogCancel));
    textView->setPlainText(MacroStepText::write(steps));
    label_problem->clear();
    QDialog::show();
}

void MacroTextDialog::tryApply()
{
    auto read = MacroStepText::read(textView->toPlainText());
    if (const auto* bad = std::get_if<MacroStepText::BadLine>(&read)) {
        label_problem->setText(appText(AppText::StepTextBadLine).arg(bad->line).arg(bad->text.trimmed()));
        return;
    }
    accept();
    if (apply_)
        apply_(std::get<MacroSteps::Steps>(std::move(read)));
}
