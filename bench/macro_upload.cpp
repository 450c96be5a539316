// Scripted measurement of the macro store upload at the keyboard's size
// limit, on a virtual keyboard with the real report pauses:
//   - wire time of the upload against the floor of its own pauses;
//   - the main thread's cost of reading the library and building the block;
//   - the longest stall of the UI event loop while the upload runs (a 1 ms
//     timer that notes the largest gap between its ticks; the goal is under
//     16 ms, one frame), beside the same loop's stall with nothing to do.
// Usage: macro_upload [runs]
#include "Common/DataPaths.h"
#include "BenchSession.h"
#include "HIDDevice/Platform/Virtual/VirtualBus.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "Protocol/MacroStoreBlock.h"
#include "SQLite/DeviceSQLite.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/MainController.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

bool waitFor(const std::function<bool()>& condition, int timeoutMs = 20000)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition() && clock.elapsed() < timeoutMs)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return condition();
}

// Ten macros of 337 key steps in all, the library whose block, with the
// 10 ms delays put between keys, fills exactly 50 reports (3200 bytes).
void fillLibrary(DeviceSQLite& db)
{
    int steps = 337;
    for (int m = 0; m < 10; ++m) {
        const int count = steps / (10 - m);
        steps -= count;
        std::vector<RecordInfo> rows;
        for (int i = 0; i < count; ++i)
            rows.push_back({0, 0, i % 2 ? 3 : 2, i, 4 + (i / 2) % 26, QStringLiteral("step")});
        db.saveMacro({0, 1, 1, 10, QStringLiteral("Macro %1").arg(m + 1)}, rows);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    Q_INIT_RESOURCE(resources);
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 5;
    QTemporaryDir data;
    DataPaths::setDataFolderOverride(data.path());

    BenchSession session(VirtualKeyboard::Model::M61);
    MainController& controller = *session.controller;
    const std::shared_ptr<VirtualKeyboard>& keyboard = session.keyboard;
    if (!session.connected()) {
        std::fprintf(stderr, "the virtual keyboard did not connect\n");
        return 1;
    }
    fillLibrary(*controller.deviceDB);

    QElapsedTimer sinceTick;
    qint64 longestStall = 0;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        longestStall = std::max(longestStall, sinceTick.restart());
    });
    // The same loop with nothing to do: what the machine itself costs.
    sinceTick.start();
    ticker.start(1);
    waitFor([] { return false; }, 800);
    ticker.stop();
    std::printf("idle loop for 800 ms: longest stall %lld ms\n", static_cast<long long>(longestStall));
    std::printf("macro store at the size limit: 10 macros, 337 key steps, 50 reports\n");
    for (int run = 0; run < runs; ++run) {
        const int stores = keyboard->firmware().commandCount(Protocol::Command::BeginMacro);
        longestStall = 0;
        sinceTick.start();
        ticker.start(1);
        QElapsedTimer wire;
        wire.start();
        controller.UpdateMacroInfo();  // list, library read, block, hand-over
        const qint64 mainThread = wire.elapsed();
        waitFor([&] {
            return keyboard->firmware().commandCount(Protocol::Command::BeginMacro) > stores && !controller.hidcomm_busy();
        });
        const qint64 total = wire.elapsed();
        ticker.stop();
        // Pause floor: 10 ms before each of the 53 reports, 30 ms twice.
        const int floorMs = 10 * (50 + 3) + 2 * 30;
        std::printf("run %d: wire %lld ms (pause floor %d ms, +%lld ms), main thread %lld ms, longest UI stall %lld ms\n",
                    run + 1, static_cast<long long>(total), floorMs, static_cast<long long>(total - floorMs),
                    static_cast<long long>(mainThread), static_cast<long long>(longestStall));
    }
    const QStringList errors = keyboard->protocolErrors();
    if (!errors.isEmpty())
        std::printf("protocol errors: %s\n", qPrintable(errors.join("; ")));
    const size_t blockBytes = keyboard->firmware().macroStore().size();
    std::printf("store on the keyboard: %zu bytes\n", blockBytes);
    return errors.isEmpty() && blockBytes == MacroStoreBlock::kMaxBytes ? 0 : 1;
}
