// Profiles that follow the application in front: the focus source of this
// session, the rules of the connected model and the system page's section
// that edits them. A rule switches through pickProfile, exactly as a choice
// in the profile menu does.
#include "View/MainController.h"

#include "FocusWatch/FocusSource.h"
#include "Language/AppText.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/LocalSQLite.h"
#include "View/AppRulesSection.h"
#include "View/CustomMenu/KeySubMenuKeyFuncViewController.h"
#include "View/MacroController.h"
#include "View/MacroWindowController.h"
#include "View/PageFrame.h"

namespace {
// The on/off switch belongs to this machine, not to a keyboard model.
const QString kRulesOwner = QString::fromLatin1(kLocalOwner);
const QString kRulesOnKey = QStringLiteral("followApplications");
constexpr int kSectionTop = 252;  // under the key locks and the autostart row
constexpr int kHoldRetryMs = 250;
}  // namespace

void MainController::initAppRules()
{
    focusSource = environment_.focusSourceFactory ? environment_.focusSourceFactory() : createFocusSource();
    connect(focusSource.get(), &FocusSource::applicationInFront, this, &MainController::applicationInFront);
    connect(transport_.get(), &TransportQueue::busyChanged, this, [this](bool busy) {
        if (!busy)
            QMetaObject::invokeMethod(this, [this] { followApplication(); }, Qt::QueuedConnection);
    });
    holdRetry_.setSingleShot(true);
    holdRetry_.setInterval(kHoldRetryMs);
    connect(&holdRetry_, &QTimer::timeout, this, &MainController::followApplication);

    appRulesSection = new AppRulesSection(sysset_view);
    appRulesSection->move(16, kSectionTop);
    connect(appRulesSection, &AppRulesSection::rulesEdited, this, &MainController::setAppRules);
    connect(appRulesSection, &AppRulesSection::followingToggled, this, &MainController::setFollowingApplications);
    const bool on = localDB && localDB->getLocalData(kRulesOwner, kRulesOnKey) == QStringLiteral("1");
    profileFollower.setEnabled(on);
    appRulesSection->setFollowing(on);
    loadAppRules();
}

void MainController::loadAppRules()
{
    if (!appRulesSection)
        return;
    AppRuleSet rules;
    const bool read = deviceDB && deviceDB->queryAppRules(rules);
    profileFollower.setRules(rules);
    appRulesSection->setRules(rules);
    appRulesSection->setState(focusSource && focusSource->available(), read);
}

void MainController::setAppRules(const AppRuleSet& rules)
{
    // A failed save shows the stored rules again, as they are.
    if (!deviceDB || !deviceDB->saveAppRules(rules))
        showProblem(appText(AppText::AppRulesSaveFailed), QStringLiteral("store"));
    loadAppRules();
}

void MainController::setFollowingApplications(bool on)
{
    const QString value = on ? QStringLiteral("1") : QStringLiteral("0");
    const bool stored = localDB
                        && (localDB->getLocalData(kRulesOwner, kRulesOnKey).isEmpty()
                                ? localDB->writeLocalData(kRulesOwner, kRulesOnKey, value)
                                : localDB->updateLocalData(kRulesOwner, kRulesOnKey, value));
    if (!stored)
        showProblem(appText(AppText::AppRulesSaveFailed), QStringLiteral("store"));
    profileFollower.setEnabled(on);
}

void MainController::applicationInFront(const QString& app, bool ownWindow)
{
    profileFollower.applicationInFront(app, ownWindow);
    if (appRulesSection)
        appRulesSection->setSeenApplications(profileFollower.seenApplications());
    followApplication();
}

bool MainController::takingInput() const
{
    const bool capturing = kbKeyFuncSubMenu && kbKeyFuncSubMenu->isVisible();
    const bool recording = macroWindow && macroWindow->controller() && macroWindow->controller()->recordIng;
    return capturing || recording;
}

void MainController::followApplication()
{
    if (!deviceState)
        return;
    using Hold = ProfileFollower::Hold;
    const Hold hold = hidcomm_busy() || pollReplyOwed_ ? Hold::Upload
                      : takingInput()                 ? Hold::InputCapture
                                                      : Hold::None;
    if (const auto profile = profileFollower.takeSwitch(currentProfile, hold)) {
        pickProfile(*profile);
        return;
    }
    // The end of an upload says so by itself; the end of a capture does not.
    if (hold == Hold::InputCapture && profileFollower.switchWaiting())
        holdRetry_.start();
}
