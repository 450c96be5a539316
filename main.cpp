#include "AppDelegate.h"
#include "Common/StandardStreams.h"
#include "HIDDevice/Platform/Doctor.h"

#include <QApplication>
#include <QIcon>

#include <cstring>
#include <iostream>

int main(int argc, char** argv)
{
    openClosedStandardStreams();
    // The doctor is for a terminal, perhaps one without a display, so it
    // runs before any window could be made.
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--doctor") == 0)
            return runDoctor(std::cout);

    // The images live in the UI library; a static library's resources must
    // be registered by hand.
    Q_INIT_RESOURCE(resources);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Orvane Keyboard Studio"));
    QApplication::setOrganizationDomain(QStringLiteral("orvane.com"));
    // Lets the desktop match the window to its desktop entry and icon; the
    // icon comes from the theme where the package installed it, else (a
    // build that is not installed) from the status item's image.
    QGuiApplication::setDesktopFileName(QStringLiteral("com.orvane.keyboardstudio"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("com.orvane.keyboardstudio"),
                                                 QIcon(QStringLiteral(":/images/Orvane-Bar.svg"))));

    QString error;
    const auto options = parseAppOptions(QApplication::arguments(), error);
    if (!options) {
        std::cerr << error.toStdString() << std::endl;
        return 2;
    }
    if (!options->helpText.isEmpty()) {
        std::cout << options->helpText.toStdString();
        return 0;
    }
    AppDelegate delegate(*options);
    delegate.applicationDidFinishLaunching();
    return app.exec();
}
