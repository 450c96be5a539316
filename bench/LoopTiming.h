#pragma once
// What the scripted measurements need of the event loop: turning it until
// something is done, and the longest time it went without turning.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

// Turns the event loop until `done`, or until `timeout` has passed; says
// whether `done` came.
inline bool turnUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout = std::chrono::seconds(30))
{
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return true;
}

// Turns the event loop for `span`, whatever happens meanwhile.
inline void turnFor(std::chrono::milliseconds span)
{
    const auto end = std::chrono::steady_clock::now() + span;
    turnUntil([end] { return std::chrono::steady_clock::now() > end; }, span + std::chrono::seconds(1));
}

// The longest gap between two turns of the event loop: a timer with no
// interval fires once per turn.
class StallWatch {
public:
    using Clock = std::chrono::steady_clock;

    StallWatch()
    {
        QObject::connect(&tick_, &QTimer::timeout, [this] {
            const auto now = Clock::now();
            longest_ = std::max(longest_, now - last_);
            last_ = now;
        });
    }
    void start()
    {
        longest_ = {};
        last_ = Clock::now();
        tick_.start(0);
    }
    double stopMs()
    {
        tick_.stop();
        return std::chrono::duration<double, std::milli>(longest_).count();
    }

private:
    QTimer tick_;
    Clock::time_point last_;
    Clock::duration longest_{};
};

// How long `count` runs of `call` (given its run number) each took, in ms,
// with the event loop turned for `between` after each.
struct CallTimes {
    double median = 0, p95 = 0, max = 0;
};
inline CallTimes timeCalls(int count, const std::function<void(int)>& call,
                           std::chrono::milliseconds between = std::chrono::milliseconds(0))
{
    std::vector<qint64> times;
    QElapsedTimer clock;
    for (int i = 0; i < count; ++i) {
        clock.start();
        call(i);
        times.push_back(clock.nsecsElapsed());
        if (between.count() > 0)
            turnFor(between);
    }
    std::sort(times.begin(), times.end());
    const auto ms = [](qint64 ns) { return double(ns) / 1e6; };
    return {ms(times[size_t(count / 2)]), ms(times[size_t(count * 95 / 100)]), ms(times.back())};
}
