// The active profile: the poll of the keyboard and the switch of profile.
#include "View/MainController.h"

#include "Protocol/UploadSequences.h"
#include "SQLite/DeviceSQLite.h"

void MainController::getKeyboardProfile()
{
    pollTimer_.setInterval(kPollIntervalMs);
    connect(&pollTimer_, &QTimer::timeout, this, &MainController::pollKeyboardProfile, Qt::UniqueConnection);
    pollTimer_.start();
}

void MainController::pollKeyboardProfile()
{
    if (!deviceState || hidcomm_busy)
        return;
    // Without a transport (just announced) nothing is handed over.
    submitSequence(UploadSequences::statusPoll(), [this](const TransportQueue::ExchangeResult& result) {
        // Without a reply the request's own byte 9 (0) would read as
        // profile 1: a tick without a usable reply changes nothing.
        if (!result.sent || !result.ok)
            return;
        const int reported = Protocol::clampReportedProfile(result.reply[Protocol::Offset::ReplyProfile]);
        if (reported != currentProfile) {
            currentProfile = reported;
            swicthProfile(reported);
        }
    });
}

void MainController::swicthProfile(int profileId)
{
    if (!deviceState)
        return;
    if (deviceDB)
        deviceDB->updateConfigData(1, QStringLiteral("currentProfile"), QString::number(profileId));
    currentProfile = profileId;
    loadBacklightData();
}
