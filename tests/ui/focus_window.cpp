// A window with the application identity given on the command line (its
// Wayland app_id, its X11 class), for the tests that bring windows to the
// front: orvane_focus_window APP_ID
#include <QGuiApplication>
#include <QRasterWindow>

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    if (argc > 1)
        QGuiApplication::setDesktopFileName(QString::fromLocal8Bit(argv[1]));
    QRasterWindow window;
    window.resize(200, 150);
    window.show();
    return app.exec();
}
