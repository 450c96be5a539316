#include "View/StatusMenu.h"

#include "Common/NotificationCenter.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "View/MainController.h"

#include <QActionGroup>
#include <QMenu>

StatusMenu::StatusMenu(const MainController* controller, QObject* parent)
    : QObject(parent), controller_(controller), menu_(std::make_unique<QMenu>())
{
    menu_->setObjectName(QStringLiteral("statusMenu"));
    showAction = menu_->addAction(QString());
    connect(showAction, &QAction::triggered, this, &StatusMenu::showRequested);
    menu_->addSeparator();
    auto* profiles = new QActionGroup(menu_.get());
    for (int i = 0; i < int(profileActions.size()); ++i) {
        QAction* action = menu_->addAction(QString());
        action->setCheckable(true);
        profiles->addAction(action);
        connect(action, &QAction::triggered, this, [this, i] { chooseProfile(i + 1); });
        profileActions[i] = action;
    }
    menu_->addSeparator();
    quitAction = menu_->addAction(QString());
    connect(quitAction, &QAction::triggered, this, &StatusMenu::quitRequested);
    connect(menu_.get(), &QMenu::aboutToShow, this, &StatusMenu::refresh);
    refresh();
}

StatusMenu::~StatusMenu() = default;

void StatusMenu::refresh()
{
    showAction->setText(appText(AppText::ShowWindow));
    quitAction->setText(appText(AppText::Quit));
    const bool connected = controller_ && controller_->deviceState;
    for (int i = 0; i < int(profileActions.size()); ++i) {
        profileActions[i]->setText(languageText(profileTextId(i + 1)));
        profileActions[i]->setEnabled(connected);
        profileActions[i]->setChecked(connected && controller_->currentProfile == i + 1);
    }
}

void StatusMenu::chooseProfile(int profile)
{
    NotificationCenter::defaultCenter().post(QStringLiteral("MenuItemMouseUpAction"),
                                             QVariantMap{{QStringLiteral("menuid"), profile}});
}
