#pragma once
// Profiles that follow the application in front: the user's rules ("when
// <application> is in front, use Profile C", plus what to do for every other
// application) and the policy that decides when a rule switches the
// keyboard's profile. Pure: no window, no store, no display.
//
// An application is named by its desktop identity, the X11 WM_CLASS class or
// the Wayland app_id, compared without regard to case.

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

struct AppRule {
    QString app;      // WM_CLASS class or app_id, as the user gave it
    int profile = 1;  // 1 to 4
    bool operator==(const AppRule&) const = default;
};

struct AppRuleSet {
    std::vector<AppRule> rules;  // the first match wins
    int otherwise = 0;           // 0: leave the profile as it is
    bool operator==(const AppRuleSet&) const = default;
};

inline constexpr int kLeaveProfile = 0;

// The profile the rules give `app`: the first rule naming it, else the
// "otherwise" profile; none when that is "leave the profile as it is" or
// `app` is empty (nothing known in front).
std::optional<int> profileForApplication(const AppRuleSet& rules, const QString& app);

// When a rule may switch. The application in front changing is the only
// trigger, and each change switches at most once: a profile the user picks
// by hand therefore holds until another application comes to the front.
// While our own window is in front nothing switches (the user is editing);
// while an upload runs, a key is captured or a macro recorded, the switch
// waits and goes out once that ends.
class ProfileFollower {
public:
    enum class Hold { None, Upload, InputCapture };

    // New rules apply from the next report, also for the application that
    // was in front before.
    void setRules(AppRuleSet rules);
    const AppRuleSet& rules() const { return rules_; }
    void setEnabled(bool enabled);
    bool enabled() const { return enabled_; }

    // The focus source's report. `ownWindow`: one of this application's
    // windows is in front (its identity is then not a change).
    void applicationInFront(const QString& app, bool ownWindow);
    // The user chose a profile in the window: what was waiting is dropped.
    void profilePickedByHand() { pending_.reset(); }

    // The profile to switch to now, taken once; none when nothing is due,
    // something holds it back (it stays due), or `currentProfile` is it already.
    std::optional<int> takeSwitch(int currentProfile, Hold hold);
    bool switchWaiting() const { return pending_.has_value() && !ownInFront_; }

    // Applications seen in front since start, most recent first, each once.
    const QStringList& seenApplications() const { return seen_; }

private:
    AppRuleSet rules_;
    bool enabled_ = false;
    bool ownInFront_ = false;
    QString lastApp_;
    std::optional<int> pending_;
    QStringList seen_;
};
