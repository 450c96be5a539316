#include "AppDelegate.h"
#include "Common/DataPaths.h"
#include "Common/StandardStreams.h"
#include "Desktop/SingleInstance.h"
#include "HIDDevice/Platform/Doctor.h"
#include "View/LanguageSwitch.h"
#include "View/control/AppFont.h"

#include <QApplication>
#include <QIcon>

#include <cstring>
#include <iostream>

namespace {

QStringList argumentsOf(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

// A later start of the same user with the same data folder gives its
// command line to the running app, which raises its window.
int handOverToRunningApp(int argc, char** argv, SingleInstance& instance)
{
    QCoreApplication app(argc, argv);
    if (instance.handOver(QCoreApplication::arguments()))
        return 0;
    std::cerr << "Orvane Keyboard Studio is already running for this data folder but does not answer on "
              << instance.socketPath().toStdString() << "." << std::endl;
    return 1;
}

void nameTheApplication()
{
    QApplication::setApplicationName(QStringLiteral("Orvane Keyboard Studio"));
    QApplication::setOrganizationDomain(QStringLiteral("orvane.com"));
    // Lets the desktop match the window to its desktop entry and icon; the
    // icon comes from the theme where the package installed it, else (a
    // build that is not installed) from the status item's image.
    QGuiApplication::setDesktopFileName(QStringLiteral("com.orvane.keyboardstudio"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("com.orvane.keyboardstudio"),
                                                 QIcon(QStringLiteral(":/images/Orvane-Bar.svg"))));
}

// Qt's GLib event loop only serves the GTK desktop theme (its file
// dialogs run GLib's loop inside Qt's); everything else here waits on plain
// file descriptors. Without it GLib's main context is never set up: about
// 0.4 MiB less resident memory at start.
void skipGlibLoopWhereNoGtkTheme()
{
    if (qEnvironmentVariableIsSet("QT_NO_GLIB") || qEnvironmentVariable("QT_QPA_PLATFORMTHEME").contains(QStringLiteral("gtk")))
        return;
    // The desktops on which Qt picks the GTK theme by itself.
    const QStringList gtkDesktops = {QStringLiteral("GNOME"), QStringLiteral("X-CINNAMON"), QStringLiteral("UNITY"),
                                     QStringLiteral("MATE"),  QStringLiteral("XFCE"),       QStringLiteral("LXDE"),
                                     QStringLiteral("BUDGIE"), QStringLiteral("PANTHEON")};
    for (const QString& desktop : qEnvironmentVariable("XDG_CURRENT_DESKTOP").toUpper().split(QLatin1Char(':')))
        if (gtkDesktops.contains(desktop))
            return;
    qputenv("QT_NO_GLIB", "1");
}

}  // namespace

int main(int argc, char** argv)
{
    openClosedStandardStreams();
    // What only prints (the doctor, --help, --version, a refused option) is
    // for a terminal, perhaps one without a display, so it is done before
    // anything could need one.
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--doctor") == 0)
            return runDoctor(std::cout);
    QString error;
    const auto options = parseAppOptions(argumentsOf(argc, argv), error);
    if (!options) {
        std::cerr << error.toStdString() << std::endl;
        return 2;
    }
    if (!options->helpText.isEmpty()) {
        std::cout << options->helpText.toStdString() << std::flush;
        return 0;
    }
    if (!options->dataDir.isEmpty())
        DataPaths::setDataFolderOverride(options->dataDir);
    SingleInstance instance(SingleInstance::defaultFolder(), DataPaths::dataFolder());
    const SingleInstance::Lock lock = instance.tryLock();
    if (lock == SingleInstance::Lock::Held)
        return handOverToRunningApp(argc, argv, instance);

    // The images live in the UI library; a static library's resources must
    // be registered by hand.
    Q_INIT_RESOURCE(resources);
    skipGlibLoopWhereNoGtkTheme();
    QApplication app(argc, argv);
    nameTheApplication();
    // Widgets built before the window's font is set keep the desktop's
    // sans-serif. Where that is the CJK face anyway, the font is set first,
    // so that they draw with the app's cut of it, alike, and the whole face
    // stays closed.
    if (AppFont::desktopSansIsInstalledFace())
        useChineseCapableFont();
    AppDelegate delegate(*options);
    // Without the guard the app still runs: a folder we cannot write to
    // must not keep the user out.
    if (lock == SingleInstance::Lock::Unavailable || !instance.listen(error))
        std::cerr << "Starting the app again will not bring this window up: "
                  << (error.isEmpty() ? QStringLiteral("cannot make %1.lock").arg(instance.socketPath().chopped(7)) : error)
                         .toStdString()
                  << std::endl;
    QObject::connect(&instance, &SingleInstance::activationRequested, &delegate,
                     [&delegate] { delegate.applicationShouldHandleReopen(); });
    delegate.applicationDidFinishLaunching();
    return app.exec();
}
