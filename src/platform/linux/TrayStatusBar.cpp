#include "platform/linux/TrayStatusBar.h"

#include "platform/linux/DropCatcher.h"
#include "platform/linux/StatusStrip.h"

#include <QCursor>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QFile>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QTimer>

#include <xcb/xfixes.h>

namespace taliro {

namespace {

/// What a tray icon takes, where the tray tells only that it was clicked.
constexpr int guessedIconSize = 24;
constexpr std::chrono::milliseconds lookInterval(20);
constexpr int looksAtMost = 100;

QIcon iconOf(std::string const& symbol) {
    // The filled picture shows on light and on dark trays alike.
    auto const filled = QStringLiteral(":/files/%1.svg").arg(QString::fromStdString(symbol));
    if (QFile::exists(filled))
        return QIcon(filled);
    return QIcon(QStringLiteral(":/symbols/%1.svg").arg(QString::fromStdString(symbol)));
}

Rect rectOf(QRect const& rect) {
    return {static_cast<double>(rect.x()), static_cast<double>(rect.y()), static_cast<double>(rect.width()),
            static_cast<double>(rect.height())};
}

class TrayStatusItem : public StatusItem {
public:
    TrayStatusItem(X11Connection* x, X11PointerEvents& pointer, Screens& screens, QIcon icon,
                   QString description)
        : m_x(x), m_screens(screens), m_icon(std::move(icon)), m_description(std::move(description)) {
        QObject::connect(&m_placeTimer, &QTimer::timeout, &m_placeTimer, [this] { lookForPlace(); });
        m_screenChanges = m_screens.observeChanges([this] { screensChanged(); });
        watchForTrays();
        if (m_x)
            m_catcher.emplace(
                *m_x, pointer, [this] { return placeInPixels(); }, [this] { call(onDragEntered); });
        show();
    }

    void setVisible(bool visible) override {
        if (visible == m_visible)
            return;
        m_visible = visible;
        show();
    }

    std::optional<Rect> frame() override {
        if (!m_visible)
            return std::nullopt;
        if (m_strip)
            return rectOf(m_strip->geometry());
        if (m_tray && m_isPlaced && !m_tray->geometry().isEmpty())
            return rectOf(m_tray->geometry());
        return m_lastClick;
    }

    bool contains(Point point) override {
        auto const place = frame();
        return place && place->contains(point);
    }

    void setMenu(std::vector<StatusMenuEntry> const& entries) override {
        m_menu = std::make_unique<QMenu>();
        m_menu->setWindowRole(QStringLiteral("status menu"));
        for (auto const& entry : entries) {
            if (entry.title.empty()) {
                m_menu->addSeparator();
                continue;
            }
            auto* action = m_menu->addAction(QString::fromStdString(entry.title));
            action->setShortcut(QKeySequence::fromString(QString::fromStdString(entry.keyEquivalent)));
            action->setEnabled(static_cast<bool>(entry.action));
            QObject::connect(
                action, &QAction::triggered, action, [run = entry.action] { run(); }, Qt::QueuedConnection);
        }
        offerMenu();
    }

    void showMenu() override { m_menu->popup(menuOrigin()); }

private:
    static void call(std::function<void()> const& handler) {
        if (handler)
            handler();
    }

    void watchForTrays() {
        auto const again = [this] { show(); };
        m_hosts.setConnection(QDBusConnection::sessionBus());
        m_hosts.addWatchedService(QStringLiteral("org.kde.StatusNotifierWatcher"));
        QObject::connect(&m_hosts, &QDBusServiceWatcher::serviceOwnerChanged, &m_hosts, again);
        if (!m_x)
            return;
        auto const selection = m_x->screenAtom("_NET_SYSTEM_TRAY_S");
        m_x->watchSelection(selection);
        m_events = m_x->observe([this, selection, again](xcb_generic_event_t const& event) {
            if (!m_x->xfixesEvents() ||
                (event.response_type & 0x7f) != *m_x->xfixesEvents() + XCB_XFIXES_SELECTION_NOTIFY)
                return;
            if (reinterpret_cast<xcb_xfixes_selection_notify_event_t const&>(event).selection == selection)
                again();
        });
    }

    /// In the tray, on the strip, or nowhere, as things are now.
    void show() {
        bool const hasTray = QSystemTrayIcon::isSystemTrayAvailable();
        if (!m_visible || !hasTray)
            m_tray.reset();
        if (!m_visible || hasTray)
            m_strip.reset();
        if (!m_visible)
            return;
        if (hasTray && m_tray)
            startLookingForPlace();
        if (hasTray && !m_tray)
            makeTrayIcon();
        if (!hasTray && !m_strip)
            makeStrip();
        if (m_strip)
            call(onPlaced);
    }

