#pragma once
// The list of restore points of the keyboard connected, newest first: one
// row each with when it was saved, what it was saved before, and what it
// holds. "Restore" (or a double click) hands the chosen one on; the question
// that follows is the controller's. Knows nothing of the stores.

#include <QDialog>

#include <vector>

class QListWidget;
class QPushButton;

class RestoreDialog : public QDialog {
    Q_OBJECT
public:
    struct Entry {
        QString path;
        QString when;      // as shown, also in the question
        QString headline;  // what it was saved before
        QString summary;   // what it holds, or why it cannot be read
        bool readable = true;
    };

    RestoreDialog(const std::vector<Entry>& entries, QWidget* parent);

signals:
    void chosen(const QString& path, const QString& when);

private:
    void choose();
    std::vector<Entry> entries_;
    QListWidget* list_ = nullptr;
    QPushButton* restore_ = nullptr;
};
