#include "Common/NotificationCenter.h"

#include <algorithm>

NotificationCenter& NotificationCenter::defaultCenter()
{
    static NotificationCenter center;
    return center;
}

NotificationCenter::Token NotificationCenter::addObserver(const QString& name, Handler handler, const void* owner)
{
    std::lock_guard lock(mutex_);
    const Token token = nextToken_++;
    entries_.push_back({token, name, owner, std::make_shared<Handler>(std::move(handler))});
    return token;
}

void NotificationCenter::removeObserver(Token token)
{
    std::lock_guard lock(mutex_);
    std::erase_if(entries_, [token](const Entry& e) { return e.token == token; });
}

void NotificationCenter::removeObservers(const void* owner)
{
    std::lock_guard lock(mutex_);
    std::erase_if(entries_, [owner](const Entry& e) { return e.owner == owner; });
}

void NotificationCenter::post(const QString& name, const QVariant& object)
{
    // Handlers run outside the lock so that they may post or (un)subscribe.
    std::vector<std::shared_ptr<Handler>> handlers;
    {
        std::lock_guard lock(mutex_);
        for (const Entry& e : entries_)
            if (e.name == name)
                handlers.push_back(e.handler);
    }
    for (const auto& handler : handlers)
        (*handler)(object);
}
