#pragma once
// Named notifications between components that must not know each other.
//
// Delivery is synchronous, on the posting thread, in the order observers were
// added: a handler that needs the main thread hops there itself. The object is
// a QVariant holding a string, an integer or a QVariantMap.

#include <QString>
#include <QVariant>

#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

class NotificationCenter {
public:
    using Handler = std::function<void(const QVariant& object)>;
    using Token = std::uint64_t;

    static NotificationCenter& defaultCenter();

    Token addObserver(const QString& name, Handler handler, const void* owner = nullptr);
    void removeObserver(Token token);
    void removeObservers(const void* owner);
    void post(const QString& name, const QVariant& object = {});

private:
    struct Entry {
        Token token;
        QString name;
        const void* owner;
        std::shared_ptr<Handler> handler;
    };
    std::mutex mutex_;
    std::vector<Entry> entries_;
    Token nextToken_ = 1;
};
