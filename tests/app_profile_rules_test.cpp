// Profiles that follow the application in front: matching, the switching
// policy driven by a scripted sequence of applications, and where the rules
// are kept in the device database.
#include "Common/AppProfileRules.h"
#include "SQLite/DeviceSQLite.h"
#include "support/StoreTestSupport.h"

#include <gtest/gtest.h>

using namespace testing_support;

namespace {

using Hold = ProfileFollower::Hold;

const AppRuleSet kRules{{{"firefox", 2}, {"Gimp", 3}, {"FIREFOX", 4}}, kLeaveProfile};

TEST(AppProfileRules, FirstMatchingRuleWinsWithoutRegardToCase)
{
    EXPECT_EQ(profileForApplication(kRules, "Firefox"), 2);  // not the later FIREFOX rule
    EXPECT_EQ(profileForApplication(kRules, "gimp"), 3);
    EXPECT_EQ(profileForApplication(kRules, "gimp-2.10"), std::nullopt);  // whole names only
    EXPECT_EQ(profileForApplication(kRules, ""), std::nullopt);

    AppRuleSet withDefault = kRules;
    withDefault.otherwise = 1;
    EXPECT_EQ(profileForApplication(withDefault, "kate"), 1);
    EXPECT_EQ(profileForApplication(withDefault, "gimp"), 3);
    EXPECT_EQ(profileForApplication(withDefault, ""), std::nullopt);  // nothing known in front
}

// Feeds `apps` to a follower in turn and answers the switches it made.
struct ScriptedFocus {
    ProfileFollower follower;
    int current = 1;
    std::vector<int> switches;

    explicit ScriptedFocus(AppRuleSet rules)
    {
        follower.setRules(std::move(rules));
        follower.setEnabled(true);
    }
    void front(const QString& app, bool own = false, Hold hold = Hold::None)
    {
        follower.applicationInFront(app, own);
        settle(hold);
    }
    void settle(Hold hold = Hold::None)
    {
        if (auto p = follower.takeSwitch(current, hold)) {
            switches.push_back(*p);
            current = *p;
        }
    }
};

TEST(ProfileFollower, SwitchesOncePerChangeAndFollowsTheDefault)
{
    ScriptedFocus focus({{{"firefox", 2}, {"gimp", 3}}, 4});
    focus.front("firefox");
    focus.front("Firefox");  // same application: no change
    focus.settle();
    focus.front("gimp");
    focus.front("kate");     // no rule: the default
    focus.front("konsole");  // default again, already in profile 4
    focus.front("firefox");
    EXPECT_EQ(focus.switches, (std::vector<int>{2, 3, 4, 2}));
    EXPECT_EQ(focus.follower.seenApplications(), (QStringList{"firefox", "konsole", "kate", "gimp"}));

    // Changed rules apply to the application in front at its next report;
    // "leave as it is" and the switch turned off send nothing.
    focus.follower.setRules({{{"firefox", 3}}, kLeaveProfile});
    focus.front("firefox");
    focus.front("kate");
    focus.follower.setEnabled(false);
    focus.front("firefox");
    EXPECT_EQ(focus.switches, (std::vector<int>{2, 3, 4, 2, 3}));
}

TEST(ProfileFollower, WaitsForAnUploadAndForInputCapture)
{
    ScriptedFocus focus({{{"firefox", 2}, {"gimp", 3}}, kLeaveProfile});
    focus.front("firefox", false, Hold::Upload);
    EXPECT_TRUE(focus.switches.empty());
    EXPECT_TRUE(focus.follower.switchWaiting());
    focus.settle(Hold::InputCapture);
    EXPECT_TRUE(focus.switches.empty());
    focus.settle();  // the upload and the capture ended
    focus.settle();
    EXPECT_EQ(focus.switches, (std::vector<int>{2})) << "once, when free";

    // A newer application replaces what waited.
    focus.front("gimp", false, Hold::Upload);
    focus.front("kate", false, Hold::Upload);
    focus.settle();
    EXPECT_EQ(focus.switches, (std::vector<int>{2}));
}

TEST(ProfileFollower, OwnWindowAndManualPick)
{
    ScriptedFocus focus({{{"firefox", 2}, {"gimp", 3}}, kLeaveProfile});
    focus.front("gimp");
    focus.front("orvane", true);  // the user opens our window ...
    focus.current = 1;            // ... and picks Profile A by hand
    focus.follower.profilePickedByHand();
    focus.front("gimp");  // back to the same application: the pick holds
    EXPECT_EQ(focus.switches, (std::vector<int>{3}));
    EXPECT_EQ(focus.current, 1);
    focus.front("firefox");
    focus.front("gimp");  // another application came between: rules apply again
    EXPECT_EQ(focus.switches, (std::vector<int>{3, 2, 3}));

    // A switch waiting for an upload does not go out while our window is in
    // front, and a hand pick there drops it.
    focus.front("firefox", false, Hold::Upload);
    focus.front("orvane", true);
    focus.settle();
    EXPECT_FALSE(focus.follower.switchWaiting());
    focus.follower.profilePickedByHand();
    focus.front("firefox");
    EXPECT_EQ(focus.switches, (std::vector<int>{3, 2, 3}));
}

TEST(AppRuleStore, KeptByProfileResetClearedByFullWipe)
{
    TempDataFolder folder;
    const AppRuleSet rules{{{"firefox", 2}, {"gimp", 4}}, 1};
    {
        DeviceSQLite store("orvane_61k_device.sqlite3", false);
        AppRuleSet read{{{"stale", 1}}, 3};
        ASSERT_TRUE(store.queryAppRules(read));
        EXPECT_EQ(read, AppRuleSet{}) << "a new file has no rules";
        ASSERT_TRUE(store.saveAppRules(rules));
        store.resetProfile(2);
    }
    DeviceSQLite store("orvane_61k_device.sqlite3", false);
    AppRuleSet read;
    ASSERT_TRUE(store.queryAppRules(read));
    EXPECT_EQ(read, rules) << "kept in order, default included, across a profile reset and a reopening";
    store.dropTable();
    ASSERT_TRUE(store.queryAppRules(read));
    EXPECT_EQ(read, AppRuleSet{});
}

}  // namespace
