#include "View/control/TableView.h"

#include "Common/NotificationCenter.h"

#include <QMouseEvent>

void TableView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::RightButton && property("identifier").toString() == QLatin1String("userlightmode")) {
        const QModelIndex index = indexAt(event->position().toPoint());
        NotificationCenter::defaultCenter().post(QStringLiteral("UserLightTableViewMenu"),
                                                 index.isValid() ? index.row() : -1);
    }
    QListWidget::mouseReleaseEvent(event);
}
