#pragma once
// A list whose right mouse-up, in the list "userlightmode", asks for the
// light menu: it posts "UserLightTableViewMenu" with the row under the
// pointer (-1 beside the rows) before the usual handling.

#include <QListWidget>

class TableView : public QListWidget {
    Q_OBJECT
public:
    using QListWidget::QListWidget;

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
};
