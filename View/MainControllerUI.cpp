// The window's controls.
#include "View/MainController.h"

#include "Common/DeviceModel.h"
#include "Common/NotificationCenter.h"
#include "View/LanguageSwitch.h"
#include "View/control/ButtonView.h"
#include "View/control/FlippedRect.h"

#include <QApplication>

void MainController::InitUI()
{
    resize(kWindowWidth, kWindowHeight);

    imgbtn_close = new ImageButton(this);
    imgbtn_close->setObjectName(QStringLiteral("imgbtn_close"));
    imgbtn_close->setGeometry(flippedRect(kWindowHeight, 1116, 684, 24, 24));
    imgbtn_close->initControl(QStringLiteral("sys_btn_close_n"), QStringLiteral("sys_btn_close_h"));
    imgbtn_close->setToolTip(tr("Quit"));
    connect(imgbtn_close, &QAbstractButton::clicked, this, [this] { window()->close(); });

    imgbtn_min = new ImageButton(this);
    imgbtn_min->setObjectName(QStringLiteral("imgbtn_min"));
    imgbtn_min->setGeometry(flippedRect(kWindowHeight, 1080, 684, 24, 24));
    imgbtn_min->initControl(QStringLiteral("sys_btn_min_n"), QStringLiteral("sys_btn_min_h"));
    connect(imgbtn_min, &QAbstractButton::clicked, this, [this] { window()->showMinimized(); });

    imgbtn_usb = new ImageButton(this);
    imgbtn_usb->setObjectName(QStringLiteral("imgbtn_usb"));
    imgbtn_usb->setGeometry(flippedRect(kWindowHeight, 1020, 682, 28, 28));
    imgbtn_usb->initControl(QStringLiteral("sys_btn_usb_n"), QStringLiteral("sys_btn_usb_n"));
    imgbtn_usb->setToolTip(tr("No keyboard connected"));

    label_problem = new QLabel(this);
    label_problem->setObjectName(QStringLiteral("label_problem"));
    label_problem->setWordWrap(true);
    label_problem->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label_problem->setStyleSheet(QStringLiteral(
        "QLabel { background: #fff4e5; color: #3d2a00; border: 1px solid #f0c36d; border-radius: 6px; padding: 8px 12px; }"));
    label_problem->hide();
    layoutProblems();

    initKeyboardPicture();

    // Texts and the light page. The light page is the page on show until
    // the function buttons come to switch pages.
    useChineseCapableFont();
    initLanguageButton();
    initLightPage();
    initSystemPage();
    // Profile and main menu buttons.
    initMenuButtons();
    // User guide and web links.
    initLinkButtons();
    initLightTableData();
    action_ligjhtmode_tab();
    viewType = 2;
    sysset_view->setVisible(viewType == 3);
    // Macro page
    initMacroPage();
    macro_view->setVisible(viewType == 1);
    LanguageSwicth();
}

void MainController::setCurrentDevice(int curDevType)
{
    const int target = DeviceModel::keyboardTypeForDeviceType(curDevType);
    if (keyboardType == target)
        return;
    runLayoutBuilder(target);
    keyboardType = target;
}

void MainController::registerNotification()
{
    if (!menuItemObserver_)
        menuItemObserver_ = NotificationCenter::defaultCenter().addObserver(
            QStringLiteral("MenuItemMouseUpAction"), [this](const QVariant& o) { MenuItemMouseUpAction(o); }, this);
    // Custom key
    if (!customKeyObserver_)
        customKeyObserver_ = NotificationCenter::defaultCenter().addObserver(
            QStringLiteral("CustomKeyFuncMsg"), [this](const QVariant& o) { CustomKeyFuncMsg(o); }, this);
    registerMacroNotifications();
    // User light modes: clicks on the picture, the list's menu and buttons.
    registerUserLightNotifications();
    // Key menus: clicks on the picture, hovering the menus, the tool tip.
    registerKeyMenuNotifications();
}

void MainController::showProblem(const QString& message, const QString& topic)
{
    if (problemTopics_.contains(topic))
        return;
    problemTopics_.append(topic);
    problems_.append(message);
    layoutProblems();
}

void MainController::layoutProblems()
{
    // Problems met before the window was built are shown when it is.
    if (!label_problem || problems_.isEmpty())
        return;
    label_problem->setText(problems_.join(QStringLiteral("\n\n")));
    // As tall as the text needs, along the bottom edge of the window.
    const int w = kWindowWidth - 48;
    const int h = label_problem->heightForWidth(w);
    label_problem->setGeometry(flippedRect(kWindowHeight, 24, 16, w, h));
    label_problem->show();
    label_problem->raise();
}

void MainController::withdrawProblem(const QString& topic)
{
    const qsizetype at = problemTopics_.indexOf(topic);
    if (at < 0)
        return;
    problemTopics_.removeAt(at);
    problems_.removeAt(at);
    if (problems_.isEmpty() && label_problem)
        label_problem->hide();
    layoutProblems();
}
