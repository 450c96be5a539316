// The macro page: the library's list with delete and edit, the new-macro
// button, the macro window's opening, binding a macro to a key, and the
// upload of the whole macro store after each save.
#include "View/MainController.h"
#include "View/Question.h"

#include "Common/NotificationCenter.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "Protocol/Command.h"
#include "Protocol/KeyTableBlock.h"
#include "Protocol/MacroStoreBlock.h"
#include "Protocol/UploadSequences.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/Snapshot.h"
#include "View/MacroController.h"
#include "View/MacroWindowController.h"
#include "View/PageFrame.h"
#include "View/CustomMenu/KeyMenuViewController.h"
#include "View/CustomMenu/KeySubMenuMacroViewController.h"
#include "View/control/EmptyListHint.h"
#include "View/control/ButtonView.h"
#include "View/control/FlippedRect.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/control/TableItemView.h"
#include "View/control/Theme.h"

#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>
#include <map>

namespace {

using namespace PageFrame;
constexpr int kMargin = 16;
constexpr int kButtonWidth = 160;
constexpr int kButtonHeight = 32;
constexpr int kListX = 24;
constexpr int kListWidth = kPageWidth - 2 * kListX;
const QString kStoreNoteTopic = QStringLiteral("macro store");

enum RowButton { kDeleteRow = 1, kEditRow = 2 };
constexpr int kOpenMacroWindow = 1;

// The keys of every profile that play a macro, by profile.
using MacroKeys = std::map<int, std::vector<ProfileKey>>;

MacroKeys macroKeysOf(const DeviceSQLite& store)
{
    MacroKeys keys;
    for (int profile = Protocol::kFirstProfile; profile <= Protocol::kLastProfile; ++profile) {
        std::vector<ProfileKey> rows;
        store.queryKeysProfile(profile, rows);
        for (const ProfileKey& row : rows)
            if (row.macroType == KeyTableBlock::kMacro)
                keys[profile].push_back(row);
    }
    return keys;
}

// "Profile A: Escape, Caps Lock; Profile C: A", the keys that play `macroId`.
QString keyListOf(const MacroKeys& keys, int64_t macroId)
{
    QStringList profiles;
    for (const auto& [profile, rows] : keys) {
        QStringList names;
        for (const ProfileKey& row : rows)
            if (row.macroValue == macroId)
                names << (keyCodeRecord(row.keyValue) ? keyCodeRecord(row.keyValue)->full_name : QString::number(row.keyValue));
        if (!names.isEmpty())
            profiles << languageText(profileTextId(profile)) + QStringLiteral(": ") + names.join(QStringLiteral(", "));
    }
    return profiles.join(QStringLiteral("; "));
}

}  // namespace

void MainController::initMacroPage()
{
    macro_view = makePageView(this, QStringLiteral("macro_view"));

    label_macro_caption = new QLabel(macro_view);
    label_macro_caption->setObjectName(QStringLiteral("label_macro_caption"));
    label_macro_caption->setGeometry(kMargin, 12, kPageWidth - 2 * kMargin, 32);
    label_macro_caption->setStyleSheet(QStringLiteral("font-weight: bold;"));

    macro_table = new QListWidget(macro_view);
    macro_table->setObjectName(QStringLiteral("macro_table"));
    macro_table->setProperty("identifier", QStringLiteral("macrotable"));
    macro_table->setGeometry(kListX, 52, kListWidth, kPageHeight - 52 - kButtonHeight - 32);
    macro_table->setFrameShape(QFrame::NoFrame);
    macro_table->setSelectionMode(QAbstractItemView::NoSelection);
    macro_table->setFocusPolicy(Qt::NoFocus);
    macro_table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    macro_table->setStyleSheet(QStringLiteral("QListWidget { background: transparent; outline: 0; }"));
    macroListHint = new EmptyListHint(macro_table);

    btn_macro_newmacro = new IconButton(macro_view);
    btn_macro_newmacro->setObjectName(QStringLiteral("btn_macro_newmacro"));
    btn_macro_newmacro->setGeometry(
        flippedRect(kPageHeight, (kPageWidth - kButtonWidth) / 2, 16, kButtonWidth, kButtonHeight));
    btn_macro_newmacro->initControl(QStringLiteral("imgbtn_menu_n"), QStringLiteral("imgbtn_menu_h"));
    btn_macro_newmacro->setIcon(QStringLiteral("icon_macro_add"), QStringLiteral("icon_macro_add"), QRect(39, 8, 16, 16));
    btn_macro_newmacro->setText(QRect(60, 8, 90, 16), QStringLiteral("创建宏"));
    connect(btn_macro_newmacro, &QAbstractButton::clicked, this, [this] { action_macro_newmacro(); });
    macro_view->hide();
}

