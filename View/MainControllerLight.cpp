// The light page and its built-in effects: the list, the choice of an effect
// per profile, and sending it to the keyboard.
#include "View/MainController.h"

#include "View/PageFrame.h"
#include "Common/LightModeCatalogue.h"
#include "Language/Language.h"
#include "Protocol/LightModeBlock.h"
#include "Protocol/UploadSequences.h"
#include "SQLite/DeviceSQLite.h"
#include "View/control/FlippedRect.h"
#include "View/control/ImageTitleButton.h"
#include "View/control/LightTableItemView.h"

#include <QListWidget>
#include <QSignalBlocker>

namespace {

using namespace PageFrame;
constexpr int kTabRowHeight = 52;

const QString kLightModeKey = QStringLiteral("currentLightMode");

QString keyString(const char* key) { return QString::fromLatin1(key); }

// The row's view if it has been built; rows not built yet show no mark.
LightTableItemView* builtRowView(const QListWidget& table, int row)
{
    return qobject_cast<LightTableItemView*>(table.itemWidget(table.item(row)));
}

}  // namespace

void MainController::initLightPage()
{
    light_view = makePageView(this, QStringLiteral("light_view"));

    light_mode_tab = new ImageTitleButton(light_view);
    light_mode_tab->setObjectName(QStringLiteral("light_mode_tab"));
    light_mode_tab->setGeometry(12, 10, 100, 32);
    connect(light_mode_tab, &QAbstractButton::clicked, this, &MainController::action_ligjhtmode_tab);
    customlight_mode_tab = new ImageTitleButton(light_view);
    customlight_mode_tab->setObjectName(QStringLiteral("customlight_mode_tab"));
    customlight_mode_tab->setGeometry(112, 10, 100, 32);
    connect(customlight_mode_tab, &QAbstractButton::clicked, this, &MainController::action_userlightmode_tab);

    light_mode_table = new QListWidget(light_view);
    light_mode_table->setObjectName(QStringLiteral("light_mode_table"));
    light_mode_table->setProperty("identifier", QStringLiteral("lightmode"));
    light_mode_table->setGeometry(0, kTabRowHeight, kPageWidth, LightTableItemView::kRowHeight * kLightModeRows);
    light_mode_table->setFrameShape(QFrame::NoFrame);
    light_mode_table->setSelectionMode(QAbstractItemView::SingleSelection);
    light_mode_table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The rows draw their own selected look; the list stays clear.
    light_mode_table->setStyleSheet(QStringLiteral(
        "QListWidget { background: transparent; outline: 0; }"
        "QListWidget::item, QListWidget::item:selected, QListWidget::item:hover { background: transparent; }"));
    connect(light_mode_table, &QListWidget::itemSelectionChanged, this,
            [this] { tableViewSelectionDidChange(light_mode_table); });
    light_mode_scrollview = light_mode_table;

    // The user light tab covers the list and leaves the tabs free.
    userlight_view = new QWidget(this);
    userlight_view->setObjectName(QStringLiteral("userlight_view"));
    userlight_view->setAttribute(Qt::WA_StyledBackground);
    userlight_view->setStyleSheet(QStringLiteral(
        "#userlight_view { background: #ffffff; border: 1px solid #e3e6ea; border-top: none;"
        " border-bottom-left-radius: 10px; border-bottom-right-radius: 10px; }"));
    userlight_view->setGeometry(flippedRect(kWindowHeight, kPageX, kPageY, kPageWidth, kPageHeight - kTabRowHeight));
    userlight_view->hide();
    initUserLightPage();
}

void MainController::initLightTableData()
{
    light_mode_datas.clear();
    for (const LightModeEntry& entry : lightModeCatalogue()) {
        light_mode_datas.append(QVariantMap{{keyString("icon_n"), entry.iconNormal()},
                                            {keyString("icon_h"), entry.iconHover()},
                                            {keyString("icon_s"), entry.iconSelected()},
                                            {keyString("text"), languageText(entry.textId)},
                                            {keyString("mode"), entry.mode}});
    }
    if (!light_mode_table)
        return;
    // Rows are made afresh, so their names come in the new language; the
    // row marked before keeps its mark.
    int marked = -1;
    for (int row = 0; row < light_mode_table->count(); ++row)
        if (auto* view = builtRowView(*light_mode_table, row); view && view->isSelect)
            marked = row;
    const QSignalBlocker blocker(light_mode_table);
    const int current = light_mode_table->currentRow();
    light_mode_table->clear();
    for (int row = 0; row < light_mode_datas.size(); ++row) {
        auto* item = new QListWidgetItem(light_mode_table);
        item->setSizeHint(QSize(light_mode_table->width(), LightTableItemView::kRowHeight));
    }
    // A row's picture and name are built when the page first shows, or
    // when the row is first asked for: a start that never opens the page
    // never pays for them.
    if (viewType == 2)
        buildLightModeRows();
    light_mode_table->setCurrentRow(current);
    if (marked >= 0 && marked < light_mode_table->count())
        lightModeRowView(marked)->setSelect(true);
}

