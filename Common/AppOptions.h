#pragma once
// The command-line options. None of them changes what the app does with a
// keyboard: they add a virtual one, a trace, another data folder, or a timed
// exit with a screenshot for scripted runs.

#include <QString>
#include <QStringList>

#include <optional>

struct AppOptions {
    QString demoModel;    // "m61", "w61" or "k68"; empty: no virtual keyboard
    QString traceFile;
    QString dataDir;
    std::optional<double> quitAfterSeconds;
    QString screenshotFile;
    bool minimized = false;  // start with the window hidden, in the tray
    // Set for --help and --version: print it to standard output and exit.
    QString helpText;
};

// The longest --quit-after: a day.
inline constexpr double kMaxQuitAfterSeconds = 24 * 60 * 60;

// "Orvane Keyboard Studio 0.1.0"
QString versionText();

// Parses the arguments (argv[0] first). Needs no application object, so
// what only prints works without a display. On bad input returns nullopt and
// puts a message meant for the user in `error`.
std::optional<AppOptions> parseAppOptions(const QStringList& arguments, QString& error);
