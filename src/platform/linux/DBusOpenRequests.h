#pragma once

#include "platform/OpenRequests.h"

#include <QObject>

#include <optional>
#include <string>

namespace taliro {

/// The bus name `com.taliro.Taliro` with the interface `org.freedesktop.Application`: who has the name is the
/// one instance of a session, to which later starts hand what they were given.
class DBusOpenRequests : public QObject, public OpenRequests {
    Q_OBJECT

public:
    enum class HandOver {
        taken,  ///< the instance that runs already has the request
        nobody, ///< none runs, or there is no bus
        failed, ///< one runs but doesn't answer
    };
    /// Asks the instance that runs to show `urls`, or itself where there are none. Needs no application
    /// object.
    static HandOver handOver(std::vector<Url> const& urls);

    /// Takes the name. `isOnlyOne` tells whether that succeeded; where there is no bus, it holds as well.
    DBusOpenRequests();
    bool isOnlyOne() const { return m_isOnlyOne; }

    void start(std::function<void(std::vector<Url>)> open, std::function<void()> activate) override;

    /// A request came: for these places or, without any, for the browser.
    void deliver(std::vector<Url> urls);

private:
    bool m_isOnlyOne = true;
    std::vector<std::vector<Url>> m_waiting;
    std::function<void(std::vector<Url>)> m_open;
    std::function<void()> m_activate;
};

} // namespace taliro
