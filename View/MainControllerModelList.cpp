// The model list at the left edge: it shows another model's layout and
// nothing else. The device, its database and `g_device_type` stay as they
// are, so a connected keyboard stays connected while another picture shows.
#include "View/MainController.h"

#include "Common/DeviceModel.h"
#include "Common/Globals.h"
#include "View/KeyboardLayout/KeyboardLayouts.h"
#include "View/ModelList.h"
#include "View/control/ButtonView.h"
#include "View/control/FlippedRect.h"
#include "View/control/KeyboardView.h"
#include "View/control/ViewAnimation.h"

#include <QAbstractAnimation>

using ModelList::Slot;

namespace {

QRect windowFrame(Slot slot)
{
    const QRect r = ModelList::slotFrame(slot);
    return flippedRect(MainController::kWindowHeight, r.x(), r.y(), r.width(), r.height());
}

}  // namespace

void MainController::initModelList()
{
    const struct {
        ImageButton* MainController::*field;
        const char* name;
        const char* image;
        void (MainController::*action)();
    } buttons[] = {
        {&MainController::device_select_up, "device_select_up", "tab_kb_68k", &MainController::action_device_select_up},
        {&MainController::device_select_current, "device_select_current", "tab_kb_61k",
         &MainController::action_device_select_current},
        {&MainController::device_select_down, "device_select_down", "tab_kb_61k_cnc",
         &MainController::action_device_select_down},
    };
    for (int model = 0; model < 3; ++model) {
        const QString image = QString::fromLatin1(buttons[model].image);
        ImageButton* button = addImageButton(buttons[model].name, image, image,
                                             ModelList::slotFrame(ModelList::slotOf(model, keyboardType)));
        connect(button, &QAbstractButton::clicked, this, buttons[model].action);
        this->*buttons[model].field = button;
    }

    imgbtn_dev_up = addImageButton("imgbtn_dev_up", QStringLiteral("btn_dev_up_n"), QStringLiteral("btn_dev_up_h"),
                                   QRect(68, 588, 32, 24));
    connect(imgbtn_dev_up, &QAbstractButton::clicked, this, &MainController::action_device_toup);
    imgbtn_dev_down = addImageButton("imgbtn_dev_down", QStringLiteral("btn_dev_down_n"),
                                     QStringLiteral("btn_dev_down_h"), QRect(68, 100, 32, 24));
    connect(imgbtn_dev_down, &QAbstractButton::clicked, this, &MainController::action_device_todown);
}

ImageButton* MainController::modelListButton(int keyboardTypeOfButton) const
{
    switch (keyboardTypeOfButton) {
    case 0: return device_select_up;
    case 2: return device_select_down;
    default: return device_select_current;
    }
}

void MainController::showModel(int newKeyboardType)
{
    closeColorPanel();
    // A menu opened for a key of the picture on show has no key in the next.
    hideFloatingWindows();
    const int deviceType = DeviceModel::deviceTypeForKeyboardType(newKeyboardType);
    setCurrentDevice(deviceType);
    // The connected model's picture shows its assignments again.
    if (deviceState && deviceType == g_device_type)
        loadKeyMacro();
}

void MainController::action_device_select_up() { showModel(0); }
void MainController::action_device_select_current() { showModel(1); }
void MainController::action_device_select_down() { showModel(2); }
void MainController::action_device_toup() { showModel(ModelList::after(keyboardType)); }
void MainController::action_device_todown() { showModel(ModelList::before(keyboardType)); }

QString MainController::getNewAnimationImage(int newkb_type)
{
    const KeyboardModelLayout& model = keyboardModelForKeyboardType(newkb_type);
    return casePictureForDigit(model, storedCaseDigit(model));
}

QString MainController::getOldAnimationImage() { return getNewAnimationImage(keyboardType); }

void MainController::setDeviceListIconRect(int newkb_type, QAbstractButton* dev_btn)
{
    const auto turn = ModelList::turnTo(keyboardType, newkb_type);
    if (!turn || !dev_btn)
        return;
    if (orvane_keyboardctrl)
        orvane_keyboardctrl->animationMoveKBView(getNewAnimationImage(newkb_type), getOldAnimationImage(),
                                                 turn->slideType);
    // A turn during a running one starts from the slots' fixed frames.
    for (const ModelList::Move& move : turn->moves) {
        QPointer<QAbstractAnimation>& running = modelListMoves_[size_t(move.model)];
        if (running)
            running->stop();  // deletes itself
        ImageButton* button = modelListButton(move.model);
        button->setGeometry(windowFrame(move.from));
        running = startAnimation(button, windowFrame(move.from), windowFrame(move.to));
        if (!running)
            button->setGeometry(windowFrame(move.to));
    }
}
