#include "Common/AppOptions.h"

#include <QCommandLineParser>
#include <QFile>

#include <cmath>

namespace {

// Qt's own options, which the application object takes out of the command
// line; ours is read before that object exists, so it leaves them out too.
QStringList withoutQtOptions(const QStringList& arguments)
{
    static const QStringList withValue{"platform", "platformpluginpath", "platformtheme", "plugin", "display",
                                       "geometry", "qwindowgeometry", "qwindowtitle", "qwindowicon", "title",
                                       "style", "stylesheet", "session", "name", "qmljsdebugger"};
    static const QStringList alone{"reverse", "nograb", "dograb", "sync", "widgetcount"};
    QStringList kept;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        QString name = arguments[i];
        if (i == 0 || !name.startsWith(QLatin1Char('-'))) {
            kept << name;
            continue;
        }
        name.remove(0, name.startsWith(QLatin1String("--")) ? 2 : 1);
        if (withValue.contains(name.section(QLatin1Char('='), 0, 0)))
            i += name.contains(QLatin1Char('=')) ? 0 : 1;
        else if (!alone.contains(name))
            kept << arguments[i];
    }
    return kept;
}

}  // namespace

QString versionText() { return QStringLiteral("Orvane Keyboard Studio " ORVANE_VERSION "\n"); }

std::optional<AppOptions> parseAppOptions(const QStringList& arguments, QString& error)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Orvane Keyboard Studio"));
    parser.addHelpOption();
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Print the version and exit."));
    const QCommandLineOption demo(QStringLiteral("demo"), QStringLiteral("Plug in a virtual keyboard: m61, w61 or k68."), QStringLiteral("model"));
    const QCommandLineOption trace(QStringLiteral("trace"), QStringLiteral("Write the virtual keyboard's report trace to FILE."), QStringLiteral("file"));
    const QCommandLineOption dataDir(QStringLiteral("data-dir"), QStringLiteral("Keep the settings and databases in DIR."), QStringLiteral("dir"));
    const QCommandLineOption quitAfter(QStringLiteral("quit-after"), QStringLiteral("Quit after SECONDS."), QStringLiteral("seconds"));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"), QStringLiteral("Save a PNG of the window just before quitting."), QStringLiteral("file"));
    // Acted on before the window exists (main.cpp); listed here for --help.
    const QCommandLineOption doctor(QStringLiteral("doctor"),
                                    QStringLiteral("Check what stands between you and the keyboard (device nodes, udev rule, "
                                                   "seat manager, input devices), print the command for each problem, and exit. "
                                                   "Sends nothing to a keyboard."));
    const QCommandLineOption minimized(QStringLiteral("minimized"),
                                       QStringLiteral("Start with the window hidden; the tray icon shows it."));
    parser.addOptions({version, demo, trace, dataDir, quitAfter, screenshot, minimized, doctor});

    if (!parser.parse(withoutQtOptions(arguments))) {
        error = parser.errorText();
        return std::nullopt;
    }
    AppOptions options;
    if (parser.isSet(QStringLiteral("help"))) {
        options.helpText = parser.helpText();
        return options;
    }
    if (parser.isSet(version)) {
        options.helpText = versionText();
        return options;
    }
    options.minimized = parser.isSet(minimized);
    options.demoModel = parser.value(demo).toLower();
    if (parser.isSet(demo) && options.demoModel != QLatin1String("m61") && options.demoModel != QLatin1String("w61")
        && options.demoModel != QLatin1String("k68")) {
        error = QStringLiteral("Unknown demo keyboard \"%1\": use m61, w61 or k68.").arg(parser.value(demo));
        return std::nullopt;
    }
    options.traceFile = parser.value(trace);
    // Said now, not a second later on standard error when the keyboard plugs in.
    if (!options.traceFile.isEmpty()) {
        QFile file(options.traceFile);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) {
            error = QStringLiteral("--trace: cannot write to \"%1\": %2.").arg(options.traceFile, file.errorString());
            return std::nullopt;
        }
    }
    options.dataDir = parser.value(dataDir);
    // An empty folder would silently mean the default one.
    if (parser.isSet(dataDir) && options.dataDir.isEmpty()) {
        error = QStringLiteral("--data-dir needs a folder.");
        return std::nullopt;
    }
    options.screenshotFile = parser.value(screenshot);
    if (parser.isSet(quitAfter)) {
        bool ok = false;
        const double seconds = parser.value(quitAfter).toDouble(&ok);
        if (!ok || !std::isfinite(seconds) || seconds < 0 || seconds > kMaxQuitAfterSeconds) {
            error = QStringLiteral("--quit-after needs a number of seconds from 0 to 86400, not \"%1\".")
                        .arg(parser.value(quitAfter));
            return std::nullopt;
        }
        options.quitAfterSeconds = seconds;
    }
    return options;
}
