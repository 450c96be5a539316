// How long painting user light colours holds the window, on the 68-key model
// with a virtual keyboard and a device database in a temporary folder (or in
// the folder given as the first argument):
//   - one changeUserLightColor pass over all keys (every key selected),
//     as median, 95th percentile and maximum of 200 passes;
//   - the longest stall of the event loop during a 2-second drag in the
//     colour dialog that reports a new colour every millisecond.
// Both are measured again with a write-ahead log, for comparison.
#include "Common/DataPaths.h"
#include "BenchSession.h"
#include "LoopTiming.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "SQLite/DeviceSQLite.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/MainController.h"
#include "View/control/KeyboardView.h"
#include "View/control/SelectKeyView.h"

#include <QApplication>
#include <QColorDialog>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

namespace {

void timePasses(MainController& controller)
{
    const CallTimes t =
        timeCalls(200, [&](int i) { controller.changeUserLightColor(QColor::fromHsv(i % 360, 255, 255)); });
    std::printf("one paint pass over %zu keys: median %.2f ms, p95 %.2f ms, max %.2f ms (200 passes)\n",
                controller.orvane_keyboardctrl->kbKeyArrayHover.size(), t.median, t.p95, t.max);
}

void timeDrag(MainController& controller)
{
    // The dialog's first showing draws its colour fields; the drag starts
    // on a dialog already open.
    controller.setUserLightRGB();
    turnFor(std::chrono::milliseconds(300));
    int reports = 0;
    QTimer drag;
    drag.setTimerType(Qt::PreciseTimer);
    QObject::connect(&drag, &QTimer::timeout, [&] {
        controller.colorPanel->setCurrentColor(QColor::fromHsv(reports++ % 360, 255, 255));
    });
    StallWatch watch;
    watch.start();
    drag.start(1);
    QTimer::singleShot(2000, [&] { drag.stop(); });
    turnUntil([&] { return !drag.isActive(); });
    const double longest = watch.stopMs();
    std::printf("2-second colour drag: %d colour reports, longest event-loop stall %.2f ms\n", reports, longest);
}

}  // namespace

int main(int argc, char** argv)
{
    BenchApp bench(argc, argv, argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());

    BenchSession session(VirtualKeyboard::Model::K68);
    MainController& controller = *session.controller;
    if (!session.connected()) {
        std::fprintf(stderr, "the virtual keyboard did not connect\n");
        return 1;
    }
    controller.action_userlightmode_tab();
    controller.UserLightTableMenuMsg(166);
    KeyboardView& view = *controller.orvane_keyboardctrl;
    for (int i = 0; i < int(view.kbKeyArraySelect.size()); ++i)
        view.selectKeyView(i)->setKeyCheck(true);
    std::printf("device database in %s\n", qPrintable(bench.folder));
    timePasses(controller);
    timeDrag(controller);
    // For comparison only: the same with a write-ahead log that syncs at
    // checkpoints rather than at every commit (the application does not
    // set this).
    controller.deviceDB->db->exec("PRAGMA journal_mode=WAL");
    controller.deviceDB->db->exec("PRAGMA synchronous=NORMAL");
    std::printf("with journal_mode=WAL, synchronous=NORMAL:\n");
    timePasses(controller);
    timeDrag(controller);
    return 0;
}
