#include "View/CustomMenu/KeySubMenuMacroViewController.h"

#include "Common/NotificationCenter.h"
#include "Language/Language.h"
#include "SQLite/DeviceSQLite.h"
#include "View/control/ButtonView.h"
#include "View/control/FlippedRect.h"
#include "View/control/TableItemView.h"

#include <QLabel>
#include <QListWidget>
#include <QShowEvent>

#include <algorithm>

namespace {

constexpr int kWidth = 180;
constexpr int kEmptyHeight = 42;
constexpr int kRowHeight = 36;
constexpr int kMaxRows = 6;
constexpr int kListWidth = 170;
constexpr int kButtonWidth = 174;
constexpr int kButtonHeight = 32;

}  // namespace

KeySubMenuMacroViewController::KeySubMenuMacroViewController(QWidget* parent) : FramelessWindow(parent)
{
    setObjectName(QStringLiteral("kbKeyMacroSubMenu"));
    resize(kWidth, kEmptyHeight);
    viewDidLoad();
}

void KeySubMenuMacroViewController::viewDidLoad()
{
    btn_createMacro = new IconButton(this);
    btn_createMacro->setObjectName(QStringLiteral("btn_createMacro"));
    btn_createMacro->resize(kButtonWidth, kButtonHeight);
    btn_createMacro->initControl(QStringLiteral("imgbtn_menu_n"), QStringLiteral("imgbtn_menu_h"));
    btn_createMacro->setIcon(QStringLiteral("icon_macro_add"), QStringLiteral("icon_macro_add"), QRect(43, 8, 16, 16));
    connect(btn_createMacro, &QAbstractButton::clicked, this, [] {
        NotificationCenter::defaultCenter().post(QStringLiteral("SubMenuItemMacroAction"),
                                                 QVariantMap{{QStringLiteral("type"), 1}, {QStringLiteral("macroid"), 0}});
    });

    macro_tableview = new QListWidget(this);
    macro_tableview->setObjectName(QStringLiteral("macrotable"));
    macro_tableview->setFrameShape(QFrame::NoFrame);
    macro_tableview->setStyleSheet(QStringLiteral("QListWidget { background: transparent; }"
                                                  "QListWidget::item:selected { background: transparent; }"));
    macro_tableview->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    macro_scrollview = macro_tableview;
    connect(macro_tableview, &QListWidget::itemSelectionChanged, this, [this] { selectionDidChange(); });
}

void KeySubMenuMacroViewController::showEvent(QShowEvent* event)
{
    viewDidAppear();
    FramelessWindow::showEvent(event);
}

void KeySubMenuMacroViewController::viewDidAppear()
{
    btn_createMacro->setText(QRect(70, 8, 90, 16), languageText(551));
    loadMacroData();
    layoutForRows(int(macro_datas.size()));
}

void KeySubMenuMacroViewController::loadMacroData()
{
    macro_datas.clear();
    std::vector<MacroInfo> macros;
    if (deviceDB)
        deviceDB->queryAllMacroData(macros);
    for (const MacroInfo& macro : macros)
        macro_datas.append({{QStringLiteral("macroid"), qint64(macro.macroId)}, {QStringLiteral("text"), macro.macroName}});

    const QSignalBlocker quiet(macro_tableview);  // a refill is no choice of the user's
    macro_tableview->clear();
    for (const QVariantMap& macro : std::as_const(macro_datas)) {
        auto* item = new QListWidgetItem(macro_tableview);
        item->setSizeHint(QSize(kListWidth, kRowHeight));
        auto* row = new TableItemView;
        row->resize(kListWidth, kRowHeight);
        row->initView();
        row->setText(macro.value(QStringLiteral("text")).toString());
        macro_tableview->setItemWidget(item, row);
    }
}

void KeySubMenuMacroViewController::layoutForRows(int rows)
{
    int height = kEmptyHeight;
    if (rows > 0) {
        const int shown = std::min(rows, kMaxRows + 1);
        // Six rows and more than six share one height: the list then scrolls.
        height = shown > kMaxRows ? 276 : kRowHeight * shown + 60;
        const int listHeight = shown > kMaxRows ? 232 : kRowHeight * shown + 16;
        macro_scrollview->setGeometry(flippedRect(height, 5, 40, kListWidth, listHeight));
    }
    macro_scrollview->setVisible(rows > 0);
    resize(kWidth, height);
    btn_createMacro->move(flippedRect(height, 3, 5, kButtonWidth, kButtonHeight).topLeft());
}

void KeySubMenuMacroViewController::selectionDidChange()
{
    // A selection that went away names no macro: nothing to post.
    const int row = macro_tableview->currentRow();
    if (row < 0 || row >= macro_datas.size() || macro_tableview->selectedItems().isEmpty())
        return;
    NotificationCenter::defaultCenter().post(QStringLiteral("MacroFunctionAction"),
                                             macro_datas[row].value(QStringLiteral("macroid")));
}
