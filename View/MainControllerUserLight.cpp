// The user light tab: the list of the user's own light modes, adding,
// renaming and deleting them, and showing a mode on the keyboard picture.
// Nothing here sends to the keyboard; a mode reaches it only when it is saved
// to a slot (MainControllerUserLightPaint).
#include "View/MainController.h"

#include "Common/NotificationCenter.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "SQLite/DeviceSQLite.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/PageFrame.h"
#include "View/control/EmptyListHint.h"
#include "View/control/KeyView.h"
#include "View/control/KeyboardView.h"
#include "View/control/TableView.h"
#include "View/control/UserLightTableItemView.h"

#include <QDateTime>
#include <QSignalBlocker>

namespace {

constexpr int kTabRowHeight = 52;
constexpr qint64 kMenuDebounceMs = 1000;
constexpr int kTextLight = 575;  // "Light", the stem of a new mode's name
constexpr int kMenuAdd = 166;
constexpr int kMenuSaveFirst = 167;
constexpr int kMenuSaveLast = 171;
constexpr int kMenuOnRow = 2;
constexpr int kMenuBesideRows = 3;

const QString kMode = QStringLiteral("mode");
const QString kText = QStringLiteral("text");

QColor colourOf(int rgbvalue)
{
    return QColor((rgbvalue >> 16) & 0xFF, (rgbvalue >> 8) & 0xFF, rgbvalue & 0xFF);
}

}  // namespace

void MainController::initUserLightPage()
{
    using namespace PageFrame;
    const int height = kPageHeight - kTabRowHeight;
    userlightmode_table = new TableView(userlight_view);
    userlightmode_table->setObjectName(QStringLiteral("userlightmode_table"));
    userlightmode_table->setProperty("identifier", QStringLiteral("userlightmode"));
    userlightmode_table->setGeometry((kPageWidth - UserLightTableItemView::kRowWidth) / 2, 8,
                                     UserLightTableItemView::kRowWidth, height - 16);
    userlightmode_table->setFrameShape(QFrame::NoFrame);
    userlightmode_table->setSelectionMode(QAbstractItemView::SingleSelection);
    userlightmode_table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    userlightmode_table->setStyleSheet(QStringLiteral(
        "QListWidget { background: transparent; outline: 0; }"
        "QListWidget::item, QListWidget::item:selected, QListWidget::item:hover { background: transparent; }"));
    connect(userlightmode_table, &QListWidget::itemSelectionChanged, this,
            &MainController::userLightSelectionDidChange);
    // A click on the highlighted row shows its mode again.
    connect(userlightmode_table, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        if (item && item->isSelected() && userlightmode_table->row(item) == userlightmode_table->currentRow())
            userLightSelectionDidChange();
    });
    userLightListHint = new EmptyListHint(userlightmode_table);
}

void MainController::registerUserLightNotifications()
{
    if (userLightObserved_)
        return;
    userLightObserved_ = true;
    auto& center = NotificationCenter::defaultCenter();
    center.addObserver(QStringLiteral("keyboardKeyAction"), [this](const QVariant& o) { keyboardKeyAction(o); }, this);
    center.addObserver(QStringLiteral("UserLightTableViewMenu"),
                       [this](const QVariant& o) { UserLightTableViewMenu(o); }, this);
    // A row's button may delete the row that posts it: acted on once the
    // row's own handling is over.
    center.addObserver(QStringLiteral("UserLightTableViewButton"), [this](const QVariant& o) {
        QMetaObject::invokeMethod(this, [this, o] { UserLightTableViewButton(o); }, Qt::QueuedConnection);
    }, this);
}

void MainController::loadUserlightData()
{
    std::vector<userLightData> modes;
    // A list that cannot be read stays as it is shown.
    if (!deviceDB || !deviceDB->queryUserLightList(modes))
        return;
    userlightmode_datas.clear();
    for (const userLightData& mode : modes)
        userlightmode_datas.append(QVariantMap{{kMode, qint64(mode.lightId)}, {kText, mode.name}});
    if (!userlightmode_table)
        return;
    // Rows are kept and given their new names; the selection stays.
    const QSignalBlocker blocker(userlightmode_table);
    while (userlightmode_table->count() > userlightmode_datas.size())
        delete userlightmode_table->takeItem(userlightmode_table->count() - 1);
    while (userlightmode_table->count() < userlightmode_datas.size())
        appendUserLightRow();
    for (int row = 0; row < userlightmode_datas.size(); ++row)
        userLightRowView(row);
    // The mode painted on stays highlighted, or the first when it is gone.
    int shown = userLightRowOf(currentUserLightMode);
    if (shown < 0 && !userlightmode_datas.isEmpty()) {
        shown = 0;
        currentUserLightMode = int(userlightmode_datas.first().value(kMode).toLongLong());
    } else if (shown < 0) {
        currentUserLightMode = 0;
    }
    userlightmode_table->setCurrentRow(shown);
    for (int row = 0; row < userlightmode_table->count(); ++row)
        userLightRowView(row)->setDown(row == shown);
}

