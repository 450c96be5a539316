// User actions on a store another program holds: how long the window's
// thread is held by each, the first one (which waits the busy timeout) and
// the ones after it (which try the file once). Another connection holds the
// file with BEGIN EXCLUSIVE throughout. Usage: locked_store [repeats]
#include "BenchSession.h"
#include "Common/Globals.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/LocalSQLite.h"
#include "View/control/CaseColorButton.h"

#include <SQLiteCpp/Database.h>

#include <QAbstractButton>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

namespace {

struct Action {
    const char* name;
    bool local;  // the local settings file, else the keyboard's
    std::function<void()> act;
};

double heldMs(const std::function<void()>& act)
{
    QElapsedTimer clock;
    clock.start();
    act();
    return double(clock.nsecsElapsed()) / 1e6;
}

}  // namespace

int main(int argc, char** argv)
{
    BenchApp bench(argc, argv);
    const int repeats = argc > 1 ? std::atoi(argv[1]) : 20;
    BenchSession session(VirtualKeyboard::Model::M61, [](MainController::Environment& env) {
        env.transportSleeper = [](std::chrono::milliseconds) {};
    });
    if (!session.connected()) {
        std::fprintf(stderr, "the virtual keyboard did not connect\n");
        return 1;
    }
    MainController& c = *session.controller;
    const Action actions[] = {
        {"lock switch", false, [&c] { c.lockSwitches[0]->click(); }},
        {"profile pick", false, [&c] { c.pickProfile(3); }},
        {"user light add", false, [&c] { c.UserLightTableMenuMsg(166); }},
        {"key assignment", false, [&c] { c.currentKeyValue = 41; ProfileKey k{0, 0, 0, 0, 11, 127, 0, 0, "Mute"}; c.addCustomKey(k); }},
        {"language", true, [&c] { c.switchLanguage(kLanguageChinese); }},
        {"case colour", true, [&c] { c.kb_blackcolor_btn->click(); }},
    };
    for (const Action& action : actions) {
        turnUntil([&] { return !c.hidcomm_busy() && !c.pollReplyOwed(); });
        const QString file = action.local ? c.localDB->health.file : c.deviceDB->health.file;
        SQLite::Database other(file.toStdString(), SQLite::OPEN_READWRITE);
        other.exec("BEGIN EXCLUSIVE");
        const double first = heldMs(action.act);
        std::vector<double> later;
        for (int i = 0; i < repeats; ++i)
            later.push_back(heldMs(action.act));
        std::sort(later.begin(), later.end());
        std::printf("%-15s first %6.2f ms, next %d: median %6.2f ms, max %6.2f ms\n", action.name, first, repeats,
                    later[later.size() / 2], later.back());
        other.exec("ROLLBACK");
        turnUntil([] { return false; }, std::chrono::milliseconds(50));
    }
    return 0;
}
