#pragma once
// One running app per user and data folder. The first start holds a lock
// (an flock on a file beside the socket, which the kernel lets go of when
// the process ends, crashed or not) and listens on a local socket; a later
// start with the same data folder finds the lock held, hands its command
// line over through the socket and ends. Two data folders (a test run's
// and the user's) get two names and never meet. A socket file left by a
// crashed run is removed by the next holder of the lock before it listens.
//
// Main thread only. tryLock() needs no application object; listen() and
// handOver() need one. The socket is a plain Unix socket watched by the
// event loop: the app needs no network library for it.

#include <QObject>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>

class QSocketNotifier;

class SingleInstance : public QObject {
    Q_OBJECT
public:
    // `folder` holds the lock and the socket: the user's runtime folder.
    SingleInstance(const QString& folder, const QString& dataFolder, QObject* parent = nullptr);
    ~SingleInstance() override;

    // The user's runtime folder (XDG_RUNTIME_DIR), else the temporary folder.
    static QString defaultFolder();
    // "com.orvane.keyboardstudio-<uid>-<hash of the data folder>".
    static QString nameFor(const QString& dataFolder);

    QString socketPath() const { return socketPath_; }

    enum class Lock {
        Ours,         // this process is the running app
        Held,         // another process is: hand over to it
        Unavailable,  // the lock file cannot be made: run without the guard
    };
    Lock tryLock();
    // Listens for later starts; only the holder of the lock may. False with
    // `error` set when the socket cannot be made.
    bool listen(QString& error);
    // Gives `arguments` to the running app; false when it does not answer
    // within `timeoutMs`.
    bool handOver(const QStringList& arguments, int timeoutMs = 3000);

signals:
    // A later start handed over its command line (argv[0] first).
    void activationRequested(const QStringList& arguments);

private:
    void acceptHandOvers();
    void readHandOver(int fd);
    void closeServer();

    QString lockPath_;
    QString socketPath_;
    int lockFd_ = -1;
    int serverFd_ = -1;
    std::unique_ptr<QSocketNotifier> serverNotifier_;
    struct Connection {
        std::unique_ptr<QSocketNotifier> notifier;
        QByteArray received;
    };
    std::map<int, Connection> connections_;
};
