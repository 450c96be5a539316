#pragma once
// The question asked before a change that takes something away. "Cancel"
// comes first and answers Return and Escape; only the second button acts.
// Both take the same role, so that they stand in this order whatever order
// the desktop prefers. The box deletes itself when closed.

#include "Language/Language.h"

#include <QMessageBox>
#include <QPushButton>

struct Question {
    QMessageBox* alert = nullptr;
    QPushButton* cancel = nullptr;
    QPushButton* ok = nullptr;
};

inline Question askFirst(QWidget* parent, const QString& name, const QString& text, const QString& detail,
                         const QString& okText)
{
    constexpr int kTextCancel = 622;
    auto* alert = new QMessageBox(parent);
    alert->setObjectName(name);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setWindowModality(Qt::WindowModal);
    alert->setIcon(QMessageBox::Warning);
    alert->setText(text);
    alert->setInformativeText(detail);
    QPushButton* cancel = alert->addButton(languageText(kTextCancel), QMessageBox::ActionRole);
    QPushButton* ok = alert->addButton(okText, QMessageBox::ActionRole);
    alert->setDefaultButton(cancel);
    alert->setEscapeButton(cancel);
    return {alert, cancel, ok};
}