void MainController::registerMacroNotifications()
{
    if (macroObserversAdded_)
        return;
    macroObserversAdded_ = true;
    auto& center = NotificationCenter::defaultCenter();
    center.addObserver(QStringLiteral("UpdateMacroInfo"), [this](const QVariant& o) {
        UpdateMacroInfo();
        sendKeyTablesPlaying(o.toLongLong());
    }, this);
    center.addObserver(QStringLiteral("MacroTableViewButton"), [this](const QVariant& o) { MacroTableViewButton(o); }, this);
    center.addObserver(QStringLiteral("SubMenuItemMacroAction"), [this](const QVariant& o) { SubMenuItemMacroAction(o); },
                       this);
    center.addObserver(QStringLiteral("MacroFunctionAction"), [this](const QVariant& o) { MacroFunctionAction(o); }, this);
}

void MainController::loadMacroData()
{
    macro_datas.clear();
    std::vector<MacroInfo> macros;
    if (deviceDB)
        deviceDB->queryAllMacroData(macros);
    for (const MacroInfo& macro : macros) {
        std::vector<RecordInfo> steps;
        deviceDB->queryMacroRecord(macro.macroId, steps);
        macro_datas.append(QVariantMap{{"macroid", QVariant::fromValue<qint64>(macro.macroId)},
                                       {"text", macro.macroName},
                                       {"steps", int(steps.size())}});
    }
    reloadMacroTable();
}

void MainController::reloadMacroTable()
{
    if (!macro_table)
        return;
    // Rows are kept and renamed: every save reloads the list, and making
    // rows anew would cost the window a frame.
    while (macro_table->count() > macro_datas.size())
        delete macro_table->takeItem(macro_table->count() - 1);
    for (int row = 0; row < macro_datas.size(); ++row) {
        auto* view = qobject_cast<MacroTableItemView*>(macro_table->itemWidget(macro_table->item(row)));
        if (!view) {
            auto* item = new QListWidgetItem(macro_table);
            item->setSizeHint(QSize(kListWidth, MacroTableItemView::kRowHeight));
            view = new MacroTableItemView;
            view->resize(kListWidth, MacroTableItemView::kRowHeight);
            // Made before the row is shown, so its labels show with it.
            view->initView(row);
            macro_table->setItemWidget(item, view);
        }
        view->initView(row);
        view->setMacro(macro_datas[row].value("text").toString(), macro_datas[row].value("steps").toInt());
    }
}

void MainController::UpdateMacroInfo()
{
    loadMacroData();
    SaveMacroToKeyboard();
    // A renamed macro's keys show its new name.
    loadKeyMacro();
}

void MainController::sendKeyTablesPlaying(int64_t macroId)
{
    // The key table carries a macro's play count: the keys of a saved
    // macro are sent again.
    if (!deviceDB || macroId < 1)
        return;
    for (const auto& [profile, rows] : macroKeysOf(*deviceDB))
        if (std::any_of(rows.begin(), rows.end(), [macroId](const ProfileKey& row) { return row.macroValue == macroId; }))
            setKeyMacroData(profile);
}

