#pragma once
// The system page's "Switch profile by application" section: the on/off
// switch, the list of rules (an application and its profile, each with a
// remove button), the field that adds a rule (offering the applications seen
// in front, most recent first, or any name typed) and the profile for every
// other application. Applications show the name and icon of their desktop
// entry where one is found. It only shows and edits values; MainController
// stores them and acts on them.

#include "Common/AppProfileRules.h"

#include <QIcon>
#include <QStringList>
#include <QWidget>

class QAbstractButton;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;

class AppRulesSection : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWidth = 192;
    static constexpr int kHeight = 280;

    explicit AppRulesSection(QWidget* parent = nullptr);

    void setRules(const AppRuleSet& rules);
    const AppRuleSet& rules() const { return rules_; }
    void setFollowing(bool on);
    void setSeenApplications(const QStringList& apps);
    // `available`: the desktop tells which window is in front; `editable`:
    // a keyboard (and so its rules) is there.
    void setState(bool available, bool editable);
    void retranslate();  // texts in the language of the moment

    QAbstractButton* followSwitch() const;
    QListWidget* ruleList() const { return list_; }
    QComboBox* appField() const { return appField_; }
    QPushButton* addButton() const { return add_; }
    QComboBox* otherwiseChooser() const { return otherwise_; }

signals:
    void rulesEdited(const AppRuleSet& rules);
    void followingToggled(bool on);

private:
    struct AppLook {
        QString name;
        QIcon icon;  // null where the entry has none, or there is no entry
    };
    static AppLook lookOf(const QString& app);
    void rebuildRows();
    QWidget* makeRow(int index);
    void addTypedRule();
    void fillProfileChooser(QComboBox* chooser, bool withLeave) const;
    void edit(const std::function<void(AppRuleSet&)>& change);

    AppRuleSet rules_;
    QStringList seen_;
    bool available_ = false;
    bool editable_ = false;
    QLabel* title_ = nullptr;
    QAbstractButton* switch_ = nullptr;
    QLabel* note_ = nullptr;
    QListWidget* list_ = nullptr;
    QComboBox* appField_ = nullptr;
    QPushButton* add_ = nullptr;
    QLabel* otherwiseLabel_ = nullptr;
    QComboBox* otherwise_ = nullptr;
};
