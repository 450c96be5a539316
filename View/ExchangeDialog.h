#pragma once
// The file dialogs of the exchange files: what each asks for, as a value,
// and the dialog that asks it.

#include <QString>

class QWidget;

struct ExchangeDialog {
    enum class Pick { ExistingFile, Folder };
    QString title;   // empty: the dialog's own title
    Pick pick = Pick::ExistingFile;
    QString suffix;  // ExistingFile: the file type offered, without the dot

    bool operator==(const ExchangeDialog&) const = default;
};

// Shows `dialog` modally over `parent`: the file: URL chosen, or empty when
// the user cancelled. A folder may be created in a folder dialog, not in a
// file dialog.
QString runExchangeDialog(QWidget* parent, const ExchangeDialog& dialog);
