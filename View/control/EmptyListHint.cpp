#include "View/control/EmptyListHint.h"

#include "View/control/Theme.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QEvent>
#include <QListWidget>

EmptyListHint::EmptyListHint(QListWidget* list) : QLabel(list->viewport()), list_(list)
{
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    // Clicks, the right click included, belong to the list beneath.
    setAttribute(Qt::WA_TransparentForMouseEvents);
    // The list's style sheet and item font would reach the note: it takes
    // the window's font and the grey of what cannot be used yet instead.
    setFont(QApplication::font());
    setStyleSheet(QStringLiteral("QLabel { color: %1; background: transparent; }").arg(Theme::disabledText().name()));
    list->viewport()->installEventFilter(this);
    QAbstractItemModel* model = list->model();
    connect(model, &QAbstractItemModel::rowsInserted, this, &EmptyListHint::follow);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &EmptyListHint::follow);
    connect(model, &QAbstractItemModel::modelReset, this, &EmptyListHint::follow);
    follow();
}

bool EmptyListHint::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        follow();
    return QLabel::eventFilter(watched, event);
}

void EmptyListHint::follow()
{
    const QRect area = list_->viewport()->rect();
    setGeometry(area.adjusted(6, 0, -6, 0));
    setVisible(list_->count() == 0);
}
