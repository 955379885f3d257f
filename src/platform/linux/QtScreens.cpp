#include "platform/linux/QtScreens.h"

#include "platform/linux/X11Struts.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace taliro {

namespace {

Rect rectOf(QRect const& rect) {
    return {static_cast<double>(rect.x()), static_cast<double>(rect.y()), static_cast<double>(rect.width()),
            static_cast<double>(rect.height())};
}

/// A screen's corner keeps its place in pixels; only what lies within is scaled.
Rect scaled(Rect const& rect, Rect const& screen, double factor) {
    return {screen.x + (rect.x - screen.x) * factor, screen.y + (rect.y - screen.y) * factor,
            rect.width * factor, rect.height * factor};
}

Size desktopSize(X11Connection& x) {
    Reply<xcb_get_geometry_reply_t> const root(
        xcb_get_geometry_reply(x, xcb_get_geometry(x, x.root()), nullptr));
    return root ? Size{static_cast<double>(root->width), static_cast<double>(root->height)} : Size{};
}

} // namespace

QtScreens::QtScreens(X11Connection* connection) : m_x(connection) {
    for (auto* screen : QGuiApplication::screens())
        watch(screen);
    connect(qApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        watch(screen);
        m_observers.notify();
    });
    connect(qApp, &QGuiApplication::screenRemoved, this, [this] { m_observers.notify(); });
    connect(qApp, &QGuiApplication::primaryScreenChanged, this, [this] { m_observers.notify(); });
}

void QtScreens::watch(QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, [this] { m_observers.notify(); });
    connect(screen, &QScreen::availableGeometryChanged, this, [this] { m_observers.notify(); });
}

std::vector<ScreenInfo> QtScreens::all() {
    auto const known = QGuiApplication::screens();
    std::vector<ScreenInfo> screens;
    for (auto const* screen : known)
        screens.push_back({rectOf(screen->geometry()), rectOf(screen->availableGeometry()),
                           screen == QGuiApplication::primaryScreen(), screen->devicePixelRatio()});
    if (m_x && known.size() > 1) { // Of several screens the toolkit doesn't tell what docks cover.
        auto const taken = struts(*m_x);
        auto const desktop = desktopSize(*m_x);
        for (auto& screen : screens) {
            auto const pixels = scaled(screen.frame, screen.frame, screen.scale);
            screen.visibleFrame = scaled(visiblePart(pixels, desktop, taken), screen.frame, 1 / screen.scale);
        }
    }
    return screens;
}

Point QtScreens::mouseLocation() {
    auto const position = QCursor::pos();
    return {static_cast<double>(position.x()), static_cast<double>(position.y())};
}

} // namespace taliro
