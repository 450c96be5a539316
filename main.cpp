#include "AppDelegate.h"

#include <QApplication>

#include <iostream>

int main(int argc, char** argv)
{
    // The images live in the UI library; a static library's resources must
    // be registered by hand.
    Q_INIT_RESOURCE(resources);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Orvane Keyboard Studio"));
    QApplication::setOrganizationDomain(QStringLiteral("orvane.com"));

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
