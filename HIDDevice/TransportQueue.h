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
// skipped; the sequence still ends normally. A keyboard that stops answering
// (a transfer fails for want of an answer, or a frame is asked for again
// after its repeat) has its DeviceComm released the same way and is
// announced by keyboardNotAnswering().
//
// Every handed-over sequence ends with one verdict, decided in execute() and
// nowhere else: finished (every step went out and was taken) or not (a step
// failed, or was skipped because the transport was released). The verdict
// reaches the sequence's end handler on the owner thread, before the queue
// reports idle; a sequence still queued at shutdown gets none.
//
// An upload is finished only when the keyboard confirms it: the reply to its
// closing 0x02 must carry the sum of the data reports sent. A wrong sum sends
// the whole sequence once more; a second one leaves it unfinished and is
// announced by uploadNotConfirmed(). A keyboard that answers 0 for a sum that
// is not 0 does not count, and its sums are not looked at again for the rest
// of its connection. A healthy upload's bytes are the same either way.

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
    using EndHandler = std::function<void(bool finished)>;

    explicit TransportQueue(QObject* parent = nullptr);
    // Gives the worker at most kShutdownWait to end, then abandons it.
    ~TransportQueue() override;
    static constexpr std::chrono::milliseconds kShutdownWait{1000};

    // Hands a sequence over. `onReply` runs on this object's thread for the
    // sequence's first Exchange step; `onEnd` runs there with the sequence's
    // verdict. Returns false when nothing was handed over (no transport, or a
    // refused sequence); `onEnd` is not called then.
    bool submit(std::shared_ptr<DeviceComm> comm, ReportSequence sequence, ReplyHandler onReply = {},
                EndHandler onEnd = {});

    int pending() const { return pending_; }
    bool isBusy() const { return pending_ > 0; }

    // Blocks the caller (tests, shutdown) until every handed-over sequence has
    // ended, running this thread's events meanwhile. False on timeout.
    bool waitForIdle(std::chrono::milliseconds timeout);

signals:
    void busyChanged(bool busy);
    // The keyboard of a sequence stopped answering; what was left for it was dropped.
    void keyboardNotAnswering();
    // The keyboard twice reported another sum for an upload: the command byte
    // of its header and the header's target byte.
    void uploadNotConfirmed(int header, int target);

private:
    struct Job {
        std::shared_ptr<DeviceComm> comm;
        ReportSequence sequence;
        ReplyHandler onReply;
        EndHandler onEnd;
    };

    // What the worker thread touches. It holds its own reference, so a worker
    // abandoned at shutdown (blocked in a transfer) never reaches freed memory.
    struct Shared {
        std::mutex mutex;
        std::condition_variable wake;
        std::deque<Job> queue;
        std::optional<std::vector<Job>> continuation;  // set by the owner, taken by the worker
        bool stopping = false;
        bool workerDone = false;
        bool abandoned = false;  // the owner is gone: the worker must not call it
        // Worker only: the connections whose keyboard does not count its uploads.
        std::vector<std::weak_ptr<DeviceComm>> uncounted;
    };
    static constexpr int kSendsPerUpload = 2;  // the first send and one repeat

    static void workerLoop(TransportQueue* self, const std::shared_ptr<Shared>& shared);
    void execute(Shared& shared, Job& job);
    static bool reportsSums(Shared& shared, const std::shared_ptr<DeviceComm>& comm);
    // Queues `call` on the owner thread unless the owner has gone.
    static bool post(TransportQueue* self, Shared& shared, std::function<void()> call);
    // Runs on the owner thread: the handler, with submits captured.
    void deliverReply(const ReplyHandler& handler, const ExchangeResult& result);
    void ended(const EndHandler& onEnd, bool finished);

    std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();

    int pending_ = 0;                      // owner thread only
    std::vector<Job>* capture_ = nullptr;  // owner thread only, set while a reply handler runs
    std::thread worker_;
};
