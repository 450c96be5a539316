// The exchange files: a profile's key assignments as a ".key" file, a user
// light mode as a ".light" file. The files are checked by ExchangeFileCheck
// and written by the device store; this file asks for the file, hands over
// and tells the user how it went.
#include "View/MainController.h"

#include "Language/AppText.h"
#include "Language/Language.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/ExchangeFileCheck.h"
#include "SQLite/KeyProfileSQLite.h"
#include "SQLite/LightSQLite.h"
#include "SQLite/Snapshot.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/OffThread.h"
#include "View/control/KeyboardView.h"

#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>

namespace {

constexpr int kResultShownMs = 8000;
constexpr int kUndoShownMs = 15000;

QString counted(qsizetype n, AppText one, AppText many)
{
    return appText(n == 1 ? one : many).arg(n);
}

QString keyAssignments(qsizetype n)
{
    return counted(n, AppText::KeyAssignmentCountOne, AppText::KeyAssignmentCountMany);
}

QString keyColours(qsizetype n)
{
    return counted(n, AppText::KeyColourCountOne, AppText::KeyColourCountMany);
}

QString quotedName(const QString& name)
{
    return appText(AppText::QuotedName).arg(name);
}

QString droppedNote(int dropped)
{
    if (dropped == 0)
        return {};
    return counted(dropped, AppText::DroppedRowsOne, AppText::DroppedRowsMany);
}

// A copy of the model's key codes, for a check on another thread.
ExchangeFileCheck::ModelKeys modelKeys()
{
    ExchangeFileCheck::ModelKeys keys;
    for (const auto& [code, record] : G_KB_SuperKeyCodeMap)
        keys.codes.insert(code);
    return keys;
}

}  // namespace

QString MainController::chooseExchangeFile(const ExchangeDialog& dialog)
{
    return environment_.chooseExchangeFile ? environment_.chooseExchangeFile(dialog) : runExchangeDialog(this, dialog);
}

void MainController::exportKeyProfile()
{
    if (!deviceState)
        return;
    // Named after the profile it holds, in the language shown.
    const QString name = ExchangeFile::safeFileName(languageText(profileTextId(currentProfile))) + QStringLiteral(".key");
    const QString url = chooseExchangeFile({{}, ExchangeDialog::Pick::NewFile, QStringLiteral("key"), name});
    if (url.isEmpty())
        return;
    std::vector<ProfileKey> rows;
    if (!deviceDB || !deviceDB->queryKeysProfile(currentProfile, rows)) {
        showExchangeRefusal(appText(AppText::ExportProfileUnreadable));
        return;
    }
    // The file is written whole beside its place and then takes it: a file
    // of that name is replaced, never added to, and kept if writing fails.
    std::string failure;
    const bool written = ExchangeFile::writeWhole(url, [&](const QString& tempUrl) {
        keyProfileSQLite file(tempUrl);
        if (file.addKeyProfiles(rows))
            return true;
        failure = file.failure;
        return false;
    }, failure);
    if (!written) {
        showExchangeRefusal(appText(AppText::ExportProfileUnwritable)
                                .arg(quotedName(ExchangeFile::displayName(url)), QString::fromStdString(failure)));
        return;
    }
    showExchangeResult(appText(AppText::ExportProfileDone).arg(keyAssignments(rows.size()),
                                                    quotedName(ExchangeFile::displayName(url))));
}

void MainController::importKeyProfile()
{
    if (!deviceState)
        return;
    const QString url = chooseExchangeFile({QStringLiteral("Select file"), ExchangeDialog::Pick::ExistingFile,
                                            QStringLiteral("key")});
    if (url.isEmpty())
        return;
    const QString fileName = ExchangeFile::displayName(url);
    runOffThread(
        this, [url, keys = modelKeys()] { return ExchangeFileCheck::inspectKeyFile(url, keys); },
        [this, fileName](ExchangeFileCheck::KeyFileInspection inspection) {
            if (!inspection.ok())
                return showExchangeRefusal(ExchangeFileCheck::refusalMessage(inspection, fileName));
            importCheckedKeyProfile(std::move(inspection), fileName);
        });
}

