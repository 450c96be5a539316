#include "Desktop/Autostart.h"

#include "Common/DataPaths.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace Autostart {

QString entryPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/autostart/")
           + QLatin1String(DataPaths::kApplicationId) + QStringLiteral(".desktop");
}

bool isEnabled() { return QFile::exists(entryPath()); }

QString entryText(const QString& program)
{
    // A path with a space is quoted, as the desktop entry format asks.
    const QString exec = program.contains(QLatin1Char(' ')) ? QStringLiteral("\"%1\"").arg(program) : program;
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Orvane Keyboard Studio\n"
                          "Comment=Keeps the keyboard's profile menu in the tray\n"
                          "Exec=%1 --minimized\n"
                          "Icon=com.orvane.keyboardstudio\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(exec);
}

bool setEnabled(bool enabled, const QString& program, QString& error)
{
    const QString path = entryPath();
    if (!enabled) {
        if (!QFile::exists(path) || QFile::remove(path))
            return true;
        error = QStringLiteral("cannot remove %1").arg(path);
        return false;
    }
    if (!QDir().mkpath(QFileInfo(path).absolutePath())) {
        error = QStringLiteral("cannot make the folder of %1").arg(path);
        return false;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(entryText(program).toUtf8()) < 0 || !file.commit()) {
        error = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

}  // namespace Autostart
