// When painting may happen: only with a keyboard connected, on the picture of
// that keyboard's model, and on a mode the list holds. The user light tab
// says why when it may not, so a click that paints nothing is never silent.
#include "View/MainController.h"

#include "Common/DeviceModel.h"
#include "Common/Globals.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "View/PageFrame.h"
#include "View/control/Theme.h"

#include <QLabel>
#include <QListWidget>

namespace {
constexpr int kTextAddLight = 573;
constexpr int kNoticeHeight = 96;
}  // namespace

// A 61-key keyboard may be the metal-case one, whose picture the user picks
// in the model list: both 61-key pictures fit it, only the 68-key one fits
// the 68-key keyboard.
bool MainController::showsConnectedModel() const
{
    const bool shows68k = DeviceModel::deviceTypeForKeyboardType(keyboardType) == DeviceModel::kDeviceType68k;
    return deviceState && shows68k == (g_device_type == DeviceModel::kDeviceType68k);
}

QString MainController::userLightBlocker() const
{
    if (!deviceState || !deviceDB)
        return appText(AppText::ConnectYourKeyboard);
    if (!showsConnectedModel())
        return appText(AppText::UserLightOtherModel).arg(deviceName());
    if (userLightRowOf(currentUserLightMode) < 0)
        return appText(AppText::UserLightAddFirst).arg(languageText(kTextAddLight));
    return {};
}

bool MainController::paintingAllowed()
{
    updateUserLightNotice();
    return userLightBlocker().isEmpty();
}

// A note at the foot of the tab while painting is off; the list stays in
// reach above it.
void MainController::updateUserLightNotice()
{
    if (!userlight_view)
        return;
    if (!userLightNotice) {
        userLightNotice = new QLabel(userlight_view);
        userLightNotice->setObjectName(QStringLiteral("userLightNotice"));
        userLightNotice->setWordWrap(true);
        userLightNotice->setAlignment(Qt::AlignCenter);
        Theme::setTextColor(userLightNotice, Theme::normalText());
        userLightNotice->setStyleSheet(QStringLiteral("QLabel { background: #fff6e0; border-radius: 6px; padding: 6px; }"));
    }
    const QString blocker = userLightBlocker();
    // An empty list has its own hint; the note speaks of the keyboard only.
    const bool emptyList = deviceState && showsConnectedModel() && userlightmode_datas.isEmpty();
    userLightNotice->setText(blocker);
    userLightNotice->setGeometry(8, userlight_view->height() - kNoticeHeight - 8, userlight_view->width() - 16,
                                 kNoticeHeight);
    userLightNotice->setVisible(!blocker.isEmpty() && !emptyList);
    userLightNotice->raise();
}
