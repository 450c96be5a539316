// The profile button and the main menu button with their popovers, and the
// confirmation asked before a reset.
#include "View/MainController.h"
#include "View/Question.h"

#include "Language/AppText.h"
#include "View/control/Theme.h"

#include "Language/Language.h"
#include "View/control/ButtonView.h"
#include "View/control/FlippedRect.h"
#include "View/popover/LanguagePopoverViewController.h"
#include "View/popover/MenuPopoverViewController.h"
#include "View/popover/PofilePopoverViewController.h"

#include <QMessageBox>
#include <QPushButton>

namespace {
constexpr int kMenuResetCurrent = 1002;
}  // namespace

void MainController::initMenuButtons()
{
    imgbtn_profile = new IconButton(this);
    imgbtn_profile->setObjectName(QStringLiteral("imgbtn_profile"));
    imgbtn_profile->setGeometry(flippedRect(kWindowHeight, 740, 680, 150, 32));
    imgbtn_profile->initControl(QStringLiteral("imgbtn_menu_n"), QStringLiteral("imgbtn_menu_h"));
    imgbtn_profile->setIcon(QStringLiteral("icon_menu_dropdown_n"), QStringLiteral("icon_menu_dropdown_h"),
                            QRect(30, 12, 12, 7));
    imgbtn_profile->setText(QRect(60, 8, 90, 16), QStringLiteral("Profile A"));
    connect(imgbtn_profile, &QAbstractButton::clicked, this, &MainController::action_switchprofile);

    imgbtn_menu = new QPushButton(QStringLiteral("\u2630"), this);
    imgbtn_menu->setObjectName(QStringLiteral("imgbtn_menu"));
    imgbtn_menu->setGeometry(flippedRect(kWindowHeight, 900, 680, 40, 32));
    connect(imgbtn_menu, &QAbstractButton::clicked, this, &MainController::action_menu);

    // The panel look of the pages, the hover blue under the pointer.
    const QString look = QStringLiteral(
        "QPushButton { background: #ffffff; color: #0d0d0d; border: 1px solid #e3e6ea; border-radius: 6px; }"
        "QPushButton:hover { background: #39a5ff; color: #ffffff; border-color: #39a5ff; }");
    imgbtn_menu->setStyleSheet(look);
}

void MainController::action_switchprofile()
{
    // The menus that change the keyboard open only while one is connected.
    if (!deviceState)
        return;
    closeColorPanel();
    if (!profilePopover)
        profilePopover = new PofilePopoverViewController(this);
    profilePopover->showBelow(imgbtn_profile, true);
}

void MainController::action_menu()
{
    if (!deviceState)
        return;
    closeColorPanel();
    if (!menuPopover)
        menuPopover = new MenuPopoverViewController(this);
    menuPopover->showBelow(imgbtn_menu);
}

void MainController::closePopovers()
{
    for (QWidget* popover : std::initializer_list<QWidget*>{profilePopover, languagePopover, menuPopover})
        if (popover)
            popover->hide();
}

void MainController::askToReset(int msgId)
{
    const bool current = msgId == kMenuResetCurrent;
    // The question names what goes back and what is lost.
    const QString profile = languageText(profileTextId(currentProfile));
    const auto [alert, cancel, ok] = askFirst(
        window(), QStringLiteral("resetAlert"),
        current ? appText(AppText::ResetProfileQuestion).arg(profile) : appText(AppText::ResetAllQuestion),
        appText(current ? AppText::ResetProfileLoses : AppText::ResetAllLoses),
        current ? appText(AppText::ResetProfileButton).arg(profile) : appText(AppText::ResetAllButton));
    cancel->setObjectName(QStringLiteral("resetAlertCancel"));
    ok->setObjectName(QStringLiteral("resetAlertOK"));
    // The question stands out as a panel of its own, its heading in bold;
    // the button that deletes is red, as destructive buttons are.
    alert->setStyleSheet(QStringLiteral(
        "QMessageBox { background: #ffffff; border: 1px solid #e3e6ea; }"
        "QLabel#qt_msgbox_label { font-weight: bold; }"
        "QLabel#qt_msgbox_informativelabel { min-width: 280px; }"
        "QPushButton#resetAlertOK { background: %1; color: white; border: none; border-radius: 4px;"
        " padding: 5px 14px; }"
        "QPushButton#resetAlertOK:hover { background: %2; }").arg(Theme::destructive().name(),
                                                                   Theme::destructive().darker(115).name()));
    connect(ok, &QAbstractButton::clicked, this, [this, current] {
        afterPollReply([this, current] { current ? resetCurrent() : resetAllData(); });
    });
    resetAlert = alert;
    alert->open();
}