void MainController::appendUserLightRow()
{
    auto* item = new QListWidgetItem(userlightmode_table);
    item->setSizeHint(QSize(UserLightTableItemView::kRowWidth, UserLightTableItemView::kRowHeight));
    userLightRowView(userlightmode_table->count() - 1);
}

UserLightTableItemView* MainController::userLightRowView(int row)
{
    QListWidgetItem* item = userlightmode_table ? userlightmode_table->item(row) : nullptr;
    if (!item)
        return nullptr;
    auto* view = qobject_cast<UserLightTableItemView*>(userlightmode_table->itemWidget(item));
    if (!view) {
        // Made whole before the list shows it, so that its parts show too.
        view = new UserLightTableItemView;
        view->setObjectName(QStringLiteral("tableitem"));
        view->initView(row);
        userlightmode_table->setItemWidget(item, view);
    }
    view->initView(row);
    if (row < userlightmode_datas.size())
        view->setName(userlightmode_datas.at(row).value(kText).toString());
    view->setButtonTips(appText(AppText::UserLightImportTip), appText(AppText::UserLightExportTip),
                        appText(AppText::UserLightDeleteTip));
    return view;
}

void MainController::userLightSelectionDidChange()
{
    for (int row = 0; row < userlightmode_table->count(); ++row)
        if (UserLightTableItemView* view = userLightRowView(row); view->isDown)
            view->setDown(false);
    const QModelIndexList selected = userlightmode_table->selectionModel()->selectedIndexes();
    const int row = selected.isEmpty() ? -1 : selected.first().row();
    if (row < 0 || row >= userlightmode_datas.size())
        return;
    userLightRowView(row)->setDown(true);
    loadUserLightData(userlightmode_datas.at(row).value(kMode).toLongLong());
}

void MainController::loadUserLightData(int64_t UserlightId)
{
    currentUserLightMode = int(UserlightId);
    if (!orvane_keyboardctrl)
        return;
    orvane_keyboardctrl->resetKeyColor();
    std::vector<RGBData> rows;
    if (!deviceDB || !deviceDB->queryKeyRGB(1, UserlightId, rows))
        return;
    const int keyCount = int(orvane_keyboardctrl->kbKeyArrayHover.size());
    for (const RGBData& row : rows) {
        // A row of a key this picture lacks (another model's file) is skipped.
        if (const auto position = picturePosition(row.keyvalue, keyCount))
            orvane_keyboardctrl->keyView(*position)->setKeyColor(colourOf(row.rgbvalue));
    }
}

void MainController::addUserLight()
{
    if (!deviceDB)
        return;
    const QString name = QStringLiteral("%1 %2").arg(languageText(kTextLight)).arg(userlightmode_datas.size() + 1);
    const int64_t id = deviceDB->addUserLight(name);
    if (id < 1)
        return;
    userlightmode_datas.append(QVariantMap{{kMode, qint64(id)}, {kText, name}});
    if (userlightmode_table) {
        {
            const QSignalBlocker blocker(userlightmode_table);
            appendUserLightRow();
        }
        // The new row is highlighted, shown and painted on.
        selectUserLightRow(userlightmode_table->count() - 1);
        return;
    }
    loadUserLightData(id);
}

void MainController::UserLightTableMenuMsg(int msgId)
{
    if (msgId == kMenuAdd) {
        addUserLight();
    } else if (msgId >= kMenuSaveFirst && msgId <= kMenuSaveLast) {
        currentKBUserLightMode = msgId - kMenuSaveFirst + 1;
        setHFDUserLightData();
    }
}

void MainController::UserLightTableViewMenu(const QVariant& object)
{
    if (object.typeId() != QMetaType::Int)
        return;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (now - timetickcount < kMenuDebounceMs)
        return;
    timetickcount = now;
    if (showLightMenu)
        showLightMenu(object.toInt() != -1 ? kMenuOnRow : kMenuBesideRows);
}
