// What the rows of the user light list do: each button acts on its own row's
// mode (export, delete after asking, rename), and the list's highlight, the
// picture and the mode being painted always name the same mode.
#include "View/MainController.h"
#include "View/Question.h"

#include "Language/AppText.h"
#include "Language/Language.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/Snapshot.h"
#include "View/control/KeyboardView.h"
#include "View/control/UserLightTableItemView.h"

#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>

namespace {

constexpr int kButtonImport = 1;
constexpr int kButtonExport = 2;
constexpr int kButtonDelete = 3;
constexpr int kButtonRename = 5;
constexpr int kTextOk = 623;

const QString kMode = QStringLiteral("mode");
const QString kText = QStringLiteral("text");

}  // namespace

void MainController::UserLightTableViewButton(const QVariant& object)
{
    const QVariantMap map = object.toMap();
    bool typeOk = false;
    bool indexOk = false;
    const int type = map.value(QStringLiteral("type")).toInt(&typeOk);
    const int index = map.value(QStringLiteral("index")).toInt(&indexOk);
    if (!typeOk || !indexOk || index < 0 || index >= userlightmode_datas.size() || !deviceDB)
        return;
    if (type == kButtonImport)
        importLightData();
    else if (type == kButtonExport)
        exportLightData(index);
    else if (type == kButtonDelete)
        askToDeleteUserLight(index);
    else if (type == kButtonRename)
        renameUserLight(index, map.value(kText).toString());
}

int MainController::userLightRowOf(int64_t lightId) const
{
    for (int row = 0; row < userlightmode_datas.size(); ++row)
        if (userlightmode_datas.at(row).value(kMode).toLongLong() == lightId)
            return row;
    return -1;
}

// Highlights a row and shows its mode; a row already highlighted is shown
// again, which takes the selection of keys off.
void MainController::selectUserLightRow(int row)
{
    if (!userlightmode_table || row < 0 || row >= userlightmode_datas.size())
        return;
    if (userlightmode_table->currentRow() == row && userlightmode_table->item(row)->isSelected())
        userLightSelectionDidChange();
    else
        userlightmode_table->setCurrentRow(row);
}

void MainController::renameUserLight(int row, const QString& name)
{
    const int64_t mode = userlightmode_datas.at(row).value(kMode).toLongLong();
    if (name.trimmed().isEmpty()) {
        // The field gets its name back; the list keeps it.
        if (UserLightTableItemView* view = userLightRowView(row))
            view->setName(userlightmode_datas.at(row).value(kText).toString());
        showProblem(appText(AppText::UserLightNameEmpty), QStringLiteral("userlight-name"));
        return;
    }
    if (deviceDB->modifyUserLightName(mode, name))
        loadUserlightData();
}

void MainController::askToDeleteUserLight(int row)
{
    const QString name = userlightmode_datas.at(row).value(kText).toString();
    const int64_t mode = userlightmode_datas.at(row).value(kMode).toLongLong();
    const auto [alert, cancel, ok] =
        askFirst(window(), QStringLiteral("deleteLightAlert"), appText(AppText::UserLightDeleteQuestion).arg(name),
                 appText(AppText::UserLightDeleteLoses), languageText(kTextOk));
    cancel->setObjectName(QStringLiteral("deleteLightCancel"));
    ok->setObjectName(QStringLiteral("deleteLightOK"));
    // The row is found again by its mode: the list may have changed while
    // the question was open.
    connect(ok, &QAbstractButton::clicked, this, [this, mode] { deleteUserLight(mode); });
    alert->open();
}

void MainController::deleteUserLight(int64_t mode)
{
    const int row = userLightRowOf(mode);
    if (row < 0 || !deviceDB)
        return;
    const auto snapshot = snapshotBefore(SnapshotKind::kDeleteLight);
    if (!snapshot || !deviceDB->deleteUserLightWithColours(mode))
        return;
    showExchangeResult(appText(AppText::UserLightDeleted)
                           .arg(appText(AppText::QuotedName).arg(userlightmode_datas.at(row).value(kText).toString())),
                       *snapshot);
    const bool shown = mode == currentUserLightMode;
    userlightmode_datas.removeAt(row);
    {
        const QSignalBlocker blocker(userlightmode_table);
        delete userlightmode_table->takeItem(row);
        for (int next = row; next < userlightmode_table->count(); ++next)
            userLightRowView(next);  // the rows below learn their new number
    }
    if (!shown)
        return;
    // The picture no longer shows a mode that is gone: the neighbour takes
    // its place, or, with none left, nothing is painted.
    if (userlightmode_datas.isEmpty()) {
        currentUserLightMode = 0;
        if (orvane_keyboardctrl)
            orvane_keyboardctrl->resetKeyColor();
        return;
    }
    selectUserLightRow(std::min(row, int(userlightmode_datas.size()) - 1));
}
