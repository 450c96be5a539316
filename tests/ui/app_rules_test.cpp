// Profiles that follow the application in front, in a window in session with
// a virtual keyboard, fed by a scripted focus source: a rule's switch sends
// the very frames of the profile menu, waits for an upload, yields to a
// profile picked by hand; and the system page's section edits the rules.
#include "AppDelegate.h"
#include "FocusWatch/FocusSource.h"
#include "Language/AppText.h"
#include "SQLite/DeviceSQLite.h"
#include "View/AppRulesSection.h"
#include "support/FakeKeySource.h"
#include "support/TraceFrames.h"
#include "support/VirtualSession.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

using namespace testing_support;

namespace {

class ScriptedFocusSource : public FocusSource {
public:
    explicit ScriptedFocusSource(bool available) : available_(available) {}
    bool available() const override { return available_; }
    QString name() const override { return QStringLiteral("scripted"); }
    void front(const QString& app, bool own = false) { emit applicationInFront(app, own); }

private:
    bool available_;
};

struct FollowingSession {
    ScriptedFocusSource* focus = nullptr;
    VirtualSession session{[this](MainController::Environment& env) {
        env.focusSourceFactory = [this] {
            auto source = std::make_unique<ScriptedFocusSource>(true);
            focus = source.get();
            return source;
        };
    }};
    MainController& controller = *session.controller;
    VirtualKeyboard& keyboard = *session.keyboard;

    void settle()
    {
        QCoreApplication::processEvents();
        ASSERT_TRUE(controller.transport().waitForIdle(std::chrono::seconds(10)));
        QCoreApplication::processEvents();
        ASSERT_TRUE(controller.transport().waitForIdle(std::chrono::seconds(10)));
    }
    // What `action` made the keyboard receive.
    std::vector<std::string> framesOf(const std::function<void()>& action)
    {
        settle();
        const auto from = lastFrameTime(keyboard);
        action();
        settle();
        return framesSince(keyboard, from);
    }
    void pickInMenu(int profile) { controller.MenuItemMouseUpAction(QVariantMap{{"menuid", profile}}); }
};

TEST(ProfilesFollowApplications, RuleSwitchesLikeTheProfileMenuWaitsForUploadsAndYieldsToAHandPick)
{
    FollowingSession s;
    ASSERT_TRUE(s.session.connected());
    // That a rule sends the profile menu's frames is checked end to end on
    // X11 and sway; here, what may hold a switch back.
    const auto menuTo2 = s.framesOf([&] { s.pickInMenu(2); });
    s.pickInMenu(1);
    s.controller.setAppRules({{{"firefox", 2}, {"Gimp", 3}}, kLeaveProfile});
    s.controller.setFollowingApplications(true);
    s.focus->front("gimp");

    // The user opens our window and picks Profile A: back in the same
    // application, the pick holds.
    s.focus->front("orvane", true);
    s.pickInMenu(1);
    EXPECT_TRUE(s.framesOf([&] { s.focus->front("gimp"); }).empty());
    EXPECT_EQ(s.controller.currentProfile, 1);

    // During an upload the switch waits for its end, then goes out once.
    auto expected = s.framesOf([&] { s.controller.setKeyMacroData(1); });
    expected.insert(expected.end(), menuTo2.begin(), menuTo2.end());
    EXPECT_EQ(s.framesOf([&] {
        s.controller.setKeyMacroData(1);
        ASSERT_TRUE(s.controller.hidcomm_busy());
        s.focus->front("firefox");
    }),
              expected);
    EXPECT_EQ(s.controller.currentProfile, 2);
}

TEST(ProfilesFollowApplications, SectionEditsTheRulesOfTheConnectedModel)
{
    FollowingSession s;
    ASSERT_TRUE(s.session.connected());
    AppRulesSection& section = *s.controller.appRulesSection;
    s.focus->front("gimp");
    s.focus->front("krita");
    ASSERT_EQ(section.appField()->count(), 2);
    EXPECT_EQ(section.appField()->itemText(0), "krita") << "most recent first";

    QTest::mouseClick(section.followSwitch(), Qt::LeftButton);
    EXPECT_TRUE(s.controller.profileFollower.enabled());
    section.appField()->setCurrentIndex(1);
    QTest::mouseClick(section.addButton(), Qt::LeftButton);
    section.appField()->lineEdit()->setText("Blender");
    QTest::keyClick(section.appField()->lineEdit(), Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return section.ruleList()->count() == 2; }));

    auto* chooser = section.ruleList()->itemWidget(section.ruleList()->item(1))->findChild<QComboBox*>();
    QTest::keyClick(chooser, Qt::Key_Down);  // Profile A to Profile B
    QTest::keyClick(section.otherwiseChooser(), Qt::Key_End);
    const AppRuleSet expected{{{"gimp", 1}, {"Blender", 2}}, 4};
    AppRuleSet stored;
    ASSERT_TRUE(waitUntil([&] { return s.controller.deviceDB->queryAppRules(stored) && stored == expected; }))
        << stored.rules.size();
    EXPECT_EQ(s.controller.profileFollower.rules(), expected);

    auto* remove = section.ruleList()->itemWidget(section.ruleList()->item(0))->findChild<QAbstractButton*>(
        "btn_app_rule_remove");
    QTest::mouseClick(remove, Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return section.ruleList()->count() == 1; }));
    s.controller.deviceDB->queryAppRules(stored);
    EXPECT_EQ(stored, (AppRuleSet{{{"Blender", 2}}, 4}));
}