void MainController::askToDeleteMacro(int64_t macroId, const QString& name)
{
    if (!deviceDB)
        return;
    const QString keys = keyListOf(macroKeysOf(*deviceDB), macroId);
    const auto [alert, cancel, remove] =
        askFirst(window(), QStringLiteral("deleteMacroAlert"), appText(AppText::DeleteMacroQuestion).arg(name),
                 keys.isEmpty() ? appText(AppText::DeleteMacroNoKeys) : appText(AppText::DeleteMacroKeys).arg(keys),
                 appText(AppText::DeleteMacroButton));
    cancel->setObjectName(QStringLiteral("deleteMacroCancel"));
    remove->setObjectName(QStringLiteral("deleteMacroOK"));
    alert->setStyleSheet(QStringLiteral("QPushButton#deleteMacroOK { background: %1; color: white; border: none;"
                                        " border-radius: 4px; padding: 5px 14px; }")
                             .arg(Theme::destructive().name()));
    connect(remove, &QAbstractButton::clicked, this, [this, macroId] { deleteMacro(macroId); });
    alert->open();
}

void MainController::deleteMacro(int64_t macroId)
{
    if (!deviceDB)
        return;
    std::vector<MacroInfo> before;
    const MacroKeys keys = macroKeysOf(*deviceDB);
    if (deviceDB->queryAllMacroData(before) < 1)
        return;
    const auto snapshot = snapshotBefore(SnapshotKind::kDeleteMacro);
    if (!snapshot || !deviceDB->deleteMacroProfile(macroId))
        return;
    const auto placeOf = [&before](int64_t id) {
        return std::find_if(before.begin(), before.end(), [id](const MacroInfo& m) { return m.macroId == id; }) -
               before.begin();
    };
    // The keys that played it go back to their own function; the keys of
    // the macros behind it name new places. The keyboard gets both at once,
    // so no key plays a macro the window no longer shows.
    std::vector<ProfileKey> freed;
    std::vector<int> profiles;
    for (const auto& [profile, rows] : keys)
        for (const ProfileKey& row : rows) {
            if (row.macroValue == macroId)
                freed.push_back({.profId = profile, .keyValue = row.keyValue, .macroType = KeyTableBlock::kMacro});
            if (placeOf(row.macroValue) >= placeOf(macroId) && (profiles.empty() || profiles.back() != profile))
                profiles.push_back(profile);
        }
    if (!freed.empty() && !deviceDB->addKeyProfiles(freed))
        showProblem(appText(AppText::KeyAssignmentSaveFailed), QStringLiteral("key-assignment"));
    loadMacroData();
    SaveMacroToKeyboard();
    for (int profile : profiles)
        setKeyMacroData(profile);
    loadKeyMacro();
    const auto deleted = std::find_if(before.begin(), before.end(), [macroId](const MacroInfo& m) { return m.macroId == macroId; });
    if (deleted != before.end())
        showExchangeResult(appText(AppText::MacroDeleted).arg(appText(AppText::QuotedName).arg(deleted->macroName)), *snapshot);
}

void MainController::MacroTableViewButton(const QVariant& object)
{
    const QVariantMap args = object.toMap();
    const int index = args.value("index", -1).toInt();
    if (index < 0 || index >= macro_datas.size())
        return;
    const int64_t macroId = macro_datas[index].value("macroid").toLongLong();
    switch (args.value("type").toInt()) {
    case kDeleteRow:
        askToDeleteMacro(macroId, macro_datas[index].value("text").toString());
        break;
    case kEditRow:
        NotificationCenter::defaultCenter().post(QStringLiteral("SubMenuItemMacroAction"),
                                                 QVariantMap{{"type", kOpenMacroWindow},
                                                             {"macroid", QVariant::fromValue<qint64>(macroId)}});
        break;
    default: break;
    }
}

void MainController::SubMenuItemMacroAction(const QVariant& object)
{
    const QVariantMap args = object.toMap();
    if (args.value("type").toInt() == kOpenMacroWindow && deviceState)
        showMacroWindow(args.value("macroid").toLongLong());
    if (kbKeyMacroSubMenu)
        kbKeyMacroSubMenu->hide();
}

