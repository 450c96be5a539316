#include "HIDDevice/TransportQueue.h"

#include "Common/OutputLine.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMetaObject>
#include <QThread>

#include <iostream>

TransportQueue::TransportQueue(QObject* parent) : QObject(parent)
{
    worker_ = std::thread([this] { workerLoop(); });
}

TransportQueue::~TransportQueue()
{
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    if (worker_.joinable())
        worker_.join();
}

bool TransportQueue::submit(std::shared_ptr<DeviceComm> comm, ReportSequence sequence, ReplyHandler onReply)
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
    Job job{std::move(comm), std::move(sequence), std::move(onReply)};
    if (capture_) {
        capture_->push_back(std::move(job));
        return true;
    }
    {
        std::lock_guard lock(mutex_);
        queue_.push_back(std::move(job));
    }
    wake_.notify_all();
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

void TransportQueue::workerLoop()
{
    for (;;) {
        Job job;
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
            if (stopping_)
                return;
            job = std::move(queue_.front());
            queue_.pop_front();
        }
        execute(job);
    }
}

void TransportQueue::execute(Job& job)
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

    // The first failure of a sequence is logged with its reason; the rest of
    // the sequence still runs, as the keyboard expects its frames in order.
    bool failureLogged = false;
    auto note = [&](const HidStatus& status) {
        if (status || failureLogged)
            return;
        failureLogged = true;
        qCWarning(lcOrvane, "%s: %s", job.sequence.name.c_str(), status.reason().c_str());
    };

    if (DeviceComm::hexDumpEnabled())
        std::cerr << "hid sequence: " << job.sequence.name << std::endl;
    openBracket();
    bool replyDelivered = false;
    for (ReportStep& step : job.sequence.steps) {
        // A released transport skips every step; only an exchange whose
        // handler is still owed an answer goes on, to report "not sent".
        const bool owesReply = step.kind == ReportStep::Kind::Exchange && job.onReply && !replyDelivered;
        if (comm.isReleased() && !owesReply)
            continue;
        switch (step.kind) {
        case ReportStep::Kind::Single:
            note(comm.sendDeviceData(step.data));
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
            }
            if (!job.onReply || replyDelivered)
                break;
            replyDelivered = true;
            // The handler may hand over uploads; they must go out before the
            // rest of this sequence, so wait for them here.
            {
                std::lock_guard lock(mutex_);
                continuation_.reset();
            }
            QMetaObject::invokeMethod(
                this, [this, handler = job.onReply, result] { deliverReply(handler, result); },
                Qt::QueuedConnection);
            std::vector<Job> inserted;
            {
                std::unique_lock lock(mutex_);
                wake_.wait(lock, [this] { return stopping_ || continuation_.has_value(); });
                if (stopping_)
                    return;
                inserted = std::move(*continuation_);
                continuation_.reset();
            }
            if (!inserted.empty()) {
                closeBracket();
                for (Job& inner : inserted)
                    execute(inner);
                openBracket();
            }
            break;
        }
        }
    }
    closeBracket();
    QMetaObject::invokeMethod(this, [this] { finished(); }, Qt::QueuedConnection);
}

void TransportQueue::deliverReply(const ReplyHandler& handler, const ExchangeResult& result)
{
    std::vector<Job> captured;
    capture_ = &captured;
    handler(result);
    capture_ = nullptr;
    {
        std::lock_guard lock(mutex_);
        continuation_ = std::move(captured);
    }
    wake_.notify_all();
}

void TransportQueue::finished()
{
    --pending_;
    if (pending_ == 0)
        emit busyChanged(false);
}