void MainController::importCheckedKeyProfile(ExchangeFileCheck::KeyFileInspection inspection, const QString& fileName)
{
    // The rows go into the profile in use, so a poll's reply that changes
    // it is acted on first.
    afterPollReply([this, inspection = std::move(inspection), fileName]() mutable {
        if (!deviceDB || !deviceDB->db) {
            showExchangeRefusal(appText(AppText::ImportProfileStoreClosed).arg(quotedName(fileName)));
            return;
        }
        for (ProfileKey& row : inspection.rows)
            row.profId = currentProfile;
        const auto snapshot = snapshotBefore(SnapshotKind::kImportKeys);
        if (!snapshot)
            return;
        if (!deviceDB->addKeyProfiles(inspection.rows)) {
            showExchangeRefusal(appText(AppText::ImportSaveFailed)
                                    .arg(quotedName(fileName), QString::fromStdString(deviceDB->health.lastFailure.reason)));
            return;
        }
        // The keys show the new assignments, and the keyboard holds them at
        // once: the line below says they are in the profile.
        loadKeyMacro();
        setKeyMacroData(currentProfile);
        showExchangeResult(appText(AppText::ImportProfileDone)
                               .arg(keyAssignments(inspection.rows.size()),
                                    quotedName(fileName), languageText(profileTextId(currentProfile)))
                               + droppedNote(inspection.dropped),
                           *snapshot);
    });
}

void MainController::exportLightData(int row)
{
    if (row < 0 || row >= userlightmode_datas.size())
        return showExchangeRefusal(appText(AppText::ExportLightNoneChosen));
    // The row's own mode, under its name, whichever row is highlighted.
    const QString name = userlightmode_datas.at(row).value(QStringLiteral("text")).toString();
    const int64_t mode = userlightmode_datas.at(row).value(QStringLiteral("mode")).toLongLong();
    const QString url = chooseExchangeFile(
        {{}, ExchangeDialog::Pick::NewFile, QStringLiteral("light"), ExchangeFile::safeFileName(name) + QStringLiteral(".light")});
    if (url.isEmpty())
        return;
    std::vector<RGBData> rows;
    if (!deviceDB || !deviceDB->queryKeyRGB(1, mode, rows))
        return showExchangeRefusal(appText(AppText::ExportLightUnreadable).arg(quotedName(name)));
    std::vector<LEDData> leds;
    for (const RGBData& colour : rows)
        leds.push_back({0, colour.keyvalue, colour.rgbvalue});
    // Replaced whole, as a profile file is: never added to, kept if writing fails.
    std::string failure;
    const bool written = ExchangeFile::writeWhole(url, [&](const QString& tempUrl) {
        LightSQLite file(tempUrl);
        if (file.addLightMode(name, leds))
            return true;
        failure = file.failure;
        return false;
    }, failure);
    if (!written) {
        showExchangeRefusal(appText(AppText::ExportLightUnwritable)
                                .arg(quotedName(ExchangeFile::displayName(url)), QString::fromStdString(failure)));
        return;
    }
    showExchangeResult(appText(AppText::ExportLightDone)
                           .arg(quotedName(name), keyColours(leds.size()),
                                quotedName(ExchangeFile::displayName(url))));
}

void MainController::importLightData()
{
    if (!deviceDB || !deviceDB->db) {
        showExchangeRefusal(appText(AppText::ImportLightStoreClosed));
        return;
    }
    const QString url = chooseExchangeFile({QStringLiteral("Select files"), ExchangeDialog::Pick::ExistingFile,
                                            QStringLiteral("light")});
    if (url.isEmpty())
        return;
    const QString fileName = ExchangeFile::displayName(url);
    runOffThread(
        this, [url, keys = modelKeys()] { return ExchangeFileCheck::inspectLightFile(url, keys); },
        [this, fileName](const ExchangeFileCheck::LightFileInspection& inspection) {
            if (!inspection.ok())
                return showExchangeRefusal(ExchangeFileCheck::refusalMessage(inspection, fileName));
            importCheckedLightData(inspection, fileName);
        });
}

