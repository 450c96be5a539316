// Uploads the keyboard may hold only in part: a key table, a user light slot
// or the macro store whose sequence stopped half-way (the keyboard unplugged
// or stopped answering). They are marked from the hand-over until the
// transport says they finished, and sent again at the next connection. An
// upload the keyboard does not confirm by its sum counts as not finished, and
// the window says which one it was.
#include "View/MainController.h"

#include "Common/DataPaths.h"
#include "HIDDevice/UnfinishedUploads.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "Protocol/UploadSequences.h"
#include "Protocol/UserLightColorBlock.h"
#include "SQLite/DeviceSQLite.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"

UnfinishedUploads& MainController::unfinishedUploads()
{
    // Made on first use: the data folder is settled by then.
    if (!unfinishedUploads_)
        unfinishedUploads_ = std::make_unique<UnfinishedUploads>(DataPaths::databaseFolder() + UnfinishedUploads::kFileName);
    return *unfinishedUploads_;
}

bool MainController::submitSequence(ReportSequence sequence, TransportQueue::ReplyHandler onReply)
{
    if (!sequence.mark || !sequence.refusal.empty())
        return transport_->submit(currentTransport(), std::move(sequence), std::move(onReply));
    // Marked before the first report can go out; a sequence with no
    // transport to go to leaves the keyboard just as far behind.
    const QString store = deviceDBfile;
    const UploadMark mark = sequence.mark;
    UnfinishedUploads& marks = unfinishedUploads();
    marks.handedOver(store, mark);
    auto onEnd = [&marks, store, mark](bool finished) { marks.ended(store, mark, finished); };
    if (transport_->submit(currentTransport(), std::move(sequence), std::move(onReply), onEnd))
        return true;
    onEnd(false);
    return false;
}

void MainController::sendUnfinishedUploads()
{
    if (!deviceDB || !currentTransport())
        return;
    for (const UploadMark& mark : unfinishedUploads().marked(deviceDBfile)) {
        switch (mark.kind) {
        case UploadMark::Kind::KeyTable:
            setKeyMacroData(mark.target);
            break;
        case UploadMark::Kind::UserLightSlot: {
            // A slot shows the stored mode it was saved from, or blank colours.
            std::vector<Protocol::LedColour> leds;
            if (mark.source == 0 || storedUserLightLeds(mark.source, leds)) {
                ReportSequence colours = UploadSequences::userLightColors(mark.target, Protocol::userLightColorBlock(leds));
                colours.mark.source = mark.source;
                submitSequence(std::move(colours));
            }
            break;
        }
        case UploadMark::Kind::MacroStore:
            SaveMacroToKeyboard();
            break;
        case UploadMark::Kind::None:
            break;
        }
    }
}

bool MainController::storedUserLightLeds(int64_t mode, std::vector<Protocol::LedColour>& leds)
{
    std::vector<RGBData> rows;
    if (!deviceDB || !deviceDB->queryKeyRGB(1, mode, rows))
        return false;
    // Rows of keys this model lacks are left out.
    for (const RGBData& row : rows)
        if (const auto entry = G_KB_SuperKeyCodeMap.find(row.keyvalue); entry != G_KB_SuperKeyCodeMap.end())
            leds.push_back({entry->second.light_index, uint32_t(row.rgbvalue)});
    return true;
}

void MainController::uploadNotConfirmed(int header, int target)
{
    // The text is made when shown, so it follows a language switch.
    auto upload = [header, target]() -> QString {
        const QString profile = languageText(profileTextId(std::clamp(target, 1, 5)));
        switch (static_cast<Protocol::Command>(header)) {
        case Protocol::Command::KeyTable: return appText(AppText::UploadKeyTable).arg(profile);
        case Protocol::Command::LightMode: return appText(AppText::UploadLightMode).arg(profile);
        case Protocol::Command::SystemSet: return appText(AppText::UploadSystemSettings).arg(profile);
        case Protocol::Command::UserLightData:
            return appText(AppText::UploadUserLightSlot).arg(target - Protocol::kUserLightTargetBase);
        default: return appText(AppText::UploadMacroLibrary);
        }
    };
    const QString topic = QStringLiteral("upload-not-confirmed-%1-%2").arg(header).arg(target);
    if (!unconfirmedTopics_.contains(topic))
        unconfirmedTopics_ << topic;
    showProblem([upload] { return appText(AppText::UploadNotConfirmed).arg(upload()); }, topic);
}

void MainController::withdrawUnconfirmed()
{
    for (const QString& topic : std::as_const(unconfirmedTopics_))
        withdrawProblem(topic);
    unconfirmedTopics_.clear();
}
