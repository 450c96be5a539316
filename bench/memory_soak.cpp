// Memory under activity: a session on a 61-key virtual keyboard runs a few
// thousand user actions of each kind (a key assignment, an effect choice, a
// lock switch, a profile pick, a page switch) and prints how much the
// resident memory grew per thousand actions, after a warm-up of each kind.
// A healthy window grows by nothing once warm. Usage: memory_soak [count]
#include "BenchSession.h"
#include "LoopTiming.h"
#include "Common/DataPaths.h"
#include "View/MainController.h"
#include "Common/Records.h"
#include "View/control/ButtonView.h"
#include "View/control/FuncButton.h"

#include <QAbstractButton>
#include <QApplication>
#include <QListWidget>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <malloc.h>
#include <unistd.h>

namespace {

long residentKiB()
{
    std::ifstream statm("/proc/self/statm");
    long pages = 0;
    long resident = 0;
    statm >> pages >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// What the program holds on the heap, apart from what the allocator keeps
// for later: growth here is a leak, growth of the resident memory alone is
// the allocator's or the system's.
long heapInUseKiB()
{
    return long(mallinfo2().uordblks / 1024);
}

struct Kind {
    const char* name;
    std::function<void(int)> act;
};

std::vector<Kind> kinds(MainController& c)
{
    return {
        {"key assignment",
         [&c](int i) {
             c.currentKeyValue = 4 + i % 20;  // A to T
             ProfileKey key{0, 0, 0, 0, 11, 121 + i % 7, 0, 0, "Media"};
             c.addCustomKey(key);
         }},
        {"effect choice",
         [&c](int i) {
             c.light_mode_table->setCurrentRow(i % c.light_mode_table->count());
             c.tableViewSelectionDidChange(c.light_mode_table);
         }},
        {"lock switch", [&c](int i) { c.lockSwitches[std::size_t(i % 3)]->click(); }},
        {"profile pick", [&c](int i) { c.pickProfile(1 + i % 4); }},
        {"page switch",
         [&c](int i) {
             FuncButton* pages[] = {c.func_keyset, c.func_light, c.func_set};
             pages[i % 3]->click();
         }},
    };
}

void runSome(MainController& c, const Kind& kind, int from, int count)
{
    for (int i = from; i < from + count; ++i) {
        kind.act(i);
        turnUntil([&] { return !c.hidcomm_busy(); });
        // The loop turns after every action, as in a session: an action that
        // hands nothing to the transport would otherwise leave the events it
        // posted (show, update, deferred deletes) piling up, unprocessed.
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    BenchApp bench(argc, argv);
    const int count = argc > 1 ? std::atoi(argv[1]) : 1000;
    const int warmUp = 100;

    // With the transport's real pauses: without them the virtual keyboard
    // records every report as too close to the last, and that record grows.
    BenchSession session(VirtualKeyboard::Model::M61);
    if (!session.connected()) {
        std::fprintf(stderr, "the virtual keyboard did not connect\n");
        return 1;
    }
    MainController& c = *session.controller;
    for (const Kind& kind : kinds(c)) {
        runSome(c, kind, 0, warmUp);
        const long before = residentKiB();
        const long heapBefore = heapInUseKiB();
        runSome(c, kind, warmUp, count);
        const double perThousand = double(residentKiB() - before) * 1000.0 / count;
        const double heapPerThousand = double(heapInUseKiB() - heapBefore) * 1000.0 / count;
        std::printf("%-15s %5d actions after %d of warm-up: resident memory %+.1f KiB, heap in use %+.1f KiB per "
                    "1000 actions\n",
                    kind.name, count, warmUp, perThousand, heapPerThousand);
    }
    std::printf("peak resident memory %ld KiB\n", residentKiB());
    return 0;
}