void MainController::importCheckedLightData(const ExchangeFileCheck::LightFileInspection& inspection,
                                            const QString& fileName)
{
    if (!deviceDB || !deviceDB->db)
        return showExchangeRefusal(appText(AppText::ImportLightStoreClosed));
    const auto snapshot = snapshotBefore(SnapshotKind::kImportLight);
    if (!snapshot)
        return;
    const int64_t lightId = deviceDB->addUserLightWithColours(inspection.name, inspection.leds);
    if (lightId < 1) {
        showExchangeRefusal(appText(AppText::ImportSaveFailed)
                                .arg(quotedName(fileName), QString::fromStdString(deviceDB->health.lastFailure.reason)));
        return;
    }
    showImportedUserLight(static_cast<int>(lightId));
    showExchangeResult(appText(AppText::ImportLightDone)
                           .arg(quotedName(inspection.name), keyColours(inspection.leds.size()),
                                quotedName(fileName))
                           + droppedNote(inspection.dropped),
                       *snapshot);
}

// The imported mode joins the list, read again from the database, and
// becomes the one being painted.
void MainController::showImportedUserLight(int lightId)
{
    loadUserlightData();
    loadUserLightData(lightId);
}

void MainController::showExchangeResult(const QString& line, const QString& undoSnapshot)
{
    if (!label_exchange) {
        label_exchange = new QLabel(this);
        label_exchange->setObjectName(QStringLiteral("label_exchange"));
        label_exchange->setAlignment(Qt::AlignCenter);
        // One line as a rule; a long file name wraps rather than being cut.
        label_exchange->setWordWrap(true);
        auto* hideTimer = new QTimer(label_exchange);
        hideTimer->setObjectName(QStringLiteral("label_exchange_timer"));
        hideTimer->setSingleShot(true);
        connect(hideTimer, &QTimer::timeout, label_exchange, &QWidget::hide);
        auto* undo = new QPushButton(label_exchange);
        undo->setObjectName(QStringLiteral("label_exchange_undo"));
        undo->setCursor(Qt::PointingHandCursor);
        undo->setStyleSheet(QStringLiteral(
            "QPushButton { background: #ffffff; color: #0d0d0d; border: 1px solid #9cc8ff; border-radius: 4px;"
            " padding: 2px 10px; } QPushButton:hover { background: #39a5ff; color: #ffffff; border-color: #39a5ff; }"));
        connect(undo, &QAbstractButton::clicked, this, &MainController::undoLastChange);
    }
    // Undo goes with the line: a later line without it takes it away.
    undoSnapshot_ = undoSnapshot;
    auto* undo = label_exchange->findChild<QPushButton*>(QStringLiteral("label_exchange_undo"));
    undo->setText(appText(AppText::UndoButton));
    undo->adjustSize();
    undo->setVisible(!undoSnapshot.isEmpty());
    const int undoRoom = undoSnapshot.isEmpty() ? 0 : undo->width() + 12;
    label_exchange->setStyleSheet(QStringLiteral(
        "QLabel { background: #e9f3ff; color: #0d0d0d; border: 1px solid #9cc8ff; border-radius: 6px;"
        " padding: 6px %1px 6px 12px; }").arg(12 + undoRoom));
    label_exchange->setText(line);
    // In the gap under the keyboard picture, as wide as it; a longer text
    // grows down, never over the keys.
    constexpr int kWidth = 660;
    const int top = orvane_keyboardctrl ? orvane_keyboardctrl->geometry().bottom() + 6 : kWindowHeight - 306;
    const int height = std::max(label_exchange->heightForWidth(kWidth), undo->height() + 8);
    label_exchange->setGeometry(215, top, kWidth, height);
    undo->move(kWidth - undo->width() - 8, (height - undo->height()) / 2);
    label_exchange->show();
    label_exchange->raise();
    // A line that can be undone stays longer, so there is time to read it.
    auto* hideTimer = label_exchange->findChild<QTimer*>(QStringLiteral("label_exchange_timer"));
    hideTimer->start(undoSnapshot.isEmpty() ? kResultShownMs : kUndoShownMs);
}

void MainController::showExchangeRefusal(const QString& message)
{
    auto* box = new QMessageBox(QMessageBox::Warning, QStringLiteral("Orvane Keyboard Studio"), message, QMessageBox::Ok, this);
    box->setObjectName(QStringLiteral("exchange_refusal"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    box->open();
}
