#include "View/AppRulesSection.h"

#include "Common/Globals.h"
#include "FocusWatch/DesktopEntries.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "View/control/FuncButton.h"
#include "View/control/Theme.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStandardPaths>
#include <QToolButton>

namespace {
constexpr int kSwitchWidth = 44;
constexpr int kSwitchHeight = 24;
constexpr int kRowHeight = 30;
constexpr int kProfiles = 4;  // the profiles the profile menu offers
constexpr int kChooserWidth = 78;
constexpr int kRemoveWidth = 22;
constexpr int kIconSize = 16;

// A desktop entry's Icon: a path, a name in the icon theme, or (for older
// packages, and where no theme is set up) a file in the pixmaps folder.
QIcon entryIcon(const QString& icon)
{
    if (icon.isEmpty())
        return {};
    if (QDir::isAbsolutePath(icon))
        return QFileInfo::exists(icon) ? QIcon(icon) : QIcon();
    const QIcon themed = QIcon::fromTheme(icon);
    if (!themed.isNull())
        return themed;
    for (const char* suffix : {".png", ".svg", ".xpm"}) {
        const QString file = QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                                    QStringLiteral("pixmaps/") + icon + QLatin1String(suffix));
        if (!file.isEmpty())
            return QIcon(file);
    }
    return {};
}

}  // namespace

AppRulesSection::AppLook AppRulesSection::lookOf(const QString& app)
{
    const DesktopEntry* entry = DesktopEntries::installed().find(app);
    if (!entry)
        return {app, {}};
    const QString language = G_Language == kLanguageChinese ? QStringLiteral("zh") : QStringLiteral("en");
    return {entry->nameFor(language), entryIcon(entry->icon)};
}

AppRulesSection::AppRulesSection(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("app_rules_section"));
    resize(kWidth, kHeight);
    title_ = new QLabel(this);
    title_->setObjectName(QStringLiteral("label_app_rules"));
    title_->setGeometry(0, 0, kWidth - kSwitchWidth - 4, 40);
    title_->setWordWrap(true);
    title_->setStyleSheet(QStringLiteral("font-weight: bold;"));
    auto* toggle = new SwitchButton(this);
    toggle->setObjectName(QStringLiteral("switch_app_rules"));
    toggle->setGeometry(kWidth - kSwitchWidth, 8, kSwitchWidth, kSwitchHeight);
    connect(toggle, &QAbstractButton::clicked, this, [this](bool on) { emit followingToggled(on); });
    switch_ = toggle;
    note_ = new QLabel(this);
    note_->setObjectName(QStringLiteral("label_app_rules_note"));
    note_->setGeometry(0, 40, kWidth, 48);
    note_->setWordWrap(true);
    note_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("app_rules_table"));
    list_->setGeometry(0, 90, kWidth, 4 * kRowHeight + 4);
    list_->setSelectionMode(QAbstractItemView::NoSelection);
    appField_ = new QComboBox(this);
    appField_->setObjectName(QStringLiteral("edit_app_rule"));
    appField_->setEditable(true);
    appField_->setInsertPolicy(QComboBox::NoInsert);
    appField_->setGeometry(0, 220, kWidth - 52, 26);
    connect(appField_->lineEdit(), &QLineEdit::returnPressed, this, [this] { addTypedRule(); });
    add_ = new QPushButton(this);
    add_->setObjectName(QStringLiteral("btn_app_rule_add"));
    add_->setGeometry(kWidth - 48, 220, 48, 26);
    connect(add_, &QPushButton::clicked, this, [this] { addTypedRule(); });
    otherwiseLabel_ = new QLabel(this);
    otherwiseLabel_->setGeometry(0, 252, kWidth - kChooserWidth - 30, 26);
    otherwise_ = new QComboBox(this);
    otherwise_->setObjectName(QStringLiteral("combo_app_rule_otherwise"));
    otherwise_->setGeometry(kWidth - kChooserWidth - 30, 252, kChooserWidth + 30, 26);
    connect(otherwise_, &QComboBox::activated, this, [this](int index) {
        edit([&](AppRuleSet& r) { r.otherwise = otherwise_->itemData(index).toInt(); });
    });
    retranslate();
    setState(false, false);
}

QAbstractButton* AppRulesSection::followSwitch() const { return switch_; }

void AppRulesSection::edit(const std::function<void(AppRuleSet&)>& change)
{
    AppRuleSet edited = rules_;
    change(edited);
    rules_ = edited;  // a second edit before the first is stored builds on it
    // Queued: storing the rules rebuilds the rows, and the row whose button
    // or chooser sent this must outlive its own signal.
    QMetaObject::invokeMethod(this, [this, edited] { emit rulesEdited(edited); }, Qt::QueuedConnection);
}

void AppRulesSection::addTypedRule()
{
    // An application offered in the list shows its entry's name; the rule
    // takes its identity. Anything typed is taken as the identity itself.
    const QString typed = appField_->currentText().trimmed();
    const int offered = appField_->findText(typed, Qt::MatchFixedString);
    const QString app = offered >= 0 ? appField_->itemData(offered).toString() : typed;
    if (app.isEmpty() || !editable_)
        return;
    appField_->setEditText(QString());
    // New rules go last: the first match wins, in the order the user sees.
    edit([&](AppRuleSet& r) { r.rules.push_back({app, 1}); });
}

