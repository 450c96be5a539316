#pragma once
// Work that must not hold the window: `work` runs on the global thread pool,
// and `done` gets its result on the thread of `context` (the window's), as a
// queued call. When `context` is gone by then, `done` is not called.

#include <QFutureWatcher>
#include <QObject>
#include <QPromise>
#include <QThreadPool>

#include <memory>
#include <type_traits>
#include <utility>

template <typename Work, typename Done>
void runOffThread(QObject* context, Work work, Done done)
{
    using Result = std::invoke_result_t<Work&>;
    auto promise = std::make_shared<QPromise<Result>>();
    auto* watcher = new QFutureWatcher<Result>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context, [watcher, done = std::move(done)]() mutable {
        watcher->deleteLater();
        if (watcher->future().resultCount() > 0)
            done(watcher->result());
    });
    promise->start();
    watcher->setFuture(promise->future());
    QThreadPool::globalInstance()->start([promise, work = std::move(work)]() mutable {
        promise->addResult(work());
        promise->finish();
    });
}
