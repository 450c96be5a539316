#include "Desktop/SingleInstance.h"

#include "Common/DataPaths.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDeadlineTimer>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

SingleInstance::SingleInstance(const QString& folder, const QString& dataFolder, QObject* parent)
    : QObject(parent)
{
    const QString base = QDir(folder).filePath(nameFor(dataFolder));
    lockPath_ = base + QStringLiteral(".lock");
    socketPath_ = base + QStringLiteral(".socket");
}

SingleInstance::~SingleInstance()
{
    server_.reset();  // removes the socket file while the lock is still held
    if (lockFd_ >= 0)
        ::close(lockFd_);
}

QString SingleInstance::defaultFolder()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QDir(runtime).exists() ? runtime : QDir::tempPath();
}

QString SingleInstance::nameFor(const QString& dataFolder)
{
    const QByteArray folder = QDir::cleanPath(QDir(dataFolder).absolutePath()).toUtf8();
    const QByteArray hash = QCryptographicHash::hash(folder, QCryptographicHash::Sha256).toHex().left(16);
    return QStringLiteral("%1-%2-%3").arg(QLatin1String(DataPaths::kApplicationId)).arg(::getuid()).arg(QLatin1String(hash));
}

SingleInstance::Lock SingleInstance::tryLock()
{
    if (lockFd_ >= 0)
        return Lock::Ours;
    // 0600: another user's start must not be able to hold our lock.
    const int fd = ::open(QFile::encodeName(lockPath_).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        return Lock::Unavailable;
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(fd);
        return errno == EWOULDBLOCK ? Lock::Held : Lock::Unavailable;
    }
    lockFd_ = fd;
    return Lock::Ours;
}

bool SingleInstance::listen(QString& error)
{
    if (lockFd_ < 0) {
        error = QStringLiteral("another start holds %1").arg(lockPath_);
        return false;
    }
    // We hold the lock, so a socket file there is a crashed run's.
    QLocalServer::removeServer(socketPath_);
    server_ = std::make_unique<QLocalServer>();
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_->listen(socketPath_)) {
        error = QStringLiteral("cannot listen on %1: %2").arg(socketPath_, server_->errorString());
        server_.reset();
        return false;
    }
    connect(server_.get(), &QLocalServer::newConnection, this, &SingleInstance::readHandOver);
    return true;
}

bool SingleInstance::handOver(const QStringList& arguments, int timeoutMs)
{
    // The running app may hold the lock a moment before it listens.
    const QDeadlineTimer deadline(timeoutMs);
    QLocalSocket socket;
    for (;;) {
        socket.connectToServer(socketPath_);
        if (socket.waitForConnected(int(deadline.remainingTime())))
            break;
        if (deadline.hasExpired())
            return false;
        QThread::msleep(50);  // not the window's thread: there is no window yet
    }
    QByteArray message;
    QDataStream out(&message, QIODevice::WriteOnly);
    out << arguments;
    socket.write(message);
    const bool sent = socket.waitForBytesWritten(int(deadline.remainingTime()));
    socket.disconnectFromServer();
    return sent;
}

void SingleInstance::readHandOver()
{
    while (QLocalSocket* socket = server_->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        // The whole list arrives before the sender hangs up.
        connect(socket, &QLocalSocket::readChannelFinished, this, [this, socket] {
            QDataStream in(socket->readAll());
            QStringList arguments;
            in >> arguments;
            if (in.status() == QDataStream::Ok)
                emit activationRequested(arguments);
        });
    }
}
