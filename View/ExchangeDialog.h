#pragma once
// The file dialogs of the exchange files: what each asks for, as a value,
// and the dialog that asks it.

#include <QString>

class QWidget;

struct ExchangeDialog {
    // NewFile: a file to write, offered as `name`; choosing a file that
    // exists asks before it is replaced.
    enum class Pick { ExistingFile, NewFile };
    QString title;   // empty: the dialog's own title
    Pick pick = Pick::ExistingFile;
    QString suffix;  // ExistingFile and NewFile: the file type, without the dot
    QString name;    // NewFile: the name offered

    bool operator==(const ExchangeDialog&) const = default;
};

// Shows `dialog` modally over `parent`: the file: URL chosen, or empty when
// the user cancelled. A folder may be created in a folder dialog, not in a
// file dialog.
QString runExchangeDialog(QWidget* parent, const ExchangeDialog& dialog);
