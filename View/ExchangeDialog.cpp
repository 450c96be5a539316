#include "View/ExchangeDialog.h"

#include <QFileDialog>
#include <QUrl>

QString runExchangeDialog(QWidget* parent, const ExchangeDialog& dialog)
{
    QFileDialog panel(parent, dialog.title);
    if (dialog.pick == ExchangeDialog::Pick::NewFile) {
        // A save dialog asks before it replaces a file.
        panel.setAcceptMode(QFileDialog::AcceptSave);
        panel.setFileMode(QFileDialog::AnyFile);
        panel.setNameFilter(QStringLiteral("*.%1").arg(dialog.suffix));
        panel.setDefaultSuffix(dialog.suffix);
        panel.selectFile(dialog.name);
    } else {
        panel.setFileMode(QFileDialog::ExistingFile);
        // Read-only: no folder is made while a file is picked.
        panel.setOption(QFileDialog::ReadOnly);
        panel.setNameFilter(QStringLiteral("*.%1").arg(dialog.suffix));
    }
    if (panel.exec() != QDialog::Accepted || panel.selectedUrls().isEmpty())
        return {};
    return panel.selectedUrls().constFirst().toString(QUrl::FullyEncoded);
}
