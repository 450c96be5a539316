#include "View/PageFrame.h"

#include "View/MainController.h"
#include "View/control/FlippedRect.h"

#include <QWidget>

QWidget* PageFrame::makePageView(QWidget* parent, const QString& objectName)
{
    auto* page = new QWidget(parent);
    page->setObjectName(objectName);
    page->setAttribute(Qt::WA_StyledBackground);
    page->setStyleSheet(QStringLiteral("#%1 { background: #ffffff; border: 1px solid #e3e6ea; border-radius: 10px; }")
                            .arg(objectName));
    page->setGeometry(flippedRect(MainController::kWindowHeight, kPageX, kPageY, kPageWidth, kPageHeight));
    return page;
}