void AppRulesSection::setRules(const AppRuleSet& rules)
{
    rules_ = rules;
    rebuildRows();
    const int at = otherwise_->findData(rules_.otherwise);
    otherwise_->setCurrentIndex(at < 0 ? 0 : at);
}

void AppRulesSection::setFollowing(bool on) { switch_->setChecked(on); }

void AppRulesSection::setSeenApplications(const QStringList& apps)
{
    seen_ = apps;
    const QString typed = appField_->currentText();
    appField_->clear();
    for (const QString& app : apps) {
        const AppLook look = lookOf(app);
        appField_->addItem(look.icon, look.name, app);
        appField_->setItemData(appField_->count() - 1, app, Qt::ToolTipRole);
    }
    appField_->setEditText(typed);
}

void AppRulesSection::setState(bool available, bool editable)
{
    available_ = available;
    editable_ = editable;
    const AppText note = !available ? AppText::AppRulesUnavailable
                         : !editable ? AppText::AppRulesNoKeyboard
                                     : AppText::AppRulesHint;
    note_->setText(appText(note));
    Theme::setTextColor(note_, available ? Theme::normalText() : Theme::problemText());
    for (QWidget* w : std::initializer_list<QWidget*>{switch_, list_, appField_, add_, otherwise_})
        w->setEnabled(available && editable);
}

void AppRulesSection::fillProfileChooser(QComboBox* chooser, bool withLeave) const
{
    chooser->clear();
    if (withLeave)
        chooser->addItem(appText(AppText::AppRulesLeave), kLeaveProfile);
    for (int profile = 1; profile <= kProfiles; ++profile)
        chooser->addItem(languageText(profileTextId(profile)), profile);
}

void AppRulesSection::retranslate()
{
    title_->setText(appText(AppText::AppRulesTitle));
    appField_->lineEdit()->setPlaceholderText(appText(AppText::AppRulesAppPlaceholder));
    add_->setText(appText(AppText::AppRulesAdd));
    otherwiseLabel_->setText(appText(AppText::AppRulesOtherwise));
    fillProfileChooser(otherwise_, true);
    setState(available_, editable_);
    setRules(rules_);
    setSeenApplications(seen_);  // the entries' names in this language
}

void AppRulesSection::rebuildRows()
{
    list_->clear();
    for (int i = 0; i < int(rules_.rules.size()); ++i) {
        auto* item = new QListWidgetItem(list_);
        item->setSizeHint(QSize(kWidth - 8, kRowHeight));
        list_->setItemWidget(item, makeRow(i));
    }
}

QWidget* AppRulesSection::makeRow(int index)
{
    const AppRule& rule = rules_.rules[std::size_t(index)];
    auto* row = new QWidget;
    const int inner = kWidth - 8;
    const AppLook look = lookOf(rule.app);
    int nameLeft = 4;
    if (!look.icon.isNull()) {
        auto* icon = new QLabel(row);
        icon->setObjectName(QStringLiteral("icon_app_rule"));
        icon->setGeometry(nameLeft, (kRowHeight - kIconSize) / 2, kIconSize, kIconSize);
        icon->setPixmap(look.icon.pixmap(kIconSize, kIconSize));
        nameLeft += kIconSize + 4;
    }
    auto* name = new QLabel(row);
    name->setObjectName(QStringLiteral("label_app_rule"));
    name->setGeometry(nameLeft, 2, inner - kChooserWidth - kRemoveWidth - 4 - nameLeft, kRowHeight - 4);
    name->setText(name->fontMetrics().elidedText(look.name, Qt::ElideRight, name->width()));
    // The identity the rule matches, under the name shown.
    name->setToolTip(look.name == rule.app ? rule.app : look.name + QLatin1Char('\n') + rule.app);
    auto* chooser = new QComboBox(row);
    chooser->setObjectName(QStringLiteral("combo_app_rule_profile"));
    chooser->setGeometry(inner - kChooserWidth - kRemoveWidth - 2, 2, kChooserWidth, kRowHeight - 4);
    fillProfileChooser(chooser, false);
    chooser->setCurrentIndex(chooser->findData(rule.profile));
    connect(chooser, &QComboBox::activated, this, [this, index, chooser](int at) {
        edit([&](AppRuleSet& r) { r.rules[std::size_t(index)].profile = chooser->itemData(at).toInt(); });
    });
    auto* remove = new QToolButton(row);
    remove->setObjectName(QStringLiteral("btn_app_rule_remove"));
    remove->setText(QStringLiteral("\u00d7"));
    remove->setToolTip(appText(AppText::AppRulesRemove));
    remove->setAutoRaise(true);
    remove->setGeometry(inner - kRemoveWidth, 4, kRemoveWidth, kRowHeight - 8);
    connect(remove, &QToolButton::clicked, this, [this, index] {
        edit([&](AppRuleSet& r) { r.rules.erase(r.rules.begin() + index); });
    });
    return row;
}
