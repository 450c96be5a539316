// Who holds a lock on a store's file, read from /proc/locks: its lines give
// the process id and the file's device and inode ("1: POSIX ADVISORY WRITE
// 4711 08:01:1234 1073741824 1073741825").
#include "SQLite/StoreResult.h"

#include "Language/AppText.h"

#include <QFile>
#include <QTextStream>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace {

// The "major:minor:inode" of /proc/locks for `file`, in its hexadecimal
// device numbers and decimal inode.
QString lockKey(const QString& file)
{
    struct stat info {};
    if (::stat(QFile::encodeName(file).constData(), &info) != 0)
        return {};
    return QStringLiteral("%1:%2:%3")
        .arg(major(info.st_dev), 2, 16, QLatin1Char('0'))
        .arg(minor(info.st_dev), 2, 16, QLatin1Char('0'))
        .arg(info.st_ino);
}

QString processName(qint64 pid)
{
    QFile comm(QStringLiteral("/proc/%1/comm").arg(pid));
    return comm.open(QIODevice::ReadOnly) ? QString::fromUtf8(comm.readAll()).trimmed() : QString();
}

}  // namespace

QString lockHolder(const QString& file)
{
    const QString key = lockKey(file);
    QFile locks(QStringLiteral("/proc/locks"));
    if (key.isEmpty() || !locks.open(QIODevice::ReadOnly))
        return {};
    QTextStream lines(&locks);
    for (QString line = lines.readLine(); !line.isNull(); line = lines.readLine()) {
        const QStringList fields = line.simplified().split(QLatin1Char(' '));
        // "->" marks a process waiting for the lock, not holding it.
        if (fields.size() < 6 || fields.at(1) == QLatin1String("->") || fields.at(5) != key)
            continue;
        const qint64 pid = fields.at(4).toLongLong();
        if (pid <= 0)
            continue;
        const QString name = processName(pid);
        if (name == QLatin1String("orvane") && pid != ::getpid())
            return appText(AppText::StoreHolderOtherCopy).arg(pid);
        return appText(AppText::StoreHolderProcess).arg(pid).arg(name);
    }
    return {};
}
