// The macro page: the library's list with delete and edit, the new-macro
// button, the macro window's opening, binding a macro to a key, and the
// upload of the whole macro store after each save.
#include "View/MainController.h"

#include "Common/NotificationCenter.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "Protocol/MacroStoreBlock.h"
#include "Protocol/UploadSequences.h"
#include "SQLite/DeviceSQLite.h"
#include "View/MacroController.h"
#include "View/MacroWindowController.h"
#include "View/PageFrame.h"
#include "View/CustomMenu/KeyMenuViewController.h"
#include "View/CustomMenu/KeySubMenuMacroViewController.h"
#include "View/control/EmptyListHint.h"
#include "View/control/ButtonView.h"
#include "View/control/FlippedRect.h"
#include "View/control/TableItemView.h"

#include <QLabel>
#include <QListWidget>

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
    center.addObserver(QStringLiteral("UpdateMacroInfo"), [this](const QVariant&) { UpdateMacroInfo(); }, this);
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
    for (const MacroInfo& macro : macros)
        macro_datas.append(QVariantMap{{"macroid", QVariant::fromValue<qint64>(macro.macroId)}, {"text", macro.macroName}});
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
            macro_table->setItemWidget(item, view);
        }
        view->initView(row);
        const QString name = macro_datas[row].value("text").toString();
        view->textView->setText(name);
        view->setToolTip(name);
    }
}

void MainController::UpdateMacroInfo()
{
    loadMacroData();
    SaveMacroToKeyboard();
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
        // Nothing goes to the keyboard: it keeps its store until the next save.
        if (deviceDB && deviceDB->deleteMacroProfile(macroId)) {
            macro_datas.removeAt(index);
            reloadMacroTable();
        }
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
    for (std::size_t place = 0; place < macros.size(); ++place)
        deviceDB->queryMacroRecord(macros[place].macroId, steps[place]);
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
