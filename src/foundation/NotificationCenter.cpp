#include "foundation/NotificationCenter.h"

namespace taliro {

NotificationCenter& NotificationCenter::standard() {
    static NotificationCenter center;
    return center;
}

void NotificationCenter::post(std::string_view name, std::any object,
                              std::map<std::string, std::any> userInfo) {
    auto const found = m_observers.find(name);
    if (found != m_observers.end())
        found->second.notify(Notification{std::string(name), std::move(object), std::move(userInfo)});
}

Subscription NotificationCenter::observe(std::string_view name,
                                         std::function<void(Notification const&)> observer) {
    return m_observers.try_emplace(std::string(name)).first->second.add(std::move(observer));
}

} // namespace taliro
