#include "Common/AppProfileRules.h"

std::optional<int> profileForApplication(const AppRuleSet& rules, const QString& app)
{
    if (app.isEmpty())
        return std::nullopt;
    for (const AppRule& rule : rules.rules)
        if (rule.app.compare(app, Qt::CaseInsensitive) == 0)
            return rule.profile;
    if (rules.otherwise == kLeaveProfile)
        return std::nullopt;
    return rules.otherwise;
}

void ProfileFollower::setRules(AppRuleSet rules)
{
    if (rules != rules_)
        lastApp_.clear();
    rules_ = std::move(rules);
}

void ProfileFollower::setEnabled(bool enabled)
{
    enabled_ = enabled;
    if (!enabled)
        pending_.reset();
}

void ProfileFollower::applicationInFront(const QString& app, bool ownWindow)
{
    ownInFront_ = ownWindow;
    if (ownWindow || app.isEmpty())
        return;
    seen_.removeIf([&](const QString& s) { return s.compare(app, Qt::CaseInsensitive) == 0; });
    seen_.prepend(app);
    // Coming back from our own window to the same application is no change:
    // a profile picked by hand meanwhile holds.
    if (lastApp_.compare(app, Qt::CaseInsensitive) == 0)
        return;
    lastApp_ = app;
    pending_ = enabled_ ? profileForApplication(rules_, app) : std::nullopt;
}

std::optional<int> ProfileFollower::takeSwitch(int currentProfile, Hold hold)
{
    if (!pending_ || ownInFront_ || hold != Hold::None)
        return std::nullopt;
    const int profile = *pending_;
    pending_.reset();
    if (profile == currentProfile)
        return std::nullopt;
    return profile;
}
