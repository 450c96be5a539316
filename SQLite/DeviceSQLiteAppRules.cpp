// The rules of profiles that follow the application in front ("t_apprule").
// One row per rule in the user's order (its row id); the row with an empty
// "app" holds the profile for every other application.

#include "SQLite/DeviceSQLite.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

bool DeviceSQLite::queryAppRules(AppRuleSet& rules) const
{
    if (!db)
        return false;
    try {
        AppRuleSet read;
        SQLite::Statement query(*db, R"(SELECT "app", "profId" FROM "t_apprule" ORDER BY "ruleId")");
        while (query.executeStep()) {
            const QString app = QString::fromStdString(query.getColumn(0).getString());
            const int profile = query.getColumn(1).getInt();
            if (app.isEmpty())
                read.otherwise = profile;
            else
                read.rules.push_back({app, profile});
        }
        rules = std::move(read);
        return true;
    } catch (const std::exception& e) {
        failed(e);
        return false;
    }
}

bool DeviceSQLite::saveAppRules(const AppRuleSet& rules)
{
    if (!db)
        return false;
    try {
        SQLite::Transaction transaction(*db);
        db->exec(R"(DELETE FROM "t_apprule")");
        SQLite::Statement insert(*db, R"(INSERT INTO "t_apprule" ("app", "profId") VALUES (?, ?))");
        auto add = [&](const QString& app, int profile) {
            insert.bind(1, app.toStdString());
            insert.bind(2, profile);
            insert.exec();
            insert.reset();
        };
        for (const AppRule& rule : rules.rules)
            add(rule.app, rule.profile);
        if (rules.otherwise != kLeaveProfile)
            add(QString(), rules.otherwise);
        transaction.commit();
        return true;
    } catch (const std::exception& e) {
        failed(e);
        return false;
    }
}
