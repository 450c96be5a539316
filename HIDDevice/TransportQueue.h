#pragma once
// TransportQueue: the transport thread.
//
// The main thread hands over report sequences; one worker thread executes
// them in FIFO order through the sequence's DeviceComm, with DeviceComm's
// fixed delays, so the window never waits for the keyboard. `isBusy()` is
// the application's one fact of "busy": true from the hand-over of a sequence
// until its end, kept on the owner (main) thread only. A sequence built with
// a refusal (a value that does not fit its byte) is not handed over; a line
// on standard output says so.
//
// An exchange can carry a reply handler. The worker then stops after that
// exchange until the handler has run on the owner thread; every sequence the
// handler hands over goes to the head of the queue, before the rest of the
// sequence that asked and before anything handed over meanwhile. This keeps a
// status poll and the uploads it triggers together on the wire, exactly as a
// single-threaded program would send them.
//
// A step whose DeviceComm has been released (the keyboard went away) is
// skipped; the sequence still ends normally.

#include "HIDDevice/DeviceComm.h"
#include "Protocol/ReportSequence.h"

#include <QObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

class TransportQueue : public QObject {
    Q_OBJECT
public:
    struct ExchangeResult {
        HidStatus status{HidResult::NotResponding, "not sent"};  // the exchange's own result
        bool sent = false;       // false when the step was skipped (no device)
        std::vector<uint8_t> reply;
        bool ok() const { return sent && status.ok(); }
    };
    using ReplyHandler = std::function<void(const ExchangeResult&)>;

    explicit TransportQueue(QObject* parent = nullptr);
    ~TransportQueue() override;

    // Hands a sequence over. `onReply` runs on this object's thread for the
    // sequence's first Exchange step. Returns false when nothing was handed
    // over (no transport, or a refused sequence).
    bool submit(std::shared_ptr<DeviceComm> comm, ReportSequence sequence, ReplyHandler onReply = {});

    int pending() const { return pending_; }
    bool isBusy() const { return pending_ > 0; }

    // Blocks the caller (tests, shutdown) until every handed-over sequence has
    // ended, running this thread's events meanwhile. False on timeout.
    bool waitForIdle(std::chrono::milliseconds timeout);

signals:
    void busyChanged(bool busy);

private:
    struct Job {
        std::shared_ptr<DeviceComm> comm;
        ReportSequence sequence;
        ReplyHandler onReply;
    };

    void workerLoop();
    void execute(Job& job);
    // Runs on the owner thread: the handler, with submits captured.
    void deliverReply(const ReplyHandler& handler, const ExchangeResult& result);
    void finished();

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Job> queue_;
    std::optional<std::vector<Job>> continuation_;  // set by the owner, taken by the worker
    bool stopping_ = false;

    int pending_ = 0;                      // owner thread only
    std::vector<Job>* capture_ = nullptr;  // owner thread only, set while a reply handler runs
    std::thread worker_;
};
