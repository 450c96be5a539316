// Restore points: the device database copied aside before a change that
// takes settings away, Undo on the result line of such a change, and the
// main menu's list of them. A restore puts a copy back whole and sends the
// keyboard everything it holds, so keyboard and window agree again.
#include "View/MainController.h"
#include "View/Question.h"

#include "Common/OutputLine.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "Protocol/UploadSequences.h"
#include "Protocol/UserLightColorBlock.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/Snapshot.h"
#include "View/RestoreDialog.h"

#include <QDir>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

namespace {

constexpr int kProfiles = 5;
constexpr int kSavedSlots = 5;  // the slots the light menu saves to

struct Kind {
    const char* what;
    AppText text;
};
constexpr Kind kKinds[] = {
    {SnapshotKind::kResetCurrent, AppText::SnapshotResetCurrent},
    {SnapshotKind::kResetAll, AppText::SnapshotResetAll},
    {SnapshotKind::kImportKeys, AppText::SnapshotImportKeys},
    {SnapshotKind::kImportLight, AppText::SnapshotImportLight},
    {SnapshotKind::kDeleteMacro, AppText::SnapshotDeleteMacro},
    {SnapshotKind::kDeleteLight, AppText::SnapshotDeleteLight},
    {SnapshotKind::kBeforeRestore, AppText::SnapshotBeforeRestore},
};

QString headlineOf(const QString& what)
{
    for (const Kind& kind : kKinds)
        if (what == QLatin1String(kind.what))
            return appText(kind.text);
    return appText(AppText::SnapshotOther).arg(what);
}

QString whenOf(const QDateTime& taken)
{
    return taken.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString counted(int n, AppText one, AppText many)
{
    return appText(n == 1 ? one : many).arg(n);
}

QString summaryOf(const Snapshots::Contents& c)
{
    return QStringList{counted(c.profiles, AppText::SnapshotProfilesOne, AppText::SnapshotProfilesMany),
                       counted(c.macros, AppText::SnapshotMacrosOne, AppText::SnapshotMacrosMany),
                       counted(c.lights, AppText::SnapshotLightsOne, AppText::SnapshotLightsMany)}
        .join(QStringLiteral("  \u00b7  "));
}

QString slotKey(int slot)
{
    return QStringLiteral("UserLight%1").arg(slot);
}

}  // namespace

QString MainController::snapshotModel() const
{
    return Snapshots::modelOfDatabase(deviceDBfile);
}

std::optional<QString> MainController::snapshotBefore(const char* what, const QString& spare)
{
    Snapshots::Taken taken;
    if (!deviceDB || !deviceDB->db)
        taken.failure = "the settings file is not open";
    else
        taken = Snapshots::take(*deviceDB->db, snapshotModel(), QString::fromLatin1(what),
                                QDateTime::currentDateTime(), spare);
    if (taken.ok())
        return taken.path;
    qCWarning(lcOrvane) << "no restore point made:" << taken.failure.c_str();
    showExchangeRefusal(appText(AppText::SnapshotFailed)
                            .arg(QString::fromStdString(taken.failure), QDir::toNativeSeparators(Snapshots::folder())));
    return std::nullopt;
}

std::array<int64_t, 5> MainController::savedUserLightSlots() const
{
    std::array<int64_t, kSavedSlots> modes{};
    for (int slot = 1; slot <= kSavedSlots && deviceDB; ++slot)
        modes[std::size_t(slot - 1)] = deviceDB->getConfigData(1, slotKey(slot)).toLongLong();
    return modes;
}

void MainController::noteUserLightSlot(int slot, int64_t mode)
{
    if (deviceDB && slot >= 1 && slot <= kSavedSlots)
        deviceDB->updateConfigData(1, slotKey(slot), QString::number(mode));
}

void MainController::undoLastChange()
{
    const QString path = undoSnapshot_;
    undoSnapshot_.clear();
    if (label_exchange)
        label_exchange->hide();
    if (!path.isEmpty())
        afterPollReply([this, path] { restoreSnapshot(path); });
}

void MainController::restoreSnapshot(const QString& path)
{
    const auto snapshot = Snapshots::parse(path);
    std::string failure;
    if (!deviceState || !deviceDB || !deviceDB->db)
        failure = "no keyboard is connected";
    else if (!snapshot || snapshot->model != snapshotModel())
        failure = "it was saved for another keyboard model";
    else
        Snapshots::inspect(path, failure);
    if (!failure.empty())
        return showExchangeRefusal(appText(AppText::RestoreFailed).arg(QString::fromStdString(failure)));
    const auto slotsBefore = savedUserLightSlots();
    // What is there now becomes a restore point too, so the restore can be undone.
    const auto before = snapshotBefore(SnapshotKind::kBeforeRestore, path);
    if (!before)
        return;
    if (!Snapshots::restore(*deviceDB->db, path, failure))
        return showExchangeRefusal(appText(AppText::RestoreFailed).arg(QString::fromStdString(failure)));
    sendRestoredSettings(slotsBefore);
    showExchangeResult(appText(AppText::RestoreDone).arg(whenOf(snapshot->taken)), *before);
}

void MainController::sendRestoredSettings(const std::array<int64_t, 5>& slotsBefore)
{
    loadMacroData();
    loadUserlightData();
    loadAppRules();
    // The profile in use stays the keyboard's: the switch stores it again
    // and sends its light mode and key locks, and shows its keys.
    swicthProfile(currentProfile);
    SaveMacroToKeyboard();
    for (int profile = 1; profile <= kProfiles; ++profile)
        setKeyMacroData(profile);
    for (int profile = 1; profile <= kProfiles; ++profile)
        if (profile != currentProfile)
            setHFDSystemSetData(profile);
    sendSavedUserLightSlots(slotsBefore);
    if (userlightmode_show)
        loadUserLightData(currentUserLightMode);
}

void MainController::sendSavedUserLightSlots(const std::array<int64_t, 5>& slotsBefore)
{
    std::vector<userLightData> modes;
    if (!deviceDB || !deviceDB->queryUserLightList(modes))
        return;
    const auto slotsAfter = savedUserLightSlots();
    for (int slot = 1; slot <= kSavedSlots; ++slot) {
        const int64_t mode = slotsAfter[std::size_t(slot - 1)];
        const bool listed = std::any_of(modes.begin(), modes.end(), [mode](const userLightData& m) { return m.lightId == mode; });
        std::vector<Protocol::LedColour> leds;
        // A slot saved then gets that light's colours back; a slot saved only
        // since is blanked, as it was then; one never saved keeps what it has.
        if (listed && !storedUserLightLeds(mode, leds))
            continue;
        if (!listed && slotsBefore[std::size_t(slot - 1)] == 0)
            continue;
        submitSequence(UploadSequences::userLightColors(slot, Protocol::userLightColorBlock(leds)));
    }
}

void MainController::showRestoreSettings()
{
    if (!deviceState || !deviceDB)
        return;
    std::vector<RestoreDialog::Entry> entries;
    for (const Snapshots::Snapshot& snapshot : Snapshots::list(snapshotModel())) {
        std::string failure;
        const auto contents = Snapshots::inspect(snapshot.path, failure);
        entries.push_back({snapshot.path, whenOf(snapshot.taken), headlineOf(snapshot.what),
                           contents ? summaryOf(*contents)
                                    : appText(AppText::RestoreUnreadable).arg(QString::fromStdString(failure)),
                           contents.has_value()});
    }
    if (entries.empty()) {
        auto* box = new QMessageBox(QMessageBox::Information, appText(AppText::RestoreTitle),
                                    appText(AppText::RestoreNone), QMessageBox::Ok, window());
        box->setObjectName(QStringLiteral("restoreNone"));
        box->setInformativeText(appText(AppText::RestoreNoneDetail));
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->setWindowModality(Qt::WindowModal);
        box->open();
        restorePrompt = box;
        return;
    }
    auto* dialog = new RestoreDialog(entries, window());
    connect(dialog, &RestoreDialog::chosen, this, &MainController::askToRestore);
    restorePrompt = dialog;
    dialog->open();
}

void MainController::askToRestore(const QString& path, const QString& when)
{
    const auto [alert, cancel, ok] =
        askFirst(window(), QStringLiteral("restoreAlert"), appText(AppText::RestoreQuestion).arg(when),
                 appText(AppText::RestoreReplaces), appText(AppText::RestoreButton));
    cancel->setObjectName(QStringLiteral("restoreAlertCancel"));
    ok->setObjectName(QStringLiteral("restoreAlertOK"));
    alert->setStyleSheet(QStringLiteral("QLabel#qt_msgbox_label { font-weight: bold; }"
                                        "QLabel#qt_msgbox_informativelabel { min-width: 320px; }"));
    connect(ok, &QAbstractButton::clicked, this, [this, path] { afterPollReply([this, path] { restoreSnapshot(path); }); });
    restorePrompt = alert;
    alert->open();
}