void MainController::action_macro_newmacro()
{
    if (deviceState)
        showMacroWindow(0);
}

void MainController::showMacroWindow(int64_t macroId)
{
    // The window open holds work of its own: it comes to the front.
    if (macroWindow && macroWindow->isVisible()) {
        macroWindow->raise();
        macroWindow->activateWindow();
        return;
    }
    currentMacorId = macroId;
    currentDeviceDB = deviceDB.get();
    currentDeviceComm = currentTransport();
    if (macroWindow)
        macroWindow->close();
    macroWindow = new MacroWindowController(this);
    macroWindow->controller()->viewDidLoad();
    macroWindow->show();
    macroWindow->controller()->viewDidAppear();
}

void MainController::MacroFunctionAction(const QVariant& object)
{
    if (!deviceDB)
        return;
    const int64_t macroId = object.toLongLong();
    MacroInfo info;
    deviceDB->queryMacroInfo(macroId, info);
    ProfileKey key;
    key.macroType = 12;
    key.macroValue = int(macroId);
    key.macroDesc = info.macroName;
    addCustomKey(key);
    for (QWidget* window : std::initializer_list<QWidget*>{keyboardKeyMenu, kbKeyMacroSubMenu})
        if (window)
            window->hide();
}

void MainController::SaveMacroToKeyboard()
{
    if (!deviceDB)
        return;
    const int64_t macroCount = deviceDB->getMacroCount();
    const int64_t recordCount = deviceDB->getRecordCount();
    if (!MacroStoreBlock::withinRecordLimit(macroCount, recordCount)) {
        const int64_t counted = 4 * recordCount + 8 * macroCount;
        showMacroStoreNote(appText(AppText::MacroStoreTooManySteps)
                               .arg(counted)
                               .arg(MacroStoreBlock::kRecordLimitBytes)
                               .arg(counted - MacroStoreBlock::kRecordLimitBytes));
        return;
    }
    std::vector<MacroInfo> macros;
    deviceDB->queryAllMacroData(macros);
    // A library that reads back shorter than it counts would wipe macros
    // from the keyboard: send nothing then.
    if (int64_t(macros.size()) != macroCount)
        return;
    std::vector<MacroStoreBlock::MacroSteps> steps(macros.size());
    for (std::size_t place = 0; place < macros.size(); ++place) {
        // Unread steps would go out as an empty macro over the keyboard's.
        if (!deviceDB->readMacroSteps(macros[place].macroId, steps[place])) {
            const QString name = macros[place].macroName;
            const QString reason = QString::fromStdString(deviceDB->health.lastFailure.reason);
            withdrawProblem(kStoreNoteTopic);
            showProblem([name, reason] { return appText(AppText::MacroStepsUnread).arg(name, reason); },
                        kStoreNoteTopic);
            return;
        }
    }
    const MacroStoreBlock::Result store = MacroStoreBlock::build(steps);
    if (store.macrosOver > 0) {
        showMacroStoreNote(appText(AppText::MacroStoreTooManyMacros)
                               .arg(store.macros)
                               .arg(MacroStoreBlock::kMaxMacros)
                               .arg(store.macrosOver));
        return;
    }
    if (store.bytesOver > 0) {
        const std::size_t needed = store.bytesOver + MacroStoreBlock::kMaxBytes;
        showMacroStoreNote(appText(AppText::MacroStoreTooLong)
                               .arg(needed)
                               .arg(MacroStoreBlock::kMaxBytes)
                               .arg(store.bytesOver));
        return;
    }
    withdrawProblem(kStoreNoteTopic);
    submitSequence(UploadSequences::macroStore(store.block));
}

void MainController::showMacroStoreNote(const QString& message)
{
    // A newer count replaces an older note.
    withdrawProblem(kStoreNoteTopic);
    showProblem(message, kStoreNoteTopic);
}
