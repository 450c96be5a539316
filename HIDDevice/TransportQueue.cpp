#include "HIDDevice/TransportQueue.h"

#include "Common/OutputLine.h"
#include "Protocol/UploadConfirmation.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMetaObject>
#include <QThread>

#include <algorithm>
#include <iostream>

TransportQueue::TransportQueue(QObject* parent) : QObject(parent)
{
    worker_ = std::thread([this, shared = shared_] { workerLoop(this, shared); });
}

TransportQueue::~TransportQueue()
{
    std::unique_lock lock(shared_->mutex);
    shared_->stopping = true;
    shared_->wake.notify_all();
    if (shared_->wake.wait_for(lock, kShutdownWait, [this] { return shared_->workerDone; })) {
        lock.unlock();
        worker_.join();
        return;
    }
    // The worker is stuck in a transfer that may never return (a keyboard
    // that stopped answering), and quitting must not wait for it. It is
    // detached and left to the end of the process on purpose: it keeps its
    // own reference to the shared state and its job's transport, and once
    // `abandoned` is set it never calls this object again.
    shared_->abandoned = true;
    lock.unlock();
    worker_.detach();
}

bool TransportQueue::post(TransportQueue* self, Shared& shared, std::function<void()> call)
{
    // Under the lock, so the owner's destructor cannot pass while the call is queued.
    std::lock_guard lock(shared.mutex);
    if (shared.abandoned)
        return false;
    QMetaObject::invokeMethod(self, std::move(call), Qt::QueuedConnection);
    return true;
}

bool TransportQueue::submit(std::shared_ptr<DeviceComm> comm, ReportSequence sequence, ReplyHandler onReply,
                            EndHandler onEnd)
{
    if (!sequence.refusal.empty()) {
        OutputLine::print("not sent: " + sequence.name + ": " + sequence.refusal);
        return false;
    }
    if (!comm)
        return false;
    ++pending_;
    if (pending_ == 1)
        emit busyChanged(true);
    Job job{std::move(comm), std::move(sequence), std::move(onReply), std::move(onEnd)};
    if (capture_) {
        capture_->push_back(std::move(job));
        return true;
    }
    {
        std::lock_guard lock(shared_->mutex);
        shared_->queue.push_back(std::move(job));
    }
    shared_->wake.notify_all();
    return true;
}

