// The active profile: the poll of the keyboard and the switch of profile.
#include "View/MainController.h"

#include "Language/Language.h"
#include "Protocol/UploadSequences.h"
#include "SQLite/DeviceSQLite.h"
#include "View/control/ButtonView.h"

#include <QAbstractButton>

void MainController::getKeyboardProfile()
{
    pollTimer_.setInterval(kPollIntervalMs);
    connect(&pollTimer_, &QTimer::timeout, this, &MainController::pollKeyboardProfile, Qt::UniqueConnection);
    pollTimer_.start();
}

void MainController::pollKeyboardProfile()
{
    // A tick waits while the last poll's reply, or what waited for it, is due.
    if (!deviceState || hidcomm_busy() || pollReplyOwed_)
        return;
    // Without a transport (just announced) nothing is handed over.
    auto onReply = [this](const TransportQueue::ExchangeResult& result) {
        inPollReply_ = true;
        // Without a reply the request's own byte 9 (0) would read as
        // profile 1: a tick without a usable reply changes nothing.
        if (result.ok()) {
            const int reported = Protocol::clampReportedProfile(result.reply[Protocol::Offset::ReplyProfile]);
            if (reported != currentProfile) {
                currentProfile = reported;
                swicthProfile(reported);
            }
        }
        inPollReply_ = false;
        // What this handler hands over goes out before the poll's closing
        // frame; what the user did meanwhile follows it, as its own call.
        QMetaObject::invokeMethod(this, [this] { runAfterPollReply(); }, Qt::QueuedConnection);
    };
    pollReplyOwed_ = submitSequence(UploadSequences::statusPoll(), std::move(onReply));
}

void MainController::afterPollReply(std::function<void()> action)
{
    if (!pollReplyOwed_ || inPollReply_) {
        action();
        return;
    }
    afterPollReply_.push_back(std::move(action));
}

void MainController::runAfterPollReply()
{
    pollReplyOwed_ = false;
    std::vector<std::function<void()>> waiting;
    waiting.swap(afterPollReply_);
    for (auto& action : waiting)
        action();
}

void MainController::pickProfile(int profileId)
{
    afterPollReply([this, profileId] {
        if (!deviceState)
            return;
        // A choice the store cannot keep is not made: the label and the
        // keyboard stay on the stored profile, and the store's watch says why.
        if (deviceDB && !deviceDB->updateConfigData(1, QStringLiteral("currentProfile"), QString::number(profileId)))
            return;
        enterProfile(profileId);
    });
}

void MainController::swicthProfile(int profileId)
{
    if (!deviceState)
        return;
    // The keyboard's own choice (the poll) is followed even when the store
    // cannot keep it: the keyboard is on that profile already.
    if (deviceDB)
        deviceDB->updateConfigData(1, QStringLiteral("currentProfile"), QString::number(profileId));
    enterProfile(profileId);
}

void MainController::enterProfile(int profileId)
{
    // A number with no name (outside 1 to 5) leaves the label as it was.
    if (const int textId = profileTextId(profileId); textId && imgbtn_profile)
        imgbtn_profile->setTitle(languageText(textId));
    currentProfile = profileId;
    loadBacklightData();
    // The keyboard holds every profile's key table already: only the picture
    // follows.
    loadKeyMacro();
    loadSystemSetData();
}
