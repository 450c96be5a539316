#include "FocusWatch/Platform/Linux/X11FocusSource.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace {

// A reply xcb allocated, freed with free().
template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

template <typename T>
Reply<T> owned(T* reply) { return Reply<T>(reply, &std::free); }

}  // namespace

std::unique_ptr<X11FocusSource> X11FocusSource::connect(const QByteArray& display)
{
    xcb_connection_t* connection = xcb_connect(display.isEmpty() ? nullptr : display.constData(), nullptr);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<X11FocusSource>(new X11FocusSource(connection));
}

X11FocusSource::X11FocusSource(xcb_connection_t* connection) : connection_(connection)
{
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    activeAtom_ = atom("_NET_ACTIVE_WINDOW");
    pidAtom_ = atom("_NET_WM_PID");
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection_);
    notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { readEvents(); });
    // What is in front already counts as the first change, once the caller
    // has connected to the signal.
    QMetaObject::invokeMethod(this, [this] { reportActiveWindow(); }, Qt::QueuedConnection);
}

X11FocusSource::~X11FocusSource()
{
    notifier_.reset();
    xcb_disconnect(connection_);
}

uint32_t X11FocusSource::atom(const char* name) const
{
    auto reply = owned(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, uint16_t(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : uint32_t(XCB_ATOM_NONE);
}

void X11FocusSource::readEvents()
{
    bool activeChanged = false;
    while (xcb_generic_event_t* raw = xcb_poll_for_event(connection_)) {
        auto event = owned(raw);
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
            auto* notify = reinterpret_cast<xcb_property_notify_event_t*>(event.get());
            activeChanged = activeChanged || (notify->window == root_ && notify->atom == activeAtom_);
        }
    }
    if (xcb_connection_has_error(connection_)) {
        notifier_->setEnabled(false);  // the X server went away: nothing more will come
        return;
    }
    if (activeChanged)
        reportActiveWindow();
}

void X11FocusSource::reportActiveWindow()
{
    auto active = owned(xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, root_, activeAtom_, XCB_ATOM_WINDOW, 0, 1), nullptr));
    if (!active || xcb_get_property_value_length(active.get()) < 4)
        return;
    const uint32_t window = *static_cast<uint32_t*>(xcb_get_property_value(active.get()));
    if (window == lastWindow_ || window == XCB_WINDOW_NONE)
        return;
    lastWindow_ = window;
    auto wmClass = owned(xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256), nullptr));
    auto pid = owned(xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, window, pidAtom_, XCB_ATOM_CARDINAL, 0, 1), nullptr));
    // WM_CLASS holds the instance and the class, each ending in a NUL.
    QString appClass;
    if (wmClass) {
        const int length = xcb_get_property_value_length(wmClass.get());
        const char* value = static_cast<const char*>(xcb_get_property_value(wmClass.get()));
        const QList<QByteArray> parts = QByteArray(value, length).split('\0');
        appClass = QString::fromUtf8(parts.size() > 1 ? parts[1] : parts.value(0));
    }
    const bool own = pid && xcb_get_property_value_length(pid.get()) >= 4
                     && *static_cast<uint32_t*>(xcb_get_property_value(pid.get())) == uint32_t(::getpid());
    emit applicationInFront(appClass, own);
}
