#include "support/WaitUntil.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

bool testing_support::waitUntil(const std::function<bool()>& condition, int timeoutMs)
{
    QElapsedTimer t;
    t.start();
    while (!condition()) {
        if (t.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
    return true;
}