TEST(ProfilesFollowApplications, SectionSaysWhenTheDesktopDoesNotTell)
{
    VirtualSession session([](MainController::Environment& env) {
        env.focusSourceFactory = [] { return std::make_unique<ScriptedFocusSource>(false); };
    });
    ASSERT_TRUE(session.connected());
    AppRulesSection& section = *session.controller->appRulesSection;
    EXPECT_EQ(section.findChild<QLabel*>("label_app_rules_note")->text(), appText(AppText::AppRulesUnavailable));
    EXPECT_FALSE(section.addButton()->isEnabled());
    EXPECT_FALSE(section.followSwitch()->isEnabled());
}

TEST(ProfilesFollowApplications, WhileRulesAreOnClosingTheWindowLeavesTheAppInTheTrayAndSaysSoOnce)
{
    TempDataFolder data;
    AppOptions options;
    options.dataDir = data.path();
    AppDelegate app(options, {[] { return std::unique_ptr<HidManager>(); }, FakeKeySource::make,
                              [] { return InputDeviceAccess{InputDeviceAccess::State::Readable, {}}; }, [] { return true; }});
    app.applicationDidFinishLaunching();
    MainController& controller = *app.controller();
    ProfileFollower& follower = controller.profileFollower;
    struct Case {
        bool tells, on;
        AppRuleSet rules;
        bool keeps;
    };
    for (const Case& c : {Case{true, true, {{{"gimp", 3}}, kLeaveProfile}, true}, Case{true, true, {{}, 2}, true},
                          Case{true, true, {}, false}, Case{true, false, {{{"gimp", 3}}, 2}, false},
                          Case{false, true, {{{"gimp", 3}}, 2}, false}}) {
        controller.focusSource = std::make_unique<ScriptedFocusSource>(c.tells);
        follower.setEnabled(c.on);
        follower.setRules(c.rules);
        EXPECT_EQ(app.keepsRunningInTray(), c.keeps) << c.tells << c.on << c.rules.rules.size();
    }
    controller.focusSource = std::make_unique<ScriptedFocusSource>(true);
    follower.setEnabled(true);
    QWidget* window = controller.window();
    for (int close = 0; close < 2; ++close) {
        window->show();
        window->close();
        EXPECT_TRUE(app.trayNoticeShown && !window->isVisible() && !QApplication::quitOnLastWindowClosed());
    }
}

}  // namespace
