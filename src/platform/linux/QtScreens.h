#pragma once

#include "platform/Screens.h"
#include "platform/linux/X11Connection.h"

#include <QObject>

class QScreen;

namespace taliro {

/// The screens as the toolkit knows them, in its device-independent points.
class QtScreens : public QObject, public Screens {
    Q_OBJECT

public:
    /// `connection`: null where there is no X server.
    explicit QtScreens(X11Connection* connection);

    std::vector<ScreenInfo> all() override;
    Point mouseLocation() override;
    Subscription observeChanges(std::function<void()> observer) override {
        return m_observers.add(std::move(observer));
    }

private:
    void watch(QScreen* screen);

    X11Connection* m_x;
    Observers<> m_observers;
};

} // namespace taliro
