#include "platform/linux/QtScreens.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace taliro {

namespace {

Rect rectOf(QRect const& rect) {
    return {static_cast<double>(rect.x()), static_cast<double>(rect.y()), static_cast<double>(rect.width()),
            static_cast<double>(rect.height())};
}

} // namespace

QtScreens::QtScreens() {
    for (auto* screen : QGuiApplication::screens())
        watch(screen);
    connect(qApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        watch(screen);
        m_observers.notify();
    });
    connect(qApp, &QGuiApplication::screenRemoved, this, [this] { m_observers.notify(); });
}

void QtScreens::watch(QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, [this] { m_observers.notify(); });
    connect(screen, &QScreen::availableGeometryChanged, this, [this] { m_observers.notify(); });
}

std::vector<ScreenInfo> QtScreens::all() {
    std::vector<ScreenInfo> screens;
    auto const* main = QGuiApplication::primaryScreen();
    for (auto const* screen : QGuiApplication::screens())
        screens.push_back({rectOf(screen->geometry()), rectOf(screen->availableGeometry()), screen == main,
                           screen->devicePixelRatio()});
    return screens;
}

Point QtScreens::mouseLocation() {
    auto const position = QCursor::pos();
    return {static_cast<double>(position.x()), static_cast<double>(position.y())};
}

} // namespace taliro
