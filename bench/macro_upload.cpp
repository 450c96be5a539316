// Scripted measurement of the macro store upload at the keyboard's size
// limit, on a virtual keyboard with the real report pauses:
//   - wire time of the upload against the floor of its own pauses;
//   - the main thread's cost of reading the library and building the block;
//   - the longest stall of the UI event loop while the upload runs (the goal
//     is under 16 ms, one frame), beside the same loop's stall with nothing
//     to do.
// Usage: macro_upload [runs]
#include "Common/DataPaths.h"
#include "BenchSession.h"
#include "LoopTiming.h"
#include "HIDDevice/Platform/Virtual/VirtualBus.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "Protocol/MacroStoreBlock.h"
#include "SQLite/DeviceSQLite.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/MainController.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace {

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
    BenchApp bench(argc, argv);
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 5;

    BenchSession session(VirtualKeyboard::Model::M61);
    MainController& controller = *session.controller;
    const std::shared_ptr<VirtualKeyboard>& keyboard = session.keyboard;
    if (!session.connected()) {
        std::fprintf(stderr, "the virtual keyboard did not connect\n");
        return 1;
    }
    fillLibrary(*controller.deviceDB);

    // The same loop with nothing to do: what the machine itself costs.
    StallWatch watch;
    watch.start();
    turnFor(std::chrono::milliseconds(800));
    std::printf("idle loop for 800 ms: longest stall %.2f ms\n", watch.stopMs());
    std::printf("macro store at the size limit: 10 macros, 337 key steps, 50 reports\n");
    for (int run = 0; run < runs; ++run) {
        const int stores = keyboard->firmware().commandCount(Protocol::Command::BeginMacro);
        watch.start();
        QElapsedTimer wire;
        wire.start();
        controller.UpdateMacroInfo();  // list, library read, block, hand-over
        const qint64 mainThread = wire.elapsed();
        turnUntil([&] {
            return keyboard->firmware().commandCount(Protocol::Command::BeginMacro) > stores && !controller.hidcomm_busy();
        }, std::chrono::seconds(20));
        const qint64 total = wire.elapsed();
        const double longestStall = watch.stopMs();
        // Pause floor: 10 ms before each of the 53 reports, 30 ms twice.
        const int floorMs = 10 * (50 + 3) + 2 * 30;
        std::printf("run %d: wire %lld ms (pause floor %d ms, +%lld ms), main thread %lld ms, longest UI stall %.2f ms\n",
                    run + 1, static_cast<long long>(total), floorMs, static_cast<long long>(total - floorMs),
                    static_cast<long long>(mainThread), longestStall);
    }
    const QStringList errors = keyboard->protocolErrors();
    if (!errors.isEmpty())
        std::printf("protocol errors: %s\n", qPrintable(errors.join("; ")));
    const size_t blockBytes = keyboard->firmware().macroStore().size();
    std::printf("store on the keyboard: %zu bytes\n", blockBytes);
    return errors.isEmpty() && blockBytes == MacroStoreBlock::kMaxBytes ? 0 : 1;
}
