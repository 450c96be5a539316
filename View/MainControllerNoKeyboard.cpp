// Without a keyboard the window says so where the user looks: a state over
// the page pane, "Connect your keyboard", with what stands in the way when
// the platform has said (a permission problem, say). The pages under it need
// the keyboard or its database, so they are disabled rather than left to
// change on screen and store nothing. The system page keeps what needs no
// keyboard (starting with the desktop) within reach: there the state covers
// only the key locks.
#include "View/MainController.h"

#include "Language/AppText.h"
#include "View/PageFrame.h"
#include "View/control/FlippedRect.h"
#include "View/control/Theme.h"

#include <QAbstractButton>
#include <QLabel>
#include <QVBoxLayout>

void MainController::noteKeyboardUnreachable(const QString& reason)
{
    noKeyboardReason_ = reason;
    updateNoKeyboardState();
}

void MainController::updateNoKeyboardState()
{
    const bool none = !connectedDevice().has_value();
    for (QWidget* page : {macro_view, light_view, userlight_view})
        if (page)
            page->setEnabled(!none);
    for (QAbstractButton* lock : lockSwitches)
        if (lock)
            lock->setEnabled(!none);
    if (!none && !noKeyboardPane)
        return;
    if (!noKeyboardPane)
        makeNoKeyboardPane();
    noKeyboardTitle->setText(appText(AppText::ConnectYourKeyboard));
    noKeyboardWhy->setText(noKeyboardReason_.isEmpty() ? QString()
                                                       : appText(AppText::ConnectYourKeyboardWhy).arg(noKeyboardReason_));
    noKeyboardWhy->setVisible(!noKeyboardReason_.isEmpty());
    using namespace PageFrame;
    const QRect page = flippedRect(kWindowHeight, kPageX, kPageY, kPageWidth, kPageHeight);
    noKeyboardPane->setGeometry(viewType == 3 && sysset_view ? keyLockRowsRect().translated(sysset_view->pos()) : page);
    noKeyboardPane->setVisible(none);
    noKeyboardPane->raise();
    if (label_problem)
        label_problem->raise();  // messages stay readable above it
}

void MainController::makeNoKeyboardPane()
{
    using namespace PageFrame;
    noKeyboardPane = new QWidget(this);
    noKeyboardPane->setObjectName(QStringLiteral("noKeyboardPane"));
    noKeyboardPane->setAttribute(Qt::WA_StyledBackground);
    noKeyboardPane->setStyleSheet(QStringLiteral("#noKeyboardPane { background: rgba(255, 255, 255, 232);"
                                                 " border: 1px solid #e3e6ea; border-radius: 8px; }"));
    auto* layout = new QVBoxLayout(noKeyboardPane);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->addStretch();
    noKeyboardTitle = new QLabel(noKeyboardPane);
    noKeyboardTitle->setObjectName(QStringLiteral("noKeyboardTitle"));
    noKeyboardTitle->setAlignment(Qt::AlignCenter);
    noKeyboardTitle->setWordWrap(true);
    QFont font = noKeyboardTitle->font();
    font.setPixelSize(18);
    font.setBold(true);
    noKeyboardTitle->setFont(font);
    Theme::setTextColor(noKeyboardTitle, Theme::normalText());
    noKeyboardWhy = new QLabel(noKeyboardPane);
    noKeyboardWhy->setObjectName(QStringLiteral("noKeyboardWhy"));
    noKeyboardWhy->setWordWrap(true);
    noKeyboardWhy->setTextInteractionFlags(Qt::TextSelectableByMouse);
    Theme::setTextColor(noKeyboardWhy, Theme::normalText());
    layout->addWidget(noKeyboardTitle);
    layout->addSpacing(12);
    layout->addWidget(noKeyboardWhy);
    layout->addStretch();
}
