#include "FocusWatch/Platform/Linux/WlrFocusSource.h"

#include "Common/DataPaths.h"

#include <QSocketNotifier>

#include <wayland-client.h>
#include "wlr-foreign-toplevel-management-unstable-v1-client-protocol.h"

#include <algorithm>
#include <cstring>

#include <poll.h>

namespace {
// The protocol's version this build was generated from.
constexpr uint32_t kManagerVersion = 3;
}  // namespace

struct WlrFocusSource::Toplevel {
    zwlr_foreign_toplevel_handle_v1* handle = nullptr;
    // Events between two "done" are one change: they are gathered here and
    // taken together at "done".
    QString pendingApp;
    bool pendingActivated = false;
    QString app;
    bool activated = false;
    WlrFocusSource* source = nullptr;
};

struct WlrFocusSource::Callbacks {
    static void global(void* data, wl_registry* registry, uint32_t id, const char* interface, uint32_t version)
    {
        auto* self = static_cast<WlrFocusSource*>(data);
        if (self->manager_ || std::strcmp(interface, zwlr_foreign_toplevel_manager_v1_interface.name) != 0)
            return;
        self->manager_ = static_cast<zwlr_foreign_toplevel_manager_v1*>(
            wl_registry_bind(registry, id, &zwlr_foreign_toplevel_manager_v1_interface, std::min(version, kManagerVersion)));
        zwlr_foreign_toplevel_manager_v1_add_listener(self->manager_, &managerListener, self);
    }
    static void globalRemove(void*, wl_registry*, uint32_t) {}

    static void toplevel(void* data, zwlr_foreign_toplevel_manager_v1*, zwlr_foreign_toplevel_handle_v1* handle)
    {
        auto* self = static_cast<WlrFocusSource*>(data);
        auto toplevel = std::make_unique<Toplevel>();
        toplevel->handle = handle;
        toplevel->source = self;
        zwlr_foreign_toplevel_handle_v1_add_listener(handle, &toplevelListener, toplevel.get());
        self->toplevels_.push_back(std::move(toplevel));
    }
    static void finished(void* data, zwlr_foreign_toplevel_manager_v1* manager)
    {
        // The compositor stopped the list: nothing more will come.
        zwlr_foreign_toplevel_manager_v1_destroy(manager);
        static_cast<WlrFocusSource*>(data)->manager_ = nullptr;
    }

    static void title(void*, zwlr_foreign_toplevel_handle_v1*, const char*) {}
    static void appId(void* data, zwlr_foreign_toplevel_handle_v1*, const char* app)
    {
        static_cast<Toplevel*>(data)->pendingApp = QString::fromUtf8(app);
    }
    static void output(void*, zwlr_foreign_toplevel_handle_v1*, wl_output*) {}
    static void state(void* data, zwlr_foreign_toplevel_handle_v1*, wl_array* states)
    {
        const auto* begin = static_cast<const uint32_t*>(states->data);
        const auto* end = begin + states->size / sizeof(uint32_t);
        static_cast<Toplevel*>(data)->pendingActivated
            = std::find(begin, end, uint32_t(ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED)) != end;
    }
    static void parent(void*, zwlr_foreign_toplevel_handle_v1*, zwlr_foreign_toplevel_handle_v1*) {}
    static void done(void* data, zwlr_foreign_toplevel_handle_v1*)
    {
        auto* toplevel = static_cast<Toplevel*>(data);
        toplevel->source->toplevelDone(toplevel);
    }
    static void closed(void* data, zwlr_foreign_toplevel_handle_v1*)
    {
        auto* toplevel = static_cast<Toplevel*>(data);
        toplevel->source->toplevelClosed(toplevel);
    }

    static constexpr wl_registry_listener registryListener{.global = global, .global_remove = globalRemove};
    static constexpr zwlr_foreign_toplevel_manager_v1_listener managerListener{.toplevel = toplevel, .finished = finished};
    static constexpr zwlr_foreign_toplevel_handle_v1_listener toplevelListener{
        .title = title,
        .app_id = appId,
        .output_enter = output,
        .output_leave = output,
        .state = state,
        .done = done,
        .closed = closed,
        .parent = parent,
    };
};

std::unique_ptr<WlrFocusSource> WlrFocusSource::connect(const QByteArray& display)
{
    wl_display* connection = wl_display_connect(display.isEmpty() ? nullptr : display.constData());
    if (!connection)
        return nullptr;
    std::unique_ptr<WlrFocusSource> source(new WlrFocusSource(connection));
    if (!source->manager_)
        return nullptr;
    return source;
}

WlrFocusSource::WlrFocusSource(wl_display* display) : display_(display)
{
    registry_ = wl_display_get_registry(display_);
    wl_registry_add_listener(registry_, &Callbacks::registryListener, this);
    // One round trip brings the globals, and so the binding of the list.
    if (wl_display_roundtrip(display_) < 0 || !manager_)
        return;
    notifier_ = std::make_unique<QSocketNotifier>(wl_display_get_fd(display_), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { readEvents(); });
    // The windows open already, the one in front among them, are the first
    // report, once the caller has connected to the signal.
    QMetaObject::invokeMethod(this, [this] { readEvents(); }, Qt::QueuedConnection);
}

WlrFocusSource::~WlrFocusSource()
{
    notifier_.reset();
    for (const auto& toplevel : toplevels_)
        zwlr_foreign_toplevel_handle_v1_destroy(toplevel->handle);
    if (manager_)
        zwlr_foreign_toplevel_manager_v1_destroy(manager_);
    if (registry_)
        wl_registry_destroy(registry_);
    wl_display_disconnect(display_);
}

void WlrFocusSource::readEvents()
{
    // The reading protocol of libwayland: what is queued already is
    // dispatched first; then the socket is read only when it holds data,
    // so the window's thread never waits on the compositor.
    while (wl_display_prepare_read(display_) != 0) {
        if (wl_display_dispatch_pending(display_) < 0) {
            notifier_->setEnabled(false);  // the connection failed: nothing more will come
            return;
        }
    }
    pollfd socket{wl_display_get_fd(display_), POLLIN, 0};
    if (::poll(&socket, 1, 0) > 0)
        wl_display_read_events(display_);
    else
        wl_display_cancel_read(display_);
    wl_display_dispatch_pending(display_);
    wl_display_flush(display_);
    if (wl_display_get_error(display_) != 0)
        notifier_->setEnabled(false);  // the compositor went away: nothing more will come
}

void WlrFocusSource::toplevelDone(Toplevel* toplevel)
{
    toplevel->app = toplevel->pendingApp;
    toplevel->activated = toplevel->pendingActivated;
    // The same window in front again (after a moment on an empty workspace,
    // say) is no change.
    if (!toplevel->activated || (toplevel == lastInFront_ && toplevel->app == lastApp_))
        return;
    lastInFront_ = toplevel;
    lastApp_ = toplevel->app;
    const bool own = toplevel->app.compare(QLatin1String(DataPaths::kApplicationId), Qt::CaseInsensitive) == 0;
    emit applicationInFront(toplevel->app, own);
}

void WlrFocusSource::toplevelClosed(Toplevel* toplevel)
{
    if (lastInFront_ == toplevel)
        lastInFront_ = nullptr;
    zwlr_foreign_toplevel_handle_v1_destroy(toplevel->handle);
    std::erase_if(toplevels_, [&](const auto& t) { return t.get() == toplevel; });
}