    void makeTrayIcon() {
        m_tray = std::make_unique<QSystemTrayIcon>(m_icon);
        m_tray->setToolTip(m_description);
        QObject::connect(m_tray.get(), &QSystemTrayIcon::activated, m_tray.get(),
                         [this](QSystemTrayIcon::ActivationReason reason) { clicked(reason); });
        m_tray->show();
        offerMenu();
        m_placeBefore = {};
        startLookingForPlace();
    }

    /// A tray on the bus, which never tells a place, shows the menu itself and gives no right click.
    void offerMenu() {
        if (m_tray && m_menu && m_tray->geometry().isNull())
            m_tray->setContextMenu(m_menu.get());
    }

    /// The tray takes the icon in some time later, and no one tells; until then it is at the origin, or where
    /// it was in the tray before.
    void startLookingForPlace() {
        m_looksForPlace = 0;
        m_placeTimer.start(lookInterval);
    }
    void lookForPlace() {
        auto const place = m_tray ? m_tray->geometry() : QRect();
        m_isPlaced = place.topLeft() != QPoint(0, 0);
        bool const isNew = m_isPlaced && place != m_placeBefore;
        if (!isNew && ++m_looksForPlace < looksAtMost)
            return;
        m_placeTimer.stop();
        m_placeBefore = place;
        call(onPlaced);
    }

    void screensChanged() {
        if (m_strip)
            placeStrip();
        if (m_tray)
            startLookingForPlace();
        call(onPlaced);
    }

    void placeStrip() {
        auto const screens = m_screens.all();
        auto const main = std::ranges::find_if(screens, &ScreenInfo::isMain);
        if (main != screens.end())
            m_strip->placeIn(main->visibleFrame);
    }

    void makeStrip() {
        m_strip = std::make_unique<StatusStrip>(m_icon, m_description);
        QObject::connect(m_strip.get(), &StatusStrip::clicked, m_strip.get(), [this](Qt::MouseButton button) {
            call(button == Qt::RightButton ? onRightClick : onLeftClick);
        });
        placeStrip();
        m_strip->show();
    }

    void clicked(QSystemTrayIcon::ActivationReason reason) {
        auto const pointer = QCursor::pos();
        m_lastClick = Rect{pointer.x() - guessedIconSize / 2.0, pointer.y() - guessedIconSize / 2.0,
                           guessedIconSize, guessedIconSize};
        // The second press of a quick two comes as a double click alone.
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
            call(onLeftClick);
        else if (reason == QSystemTrayIcon::Context)
            call(onRightClick);
    }

    QPoint menuOrigin() {
        auto const place = frame();
        if (!place)
            return QCursor::pos();
        QPoint const below(static_cast<int>(place->x), static_cast<int>(place->maxY()));
        auto const* screen = QGuiApplication::screenAt(
            QPoint(static_cast<int>(place->midX()), static_cast<int>(place->midY())));
        auto const height = m_menu->sizeHint().height();
        if (screen && below.y() + height > screen->geometry().bottom())
            return {below.x(), static_cast<int>(place->y) - height};
        return below;
    }

    std::optional<Rect> placeInPixels() {
        auto const place = frame();
        if (!place)
            return std::nullopt;
        auto const* screen = QGuiApplication::screenAt(
            QPoint(static_cast<int>(place->midX()), static_cast<int>(place->midY())));
        auto const ratio = screen ? screen->devicePixelRatio() : 1;
        // A screen's corner keeps its place in pixels; only what lies within is scaled.
        auto const corner = screen ? screen->geometry().topLeft() : QPoint();
        return Rect{corner.x() + (place->x - corner.x()) * ratio,
                    corner.y() + (place->y - corner.y()) * ratio, place->width * ratio,
                    place->height * ratio};
    }

    X11Connection* m_x;
    Screens& m_screens;
    QIcon m_icon;
    QString m_description;
    bool m_visible = true;
    std::unique_ptr<QSystemTrayIcon> m_tray;
    std::unique_ptr<StatusStrip> m_strip;
    std::unique_ptr<QMenu> m_menu;
    std::optional<Rect> m_lastClick;
    QTimer m_placeTimer;
    QRect m_placeBefore; ///< the place told of last
    int m_looksForPlace = 0;
    bool m_isPlaced = false;
    QDBusServiceWatcher m_hosts;
    std::optional<DropCatcher> m_catcher;
    Subscription m_events;
    Subscription m_screenChanges;
};

} // namespace

std::unique_ptr<StatusItem> TrayStatusBar::makeItem(std::string const&, std::string const& symbolName,
                                                    std::string const& description) {
    return std::make_unique<TrayStatusItem>(m_connection, m_pointer, m_screens, iconOf(symbolName),
                                            QString::fromStdString(description));
}

} // namespace taliro
