#include "Desktop/SingleInstance.h"

#include "Common/DataPaths.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDeadlineTimer>
#include <QDir>
#include <QSocketNotifier>
#include <QThread>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

bool addressOf(const QString& path, sockaddr_un& address)
{
    const QByteArray name = QFile::encodeName(path);
    address = {};
    address.sun_family = AF_UNIX;
    if (size_t(name.size()) >= sizeof(address.sun_path))
        return false;
    std::memcpy(address.sun_path, name.constData(), size_t(name.size()));
    return true;
}

// Waits until `fd` can be written, at most until `deadline`.
bool writable(int fd, const QDeadlineTimer& deadline)
{
    pollfd watched{fd, POLLOUT, 0};
    return ::poll(&watched, 1, int(deadline.remainingTime())) == 1 && (watched.revents & POLLOUT);
}

}  // namespace

SingleInstance::SingleInstance(const QString& folder, const QString& dataFolder, QObject* parent)
    : QObject(parent)
{
    const QString base = QDir(folder).filePath(nameFor(dataFolder));
    lockPath_ = base + QStringLiteral(".lock");
    socketPath_ = base + QStringLiteral(".socket");
}

SingleInstance::~SingleInstance()
{
    closeServer();  // removes the socket file while the lock is still held
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
    sockaddr_un address;
    if (!addressOf(socketPath_, address)) {
        error = QStringLiteral("cannot listen on %1: the path is too long").arg(socketPath_);
        return false;
    }
    // We hold the lock, so a socket file there is a crashed run's.
    ::unlink(address.sun_path);
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    // Only the user may connect: the socket is made 0600 from the start.
    const mode_t mask = ::umask(0177);
    const bool bound = fd >= 0 && ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::umask(mask);
    if (!bound || ::listen(fd, 8) != 0) {
        error = QStringLiteral("cannot listen on %1: %2").arg(socketPath_, QString::fromLocal8Bit(std::strerror(errno)));
        if (fd >= 0)
            ::close(fd);
        return false;
    }
    serverFd_ = fd;
    serverNotifier_ = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
    connect(serverNotifier_.get(), &QSocketNotifier::activated, this, &SingleInstance::acceptHandOvers);
    return true;
}

bool SingleInstance::handOver(const QStringList& arguments, int timeoutMs)
{
    sockaddr_un address;
    if (!addressOf(socketPath_, address))
        return false;
    // The running app may hold the lock a moment before it listens.
    const QDeadlineTimer deadline(timeoutMs);
    int fd = -1;
    for (;;) {
        fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (fd >= 0 && ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
            break;
        if (fd >= 0)
            ::close(fd);
        if (deadline.hasExpired())
            return false;
        QThread::msleep(50);  // not the window's thread: there is no window yet
    }
    QByteArray message;
    QDataStream out(&message, QIODevice::WriteOnly);
    out << arguments;
    qsizetype sent = 0;
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
    while (sent < message.size() && writable(fd, deadline)) {
        const ssize_t n = ::send(fd, message.constData() + sent, size_t(message.size() - sent), MSG_NOSIGNAL);
        if (n < 0 && errno != EAGAIN && errno != EINTR)
            break;
        sent += std::max<ssize_t>(n, 0);
    }
    ::close(fd);
    return sent == message.size();
}

void SingleInstance::acceptHandOvers()
{
    for (;;) {
        const int fd = ::accept4(serverFd_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (fd < 0)
            return;
        Connection& connection = connections_[fd];
        connection.notifier = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
        connect(connection.notifier.get(), &QSocketNotifier::activated, this, [this, fd] { readHandOver(fd); });
    }
}

void SingleInstance::readHandOver(int fd)
{
    Connection& connection = connections_[fd];
    char buffer[4096];
    ssize_t n;
    while ((n = ::read(fd, buffer, sizeof buffer)) > 0)
        connection.received.append(buffer, n);
    if (n < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    // The whole list has arrived once the sender hangs up.
    QDataStream in(connection.received);
    QStringList arguments;
    in >> arguments;
    // The notifier is the sender of this call: it goes once the call is over.
    connection.notifier->setEnabled(false);
    connection.notifier.release()->deleteLater();
    ::close(fd);
    connections_.erase(fd);
    if (in.status() == QDataStream::Ok && n == 0)
        emit activationRequested(arguments);
}

void SingleInstance::closeServer()
{
    for (auto& [fd, connection] : connections_) {
        connection.notifier.reset();
        ::close(fd);
    }
    connections_.clear();
    if (serverFd_ < 0)
        return;
    serverNotifier_.reset();
    ::close(serverFd_);
    serverFd_ = -1;
    ::unlink(QFile::encodeName(socketPath_).constData());
}
