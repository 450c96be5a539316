#include "View/RestoreDialog.h"

#include "Language/AppText.h"
#include "Language/Language.h"
#include "View/control/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int kTextCancel = 622;
}  // namespace

RestoreDialog::RestoreDialog(const std::vector<Entry>& entries, QWidget* parent) : QDialog(parent), entries_(entries)
{
    setObjectName(QStringLiteral("restoreDialog"));
    setWindowTitle(appText(AppText::RestoreTitle));
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    setMinimumSize(480, 380);
    setStyleSheet(QStringLiteral("QDialog { background: %1; }"
                                 "QListWidget { border: 1px solid %2; color: %3; }"
                                 "QListWidget::item { padding: 6px 8px; border-bottom: 1px solid %2; }"
                                 "QListWidget::item:selected { background: %4; color: white; }")
                      .arg(Theme::panel().name(), Theme::panelBorder().name(), Theme::normalText().name(),
                           Theme::hoverBlue().name()));

    auto* title = new QLabel(appText(AppText::RestoreTitle), this);
    title->setStyleSheet(QStringLiteral("font-weight: bold;"));
    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("restoreList"));
    for (const Entry& entry : entries_) {
        auto* item = new QListWidgetItem(entry.when + QStringLiteral("  \u00b7  ") + entry.headline + '\n' + entry.summary,
                                         list_);
        if (!entry.readable)
            item->setFlags(item->flags() & ~(Qt::ItemIsSelectable | Qt::ItemIsEnabled));
    }

    auto* cancel = new QPushButton(languageText(kTextCancel), this);
    cancel->setObjectName(QStringLiteral("restoreCancel"));
    restore_ = new QPushButton(appText(AppText::RestoreButton), this);
    restore_->setObjectName(QStringLiteral("restoreOK"));
    restore_->setEnabled(false);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(restore_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(list_);
    layout->addLayout(buttons);

    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(restore_, &QPushButton::clicked, this, &RestoreDialog::choose);
    // Only a row the user picked restores, not the one focus lands on.
    connect(list_, &QListWidget::itemSelectionChanged, this,
            [this] { restore_->setEnabled(!list_->selectedItems().isEmpty()); });
    connect(list_, &QListWidget::itemDoubleClicked, this, &RestoreDialog::choose);
}

void RestoreDialog::choose()
{
    const QList<QListWidgetItem*> picked = list_->selectedItems();
    if (picked.isEmpty())
        return;
    const int row = list_->row(picked.first());
    const Entry entry = entries_[std::size_t(row)];
    accept();
    emit chosen(entry.path, entry.when);
}
