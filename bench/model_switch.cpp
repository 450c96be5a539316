// How long a turn of the model list holds the window, with a 61-key virtual
// keyboard connected (the list shows other models, the keyboard stays):
//   - one click on the list's down arrow, which rebuilds the keyboard picture
//     for the next model and starts the slides: median, 95th percentile and
//     maximum of 60 clicks, each on a list at rest;
//   - the longest stall of the event loop over 9 turns, each left to run its
//     0.68-second slide to the end.
#include "BenchSession.h"
#include "LoopTiming.h"
#include "Common/DataPaths.h"
#include "View/MainController.h"
#include "View/control/ButtonView.h"

#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>

namespace {

void timeClicks(MainController& controller)
{
    const CallTimes t =
        timeCalls(60, [&](int) { controller.imgbtn_dev_down->click(); }, std::chrono::milliseconds(20));
    std::printf("one model list click (picture rebuilt, slides started): median %.2f ms, p95 %.2f ms, max %.2f ms "
                "(60 clicks)\n",
                t.median, t.p95, t.max);
}

void timeTurns(MainController& controller)
{
    StallWatch watch;
    watch.start();
    for (int i = 0; i < 9; ++i) {
        controller.imgbtn_dev_up->click();
        turnFor(std::chrono::milliseconds(800));
    }
    std::printf("9 model list turns with their slides: longest event-loop stall %.2f ms\n", watch.stopMs());
}

}  // namespace

int main(int argc, char** argv)
{
    BenchApp bench(argc, argv);

    BenchSession session(VirtualKeyboard::Model::M61);
    if (!session.connected()) {
        std::fprintf(stderr, "the virtual keyboard did not connect\n");
        return 1;
    }
    timeClicks(*session.controller);
    timeTurns(*session.controller);
    return 0;
}
