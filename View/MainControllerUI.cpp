// The window's controls.
#include "View/MainController.h"

#include "Common/DeviceModel.h"
#include "Common/NotificationCenter.h"
#include "View/LanguageSwitch.h"
#include "View/control/ButtonView.h"
#include "View/control/FlippedRect.h"
#include "View/control/MessagePanel.h"

#include <QApplication>

void MainController::InitUI()
{
    resize(kWindowWidth, kWindowHeight);
    initTitleButtons();

    label_problem = new MessagePanel(this);

    useChineseCapableFont();
    initLanguageButton();
    // Profile and main menu buttons.
    initMenuButtons();
    // User guide and web links.
    initLinkButtons();
    initModelList();
    initFuncButtons();
    initKeyboardPicture();

    // The pages share one place at the right; the key page shows first.
    initMacroPage();
    initLightPage();
    initLightTableData();
    action_ligjhtmode_tab();
    initSystemPage();
    initAppRules();
    light_view->hide();
    userlight_view->hide();
    sysset_view->hide();
    macro_view->show();
    viewType = 1;
    LanguageSwicth();
    // On top of everything, once there is something to say.
    layoutProblems();
}

void MainController::initTitleButtons()
{
    const struct {
        ImageButton* MainController::*field;
        const char* name;
        const char* normal;
        const char* hover;
        QRect frame;
    } buttons[] = {
        {&MainController::imgbtn_close, "imgbtn_close", "sys_btn_close_n", "sys_btn_close_h", {1116, 684, 24, 24}},
        {&MainController::imgbtn_min, "imgbtn_min", "sys_btn_min_n", "sys_btn_min_h", {1080, 684, 24, 24}},
        {&MainController::imgbtn_usb, "imgbtn_usb", "sys_btn_usb_n", "sys_btn_usb_n", {1022, 682, 28, 28}},
        {&MainController::imgbtn_nofity, "imgbtn_nofity", "sys_btn_nofity_n", "sys_btn_nofity_n", {988, 684, 24, 24}},
    };
    for (const auto& b : buttons)
        this->*b.field = addImageButton(b.name, QString::fromLatin1(b.normal), QString::fromLatin1(b.hover), b.frame);
    connect(imgbtn_close, &QAbstractButton::clicked, this, &MainController::action_closewindow);
    connect(imgbtn_min, &QAbstractButton::clicked, this, &MainController::action_minwindow);
    // Their tool tips come with every other text, from LanguageSwicth.
}

ImageButton* MainController::addImageButton(const char* name, const QString& normal, const QString& hover,
                                            const QRect& frame)
{
    auto* button = new ImageButton(this);
    button->setObjectName(QString::fromLatin1(name));
    button->setGeometry(flippedRect(kWindowHeight, frame.x(), frame.y(), frame.width(), frame.height()));
    button->initControl(normal, hover);
    return button;
}

void MainController::action_closewindow() { window()->close(); }
void MainController::action_minwindow() { window()->showMinimized(); }

void MainController::setCurrentDevice(int curDevType)
{
    const int target = DeviceModel::keyboardTypeForDeviceType(curDevType);
    if (keyboardType == target)
        return;
    runLayoutBuilder(target);
    setDeviceListIconRect(target, modelListButton(target));
    keyboardType = target;
    updateUserLightNotice();
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
    showProblem([message] { return message; }, topic);
}

void MainController::showProblem(std::function<QString()> text, const QString& topic)
{
    const bool pending = std::any_of(pendingProblems_.begin(), pendingProblems_.end(),
                                     [&](const auto& problem) { return problem.first == topic; });
    if (!pending)
        pendingProblems_.emplace_back(topic, std::move(text));
    layoutProblems();
}

void MainController::layoutProblems()
{
    // Problems met before the window was built are shown when it is.
    if (!label_problem)
        return;
    // The band below the page buttons and the keyboard picture, the whole
    // width of the window.
    label_problem->place(flippedRect(kWindowHeight, 24, 6, kWindowWidth - 48, 88));
    for (auto& [topic, text] : pendingProblems_)
        label_problem->add(topic, std::move(text));
    pendingProblems_.clear();
}

void MainController::withdrawProblem(const QString& topic)
{
    std::erase_if(pendingProblems_, [&](const auto& problem) { return problem.first == topic; });
    if (label_problem)
        label_problem->remove(topic);
}
