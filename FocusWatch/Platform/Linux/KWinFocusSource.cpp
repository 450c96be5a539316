#include "FocusWatch/Platform/Linux/KWinFocusSource.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDir>

#include <atomic>

#include <unistd.h>

namespace {

const QString kKWinService = QStringLiteral("org.kde.KWin");
const QString kScriptingPath = QStringLiteral("/Scripting");
const QString kScriptingInterface = QStringLiteral("org.kde.kwin.Scripting");
// KWin answers at once; a desktop that hangs must not hold the window long.
constexpr int kCallTimeoutMs = 2000;

// resourceClass is a string in Plasma 6 and a byte array (an ArrayBuffer in
// the script) in Plasma 5.
constexpr const char* kScript = R"(
(function () {
    function text(value) {
        if (typeof value === "string") return value;
        return value ? String.fromCharCode.apply(null, new Uint8Array(value)) : "";
    }
    function report(window) {
        if (!window) return;
        callDBus("%1", "%2", "com.orvane.keyboardstudio.FocusWatch", "activeWindow",
                 text(window.resourceClass), String(window.pid || 0));
    }
    (workspace.windowActivated || workspace.clientActivated).connect(report);
    report(workspace.activeWindow || workspace.activeClient);
})();
)";

QDBusMessage scriptingCall(const QString& method, const QVariantList& arguments = {})
{
    QDBusMessage message = QDBusMessage::createMethodCall(kKWinService, kScriptingPath, kScriptingInterface, method);
    message.setArguments(arguments);
    return message;
}

}  // namespace

bool KWinFocusSource::offered()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() && bus.interface()->isServiceRegistered(kKWinService).value();
}

std::unique_ptr<KWinFocusSource> KWinFocusSource::connect()
{
    if (!offered())
        return nullptr;
    std::unique_ptr<KWinFocusSource> source(new KWinFocusSource);
    return source->load() ? std::move(source) : nullptr;
}

KWinFocusSource::KWinFocusSource()
{
    // Two sources in one process (a test) each get their own path and script.
    static std::atomic<int> count{0};
    const int n = ++count;
    objectPath_ = QStringLiteral("/com/orvane/keyboardstudio/FocusWatch%1").arg(n);
    pluginName_ = QStringLiteral("orvane-focus-%1-%2").arg(::getpid()).arg(n);
    script_.setFileTemplate(QDir::tempPath() + QStringLiteral("/orvane-focus-XXXXXX.js"));
}

KWinFocusSource::~KWinFocusSource()
{
    if (loaded_)
        QDBusConnection::sessionBus().send(scriptingCall(QStringLiteral("unloadScript"), {pluginName_}));
    QDBusConnection::sessionBus().unregisterObject(objectPath_);
}

bool KWinFocusSource::load()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(objectPath_, this, QDBusConnection::ExportScriptableSlots))
        return false;
    const QByteArray text = QString::fromLatin1(kScript).arg(bus.baseService(), objectPath_).toUtf8();
    if (!script_.open() || script_.write(text) != text.size() || !script_.flush())
        return false;
    const QDBusReply<int> id
        = bus.call(scriptingCall(QStringLiteral("loadScript"), {script_.fileName(), pluginName_}), QDBus::Block, kCallTimeoutMs);
    if (!id.isValid() || id.value() < 0)
        return false;
    loaded_ = true;
    // start() runs every loaded script that is not running yet: ours.
    return bus.call(scriptingCall(QStringLiteral("start")), QDBus::Block, kCallTimeoutMs).type() != QDBusMessage::ErrorMessage;
}

void KWinFocusSource::activeWindow(const QString& resourceClass, const QString& pid)
{
    emit applicationInFront(resourceClass, pid.toLongLong() == ::getpid());
}