bool TransportQueue::waitForIdle(std::chrono::milliseconds timeout)
{
    QElapsedTimer timer;
    timer.start();
    while (pending_ > 0) {
        if (timer.elapsed() > timeout.count())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
    return true;
}

void TransportQueue::workerLoop(TransportQueue* self, const std::shared_ptr<Shared>& shared)
{
    for (;;) {
        Job job;
        {
            std::unique_lock lock(shared->mutex);
            shared->wake.wait(lock, [&] { return shared->stopping || !shared->queue.empty(); });
            if (shared->stopping) {
                shared->workerDone = true;
                shared->wake.notify_all();
                return;
            }
            job = std::move(shared->queue.front());
            shared->queue.pop_front();
        }
        // Touches no member, so an abandoned owner is never reached.
        self->execute(*shared, job);
    }
}

void TransportQueue::execute(Shared& shared, Job& job)
{
    DeviceComm& comm = *job.comm;
    const bool carriesData = job.sequence.carriesDataReports();
    bool open = false;
    auto openBracket = [&] {
        if (!open && !comm.isReleased() && comm.device()) {
            comm.device()->beginSequence(carriesData);
            open = true;
        }
    };
    auto closeBracket = [&] {
        if (open && comm.device())
            comm.device()->endSequence();
        open = false;
    };

    // The sequence's verdict, decided here only: it finished when every step
    // went out and was taken. A failed step, or one skipped for a released
    // transport, leaves it unfinished, and so does an upload whose sum the
    // keyboard does not confirm (below).
    bool finished = true;

    // The first failure of a sequence is logged with its reason. A transfer
    // that times out, or a frame still asked for again after its repeat,
    // means the keyboard is not answering: its transport is released, so the
    // rest of this sequence and everything queued behind it for the same
    // keyboard is skipped instead of waiting out every timeout, and the
    // owner is told once. Only unplugging the keyboard brings it back.
    bool failureLogged = false;
    auto note = [&](const HidStatus& status) {
        if (!status)
            finished = false;
        if (status || failureLogged)
            return;
        failureLogged = true;
        qCWarning(lcOrvane, "%s: %s", job.sequence.name.c_str(), status.reason().c_str());
        if (status.result() == HidResult::NotResponding && !comm.isReleased()) {
            comm.release();
            post(this, shared, [this] { emit keyboardNotAnswering(); });
        }
    };

    if (DeviceComm::hexDumpEnabled())
        std::cerr << "hid sequence: " << job.sequence.name << std::endl;
    openBracket();

    // What the keyboard says it received is checked on the 0x02 that closes
    // an upload: the same exchange on the wire, with its reply kept.
    const std::optional<UploadConfirmation::Check> check =
        reportsSums(shared, job.comm) ? UploadConfirmation::checkFor(job.sequence) : std::nullopt;
    std::optional<std::vector<uint8_t>> closingReply;
    bool replyDelivered = false;
    // Sends every step once; false when the transport is stopping.
    auto sendSteps = [&]() -> bool {
        for (std::size_t index = 0; index < job.sequence.steps.size(); ++index) {
            ReportStep& step = job.sequence.steps[index];
            // A released transport skips every step; only an exchange whose
            // handler is still owed an answer goes on, to report "not sent".
            const bool owesReply = step.kind == ReportStep::Kind::Exchange && job.onReply && !replyDelivered;
            if (comm.isReleased() && !owesReply) {
                finished = false;
                continue;
            }
            switch (step.kind) {
            case ReportStep::Kind::Single:
                if (check && index == check->closingStep) {
                    std::vector<uint8_t> reply = step.data;
                    const HidStatus status = comm.getDeviceData(reply);
                    note(status);
                    if (status)
                        closingReply = std::move(reply);
                } else {
                    note(comm.sendDeviceData(step.data));
                }
                break;
            case ReportStep::Kind::Run:
                note(comm.sendDeviceData(step.data, step.length));
                break;
            case ReportStep::Kind::Sleep:
                comm.sleep(step.pause);
                break;
            case ReportStep::Kind::Exchange: {
                ExchangeResult result;
                result.reply = step.data;
                if (!comm.isReleased()) {
                    result.sent = true;
                    result.status = comm.getDeviceData(result.reply);
                    note(result.status);
                } else {
                    finished = false;
                }
                if (!job.onReply || replyDelivered)
                    break;
                replyDelivered = true;
                // The handler may hand over uploads; they must go out before the
                // rest of this sequence, so wait for them here.
                {
                    std::lock_guard lock(shared.mutex);
                    shared.continuation.reset();
                }
                post(this, shared, [this, handler = job.onReply, result] { deliverReply(handler, result); });
                std::vector<Job> inserted;
                {
                    std::unique_lock lock(shared.mutex);
                    shared.wake.wait(lock, [&] { return shared.stopping || shared.continuation.has_value(); });
                    if (shared.stopping)
                        return false;
                    inserted = std::move(*shared.continuation);
                    shared.continuation.reset();
                }
                if (!inserted.empty()) {
                    closeBracket();
                    for (Job& inner : inserted)
                        execute(shared, inner);
                    openBracket();
                }
                break;
            }
            }
        }
        return true;
    };

    // A sum that differs means the keyboard lost or changed a report: the
    // whole sequence goes out once more, and a second miss leaves the upload
    // unfinished (so it stays marked) and is told to the owner. A keyboard
    // that answers 0 does not count, and is not asked again on this connection.
    for (int attempt = 1;; ++attempt) {
        closingReply.reset();
        if (!sendSteps())
            return;
        if (!check || !finished || !closingReply)
            break;
        const auto verdict = UploadConfirmation::judge(*closingReply, check->expectedSum);
        if (verdict == UploadConfirmation::Verdict::Confirmed)
            break;
        if (verdict == UploadConfirmation::Verdict::NotCounted) {
            shared.uncounted.push_back(job.comm);
            break;
        }
        qCWarning(lcOrvane, "%s: the keyboard reports sum %02x%02x, %04x was sent (attempt %d)",
                  job.sequence.name.c_str(), (*closingReply)[Protocol::Offset::ReplyChecksumHi],
                  (*closingReply)[Protocol::Offset::ReplyChecksumLo], check->expectedSum, attempt);
        if (attempt == kSendsPerUpload) {
            finished = false;
            const auto upload = check->upload;
            post(this, shared, [this, upload] { emit uploadNotConfirmed(int(upload.header), upload.target); });
            break;
        }
    }
    closeBracket();
    post(this, shared, [this, onEnd = job.onEnd, finished] { ended(onEnd, finished); });
}

bool TransportQueue::reportsSums(Shared& shared, const std::shared_ptr<DeviceComm>& comm)
{
    std::erase_if(shared.uncounted, [](const std::weak_ptr<DeviceComm>& w) { return w.expired(); });
    return std::none_of(shared.uncounted.begin(), shared.uncounted.end(),
                        [&](const std::weak_ptr<DeviceComm>& w) { return w.lock() == comm; });
}

void TransportQueue::deliverReply(const ReplyHandler& handler, const ExchangeResult& result)
{
    std::vector<Job> captured;
    capture_ = &captured;
    handler(result);
    capture_ = nullptr;
    {
        std::lock_guard lock(shared_->mutex);
        shared_->continuation = std::move(captured);
    }
    shared_->wake.notify_all();
}

void TransportQueue::ended(const EndHandler& onEnd, bool finished)
{
    // The verdict is taken up before the queue can report idle.
    if (onEnd)
        onEnd(finished);
    --pending_;
    if (pending_ == 0)
        emit busyChanged(false);
}
