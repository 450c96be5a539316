// The system page: the three key locks of the profile in use, stored per
// profile and sent to the keyboard as one block; below them, whether the app
// starts with the desktop.
#include "View/MainController.h"

#include "Desktop/Autostart.h"
#include "Language/AppText.h"
#include "View/PageFrame.h"
#include "Protocol/SystemSettingsBlock.h"
#include "Protocol/UploadSequences.h"
#include "SQLite/DeviceSQLite.h"
#include "View/control/FuncButton.h"

#include <QCoreApplication>
#include <QLabel>

namespace {

using namespace PageFrame;
constexpr int kRowTop = 56;
constexpr int kRowHeight = 44;
constexpr int kSwitchWidth = 44;
constexpr int kSwitchHeight = 24;
constexpr int kMargin = 16;

struct LockRow {
    const char* switchName;
    const char* labelName;
};
// In the order of SystemSettingsBlock::kLockSwitches.
constexpr LockRow kLockRows[] = {
    {"switch_lock_win", "label_lock_win"},
    {"switch_lock_alttab", "label_lock_alttab"},
    {"switch_lock_altf4", "label_lock_altf4"},
};

QString settingKey(std::string_view key) { return QString::fromLatin1(key.data(), qsizetype(key.size())); }

}  // namespace

void MainController::initSystemPage()
{
    sysset_view = makePageView(this, QStringLiteral("sysset_view"));

    auto* caption = new QLabel(sysset_view);
    caption->setObjectName(QStringLiteral("label_sys_caption"));
    caption->setGeometry(kMargin, 12, kPageWidth - 2 * kMargin, 32);
    caption->setStyleSheet(QStringLiteral("font-weight: bold;"));

    for (std::size_t i = 0; i < lockSwitches.size(); ++i) {
        const int top = kRowTop + int(i) * kRowHeight;
        auto* label = new QLabel(sysset_view);
        label->setObjectName(QString::fromLatin1(kLockRows[i].labelName));
        label->setGeometry(kMargin, top, kPageWidth - 3 * kMargin - kSwitchWidth, kRowHeight);
        auto* lock = new SwitchButton(sysset_view);
        lock->setObjectName(QString::fromLatin1(kLockRows[i].switchName));
        lock->setProperty("tag", SystemSettingsBlock::kLockSwitches[i].tag);
        lock->setGeometry(kPageWidth - kMargin - kSwitchWidth, top + (kRowHeight - kSwitchHeight) / 2, kSwitchWidth,
                          kSwitchHeight);
        connect(lock, &QAbstractButton::clicked, this, [this, lock] { action_keylock_swicthbtn(lock); });
        lockSwitches[i] = lock;
    }
    initAutostartRow(kRowTop + int(lockSwitches.size()) * kRowHeight + kMargin);
    sysset_view->hide();
}

QRect MainController::keyLockRowsRect() const
{
    return QRect(kMargin / 2, kRowTop, kPageWidth - kMargin, int(lockSwitches.size()) * kRowHeight);
}

void MainController::initAutostartRow(int top)
{
    label_autostart = new QLabel(sysset_view);
    label_autostart->setObjectName(QStringLiteral("label_autostart"));
    label_autostart->setGeometry(kMargin, top, kPageWidth - 3 * kMargin - kSwitchWidth, kRowHeight);
    label_autostart->setWordWrap(true);
    auto* autostart = new SwitchButton(sysset_view);
    autostart->setObjectName(QStringLiteral("switch_autostart"));
    autostart->setGeometry(kPageWidth - kMargin - kSwitchWidth, top + (kRowHeight - kSwitchHeight) / 2, kSwitchWidth,
                           kSwitchHeight);
    autostart->setChecked(Autostart::isEnabled());
    connect(autostart, &QAbstractButton::clicked, this, &MainController::action_autostart_switch);
    switch_autostart = autostart;
}

void MainController::action_autostart_switch()
{
    QString error;
    const bool wanted = switch_autostart->isChecked();
    if (!Autostart::setEnabled(wanted, QCoreApplication::applicationFilePath(), error)) {
        switch_autostart->setChecked(Autostart::isEnabled());
        showProblem(appText(AppText::AutostartFailed).arg(error), QStringLiteral("autostart"));
    }
}

void MainController::action_keylock_swicthbtn(QAbstractButton* sender)
{
    // The switch shows its new state at once; storing and sending wait for a
    // poll's reply that is owed, so they reach the profile the user sees.
    const int tag = sender->property("tag").toInt();
    const int btnstate = sender->isChecked() ? 1 : 0;
    afterPollReply([this, tag, btnstate] { lockGameModeKey(tag, btnstate); });
}

void MainController::lockGameModeKey(int tag, int btnstate)
{
    const SystemSettingsBlock::LockSwitch* lock = SystemSettingsBlock::lockSwitchForTag(tag);
    // What is not stored is not sent; the switch goes back to the stored
    // state (the store's failure is said by its watch).
    if (!lock || !deviceDB
        || !deviceDB->updateConfigData(currentProfile, settingKey(lock->configKey), QString::number(btnstate))) {
        for (std::size_t i = 0; i < lockSwitches.size(); ++i)
            if (lockSwitches[i] && SystemSettingsBlock::kLockSwitches[i].tag == tag)
                lockSwitches[i]->setChecked(btnstate == 0);
        return;
    }
    setHFDSystemSetData(currentProfile);
}

void MainController::loadSystemSetData()
{
    showStoredLockSwitches();
    setHFDSystemSetData(currentProfile);
}

void MainController::showStoredLockSwitches()
{
    for (QAbstractButton* lock : lockSwitches)
        if (lock)
            lock->setChecked(false);
    if (deviceDB) {
        for (std::size_t i = 0; i < lockSwitches.size(); ++i) {
            const QString value = deviceDB->getConfigData(currentProfile,
                                                          settingKey(SystemSettingsBlock::kLockSwitches[i].configKey));
            if (lockSwitches[i] && SystemSettingsBlock::isLocked(value.toStdString()))
                lockSwitches[i]->setChecked(true);
        }
    }
}

void MainController::setHFDSystemSetData(int profile)
{
    // Without the store there is nothing to send: a block of zeros would
    // release locks the user set.
    if (!isSendDevice || !deviceDB)
        return;
    // Nor after a read that failed: it would read as "unlocked".
    StoreRead unread{StoreResult::Ok};
    const uint8_t lockByte = SystemSettingsBlock::lockByte([&](std::string_view key) {
        const StoreRead stored = deviceDB->readConfigData(profile, settingKey(key));
        if (stored.failed())
            unread = stored;
        return stored.value.toStdString();
    });
    if (unread.failed())
        return settingsUnread(unread);
    submitSequence(UploadSequences::systemSettings(profile, SystemSettingsBlock::build(lockByte)));
}