LightTableItemView* MainController::lightModeRowView(int row)
{
    QListWidgetItem* item = light_mode_table->item(row);
    if (!item)
        return nullptr;
    if (auto* view = qobject_cast<LightTableItemView*>(light_mode_table->itemWidget(item)))
        return view;
    const QVariantMap& data = light_mode_datas.at(row);
    auto* view = new LightTableItemView;
    view->setObjectName(QStringLiteral("tableitem"));
    view->initView(data.value(keyString("icon_n")).toString(), data.value(keyString("icon_h")).toString(),
                   data.value(keyString("icon_s")).toString(), data.value(keyString("text")).toString());
    light_mode_table->setItemWidget(item, view);
    return view;
}

void MainController::buildLightModeRows()
{
    for (int row = 0; light_mode_table && row < light_mode_table->count(); ++row)
        lightModeRowView(row);
}

void MainController::resetLightModeTableView()
{
    if (light_mode_datas.isEmpty() || !light_mode_table)
        return;
    for (int row = 0; row < light_mode_table->count(); ++row) {
        if (LightTableItemView* view = builtRowView(*light_mode_table, row); view && view->isSelect)
            view->setSelect(false);
    }
}

void MainController::tableViewSelectionDidChange(QListWidget* tableView)
{
    if (tableView != light_mode_table)
        return;
    const QModelIndexList selected = tableView->selectionModel()->selectedIndexes();
    const int row = selected.isEmpty() ? -1 : selected.first().row();
    if (row < 0 || row >= light_mode_datas.size())
        return;
    const QVariantMap data = light_mode_datas.at(row);
    resetLightModeTableView();
    lightModeRowView(row)->setSelect(true);
    const int mode = data.value(keyString("mode")).toInt();
    // Stored and sent for the profile the keyboard ends on after a poll's
    // reply that is owed.
    afterPollReply([this, mode] { chooseLightMode(mode); });
}

void MainController::chooseLightMode(int mode)
{
    // The database first: what is not stored is not sent, and the list goes
    // back to the stored effect (the store's failure is said by its watch).
    if (!deviceDB || !deviceDB->updateConfigData(currentProfile, kLightModeKey, QString::number(mode)))
        return showLightModeRow();
    currentLightMode = mode;
    setHFDBackLightData(currentProfile);
}

void MainController::loadBacklightData()
{
    if (!deviceDB)
        return;
    // A read that failed sends nothing: the keyboard keeps its own effect
    // rather than getting the default one.
    const StoreRead stored = deviceDB->readConfigData(currentProfile, kLightModeKey);
    if (stored.failed())
        return settingsUnread(stored);
    currentLightMode = lightModeFromStored(stored.value);
    showLightModeRow();
    setHFDBackLightData(currentProfile);
}

void MainController::showStoredLightMode()
{
    if (!deviceDB)
        return;
    currentLightMode = lightModeFromStored(deviceDB->getConfigData(currentProfile, kLightModeKey));
    showLightModeRow();
}

void MainController::showLightModeRow()
{
    resetLightModeTableView();
    const int row = lightModeRow(currentLightMode);
    if (light_mode_table && row >= 0 && row < light_mode_table->count()) {
        lightModeRowView(row)->setSelect(true);
        // The list's own selection follows, so that a click on another row
        // is always a change.
        const QSignalBlocker blocker(light_mode_table);
        light_mode_table->setCurrentRow(row);
    }
}

void MainController::setHFDBackLightData(int /*profile*/)
{
    // The effect always goes to the profile in use, whatever the caller
    // names. hidcomm_busy follows the transport queue: it is set while the
    // sequence waits and runs, and without a transport nothing is handed
    // over, so it ends as clear as it began.
    if (!isSendDevice)
        return;
    const auto block = Protocol::lightModeBlock(static_cast<uint8_t>(currentLightMode & 0xFF));
    submitSequence(UploadSequences::lightMode(currentProfile, block));
}

void MainController::action_ligjhtmode_tab()
{
    closeColorPanel();
    light_mode_scrollview->show();
    userlight_view->hide();
    light_mode_tab->setImageName(QStringLiteral("tab_light_check"));
    customlight_mode_tab->setImageName(QStringLiteral("tab_light"));
    userlightmode_show = false;
}

void MainController::action_userlightmode_tab()
{
    closeColorPanel();
    userlight_view->show();
    userlight_view->raise();
    light_mode_scrollview->hide();
    customlight_mode_tab->setImageName(QStringLiteral("tab_light_check"));
    light_mode_tab->setImageName(QStringLiteral("tab_light"));
    userlightmode_show = true;
    // The picture shows the highlighted light, the one painting goes to.
    if (userLightRowOf(currentUserLightMode) >= 0)
        loadUserLightData(currentUserLightMode);
    updateUserLightNotice();
}
