#pragma once
// A short grey note in the middle of a list that has no rows, saying how to
// make the first one; it hides itself as soon as a row comes and shows again
// when the last one goes.

#include <QLabel>

class QListWidget;

class EmptyListHint : public QLabel {
    Q_OBJECT
public:
    explicit EmptyListHint(QListWidget* list);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow();
    QListWidget* list_;
};
