// Reset of all data on the virtual keyboard, with the transport's real
// pauses: how long the reports take on the wire against the floor that the
// pauses alone set, and the longest time the window's event loop went without
// turning meanwhile (a frame at 60 Hz is 16 ms). The wipe and reseed of the
// store is one transaction on the UI thread; its commit waits for the disk.
//
// Run: build/bench/reset_all_data [--benchmark_repetitions=N]
#include "Common/DataPaths.h"
#include "BenchSession.h"
#include "LoopTiming.h"
#include "Common/Globals.h"
#include "HIDDevice/Platform/Virtual/VirtualHidManager.h"
#include "SQLite/DeviceSQLite.h"
#include "Simulator/VirtualKeyboard.h"
#include "View/MainController.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <atomic>
#include <thread>

// Resources of a static library are registered from outside any namespace.
static bool loadImages()
{
    Q_INIT_RESOURCE(resources);
    return true;
}

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::duration;

// Made in main() and gone before the exit handlers run: a QApplication that
// outlives Qt's own globals crashes the process on its way out.
QApplication* theApplication = nullptr;

QApplication& application()
{
    static const bool images = loadImages();
    (void)images;
    return *theApplication;
}

// Argument 0: the data folder in the system's temporary folder (a disk, as
// the user's data folder is); 1: in memory (/dev/shm), which leaves out what
// the disk's flushes cost.
void BM_ResetAllData(benchmark::State& state)
{
    application();
    const bool inMemory = state.range(0) == 1;
    if (inMemory && !QDir(QStringLiteral("/dev/shm")).exists()) {
        state.SkipWithError("no /dev/shm here");
        return;
    }
    QTemporaryDir data((inMemory ? QStringLiteral("/dev/shm") : QDir::tempPath()) + QStringLiteral("/orvane-bench-XXXXXX"));
    DataPaths::setDataFolderOverride(data.path());
    G_Language = kLanguageEnglish;

    // Real pauses, summed: their total is the floor of the wire time.
    std::atomic<long long> pausedUs = 0;
    BenchSession session(VirtualKeyboard::Model::M61, [&pausedUs](MainController::Environment& env) {
        env.transportSleeper = [&pausedUs](std::chrono::milliseconds ms) {
            pausedUs += std::chrono::duration_cast<std::chrono::microseconds>(ms).count();
            std::this_thread::sleep_for(ms);
        };
    });
    MainController& controller = *session.controller;
    const std::shared_ptr<VirtualKeyboard>& keyboard = session.keyboard;
    if (!session.connected(30000)) {
        state.SkipWithError("the virtual keyboard did not connect");
        return;
    }

    // The same loop for a second with nothing to do: what the machine alone
    // costs the loop (other processes, the scheduler).
    StallWatch watch;
    watch.start();
    turnFor(std::chrono::seconds(1));
    state.counters["idle_longest_stall_ms"] = watch.stopMs();

    double wireMs = 0, floorMs = 0, stallMs = 0, callMs = 0;
    for (auto _ : state) {
        // Something to reset in every profile.
        for (int p = 1; p <= 4; ++p)
            controller.deviceDB->addKeyProfile({.profId = p, .keyValue = 41, .macroType = 16, .macroValue = 1, .macroDesc = {}});
        pausedUs = 0;
        watch.start();
        const auto start = Clock::now();
        Clock::time_point returned;
        // Run from the event loop, as a click on "OK" runs it.
        QTimer::singleShot(0, &controller, [&] {
            controller.resetAllData();
            returned = Clock::now();
        });
        const bool finished = turnUntil([&] { return returned != Clock::time_point{} && !controller.hidcomm_busy(); });
        const auto end = Clock::now();
        stallMs = std::max(stallMs, watch.stopMs());
        if (!finished) {
            state.SkipWithError("the reset did not finish");
            return;
        }
        wireMs += duration<double, std::milli>(end - start).count();
        callMs += duration<double, std::milli>(returned - start).count();
        floorMs += double(pausedUs) / 1000.0;
    }
    const double n = double(state.iterations());
    state.counters["wire_ms"] = wireMs / n;
    state.counters["sleep_floor_ms"] = floorMs / n;
    state.counters["ui_call_ms"] = callMs / n;
    state.counters["ui_longest_stall_ms"] = stallMs;
    state.counters["protocol_errors"] = double(keyboard->protocolErrors().size());
    DataPaths::setDataFolderOverride({});
}

}  // namespace

BENCHMARK(BM_ResetAllData)->ArgName("in_memory")->Arg(0)->Arg(1)->Iterations(5)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    theApplication = &app;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
