#pragma once

#include "foundation/Subscription.h"

#include <any>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace taliro {

struct Notification {
    std::string name;
    std::any object;                          ///< what it is about; empty where there is nothing to say
    std::map<std::string, std::any> userInfo; ///< further facts by name
};

/// In-process notifications by name. Observers are called at once, on the poster's (main) thread.
class NotificationCenter {
public:
    static NotificationCenter& standard();

    void post(std::string_view name, std::any object = {}, std::map<std::string, std::any> userInfo = {});
    [[nodiscard]] Subscription observe(std::string_view name,
                                       std::function<void(Notification const&)> observer);

private:
    std::map<std::string, Observers<Notification const&>, std::less<>> m_observers;
};

} // namespace taliro
