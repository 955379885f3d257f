#include "platform/linux/PortalHotKeys.h"

#include "platform/CarbonModifiers.h"
#include "platform/linux/XkbKeyboardLayout.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

#include <cstdio>

namespace taliro {

namespace {

auto const service = QStringLiteral("org.freedesktop.portal.Desktop");
auto const portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
auto const shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
auto const requestInterface = QStringLiteral("org.freedesktop.portal.Request");
auto const sessionInterface = QStringLiteral("org.freedesktop.portal.Session");
auto const applicationId = QStringLiteral("com.taliro.Taliro");

constexpr int badValue = 2;
/// Some desktops tell of a held key again and again; slower than this, it was pressed anew.
constexpr std::chrono::milliseconds repeatWithin{700};

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, PortalShortcut const& shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument const& operator>>(QDBusArgument const& argument, PortalShortcut& shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

class PortalHotKeys::Binding : public Registration {
public:
    Binding(PortalHotKeys& owner, std::uint32_t id) : m_owner(owner), m_ownerAlive(owner.m_alive), m_id(id) {}
    ~Binding() override {
        if (m_ownerAlive.expired())
            return;
        m_owner.m_hotKeys.erase(m_id);
        m_owner.m_bindSoon.start();
    }

private:
    PortalHotKeys& m_owner;
    std::weak_ptr<bool> m_ownerAlive;
    std::uint32_t m_id;
};

PortalHotKeys::PortalHotKeys(QDBusConnection bus, XkbKeyboardLayout& layout, QString purpose)
    : m_bus(std::move(bus)), m_layout(layout), m_purpose(std::move(purpose)), m_menuKeys(layout) {
    qRegisterMetaType<QDBusObjectPath>(); // for the slots below
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    m_bindSoon.setSingleShot(true);
    m_bindSoon.setInterval(0);
    connect(&m_bindSoon, &QTimer::timeout, this, &PortalHotKeys::bind);
    m_bus.connect(service, portalPath, shortcutsInterface, QStringLiteral("Activated"), this,
                  SLOT(activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    m_bus.connect(service, portalPath, shortcutsInterface, QStringLiteral("Deactivated"), this,
                  SLOT(deactivated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    auto* watcher = new QDBusServiceWatcher(service, m_bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](QString const&, QString const& former) { portalChanged(former); });
}

PortalHotKeys::~PortalHotKeys() {
    closeSession();
}

std::expected<std::unique_ptr<HotKeys::Registration>, int>
PortalHotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, std::uint32_t id) {
    auto const keysym = m_layout.keysymName(keyCode);
    if (!keysym || (carbonModifiers & carbonMask::function) != 0)
        return std::unexpected(badValue);
    QString trigger;
    for (auto const& [mask, name] : {std::pair{carbonMask::control, "CTRL+"},
                                     {carbonMask::option, "ALT+"},
                                     {carbonMask::shift, "SHIFT+"},
                                     {carbonMask::command, "LOGO+"}})
        if (carbonModifiers & mask)
            trigger += QLatin1String(name);
    trigger += QString::fromStdString(*keysym);
    HotKey const hotKey{trigger, keyCode, carbonModifiers};
    m_known[trigger] = hotKey;
    m_hotKeys[id] = hotKey;
    m_bindSoon.start();
    return std::make_unique<Binding>(*this, id);
}

void PortalHotKeys::setRawKeyHandler(RawKeyHandler handler) {
    m_menuKeys.setHandler(std::move(handler));
    m_bindSoon.start();
}

std::set<QString> PortalHotKeys::wantedTriggers() const {
    std::set<QString> triggers;
    for (auto const& [id, hotKey] : m_hotKeys)
        triggers.insert(hotKey.trigger);
    return triggers;
}

/// Gives the portal what is wanted now, unless a request is still under way: its end comes back here.
void PortalHotKeys::bind() {
    // While a menu is open the desktop goes on telling of the keys; they then take the menu's way.
    if (m_menuKeys.isActive() || !m_requestPath.isEmpty() || wantedTriggers() == m_bound)
        return;
    closeSession();
    if (!m_hotKeys.empty())
        createSession();
}

void PortalHotKeys::createSession() {
    if (!m_bus.isConnected()) {
        m_bound = wantedTriggers(); // Not to be tried again until they change.
        fail(QStringLiteral("there is no session bus"),
             "Global shortcuts don’t work: there is no session bus.");
        return;
    }
    // Programs outside of a sandbox tell their name this way; portals that don't know it find it otherwise.
    auto registration = QDBusMessage::createMethodCall(service, portalPath,
                                                       QStringLiteral("org.freedesktop.host.portal.Registry"),
                                                       QStringLiteral("Register"));
    registration << applicationId << QVariantMap();
    m_bus.asyncCall(registration);
    m_bound = wantedTriggers();
    auto const token = QStringLiteral("taliro_session_%1").arg(++m_tokens);
    request(QStringLiteral("CreateSession"), {}, {{QStringLiteral("session_handle_token"), token}},
            SLOT(sessionCreated(uint, QVariantMap)));
}

void PortalHotKeys::closeSession() {
    m_bound.clear();
    if (m_session.isEmpty())
        return;
    m_bus.asyncCall(QDBusMessage::createMethodCall(service, std::exchange(m_session, {}), sessionInterface,
                                                   QStringLiteral("Close")));
}

void PortalHotKeys::request(QString const& method, QVariantList arguments, QVariantMap options,
                            char const* response) {
    auto const token = QStringLiteral("taliro_%1").arg(++m_tokens);
    auto const sender = m_bus.baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    m_requestPath = portalPath + QStringLiteral("/request/%1/%2").arg(sender, token);
    m_response = response;
    // Before the call, or the answer might be missed.
    m_bus.connect(service, m_requestPath, requestInterface, QStringLiteral("Response"), this, response);
    options.insert(QStringLiteral("handle_token"), token);
    arguments.append(options);
    auto call = QDBusMessage::createMethodCall(service, portalPath, shortcutsInterface, method);
    call.setArguments(arguments);
    auto* answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, path = m_requestPath](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (!finished->isError() || path != m_requestPath)
                    return;
                endRequest();
                fail(QStringLiteral("the desktop offers none to programs (%1)").arg(finished->error().name()),
                     "This desktop doesn’t let programs have global shortcuts.");
            });
}

void PortalHotKeys::endRequest() {
    if (!m_requestPath.isEmpty())
        m_bus.disconnect(service, m_requestPath, requestInterface, QStringLiteral("Response"), this,
                         m_response);
    m_requestPath.clear();
    m_bindSoon.start(); // Something else may be wanted by now.
}

bool PortalHotKeys::isAwaited() {
    if (message().path() != m_requestPath)
        return false;
    endRequest();
    return true;
}

void PortalHotKeys::sessionCreated(uint response, QVariantMap const& results) {
    if (!isAwaited())
        return;
    if (response != 0) {
        fail(QStringLiteral("the desktop refused a session for them"),
             "The desktop didn’t let Taliro have a global shortcut.");
        return;
    }
    auto const handle = results.value(QStringLiteral("session_handle"));
    m_session =
        handle.canConvert<QDBusObjectPath>() ? handle.value<QDBusObjectPath>().path() : handle.toString();
    if (wantedTriggers() == m_bound)
        bindShortcuts();
}

void PortalHotKeys::bindShortcuts() {
    QList<PortalShortcut> shortcuts;
    for (auto const& trigger : m_bound)
        shortcuts.append(
            {trigger,
             {{QStringLiteral("description"), m_purpose}, {QStringLiteral("preferred_trigger"), trigger}}});
    request(QStringLiteral("BindShortcuts"),
            {QVariant::fromValue(QDBusObjectPath(m_session)), QVariant::fromValue(shortcuts), QString()}, {},
            SLOT(shortcutsBound(uint, QVariantMap)));
}

void PortalHotKeys::shortcutsBound(uint response, QVariantMap const&) {
    if (!isAwaited())
        return;
    if (response == 0)
        notice = std::string();
    else
        fail(QStringLiteral("the desktop did not bind the shortcut"),
             "The desktop didn’t let Taliro have a global shortcut.");
}

/// The portal went, taking its sessions along, or came. One that we speak with already came before that was
/// told.
void PortalHotKeys::portalChanged(QString const& former) {
    if (!former.isEmpty()) {
        endRequest();
        m_session.clear();
        m_down.clear();
    }
    if (m_session.isEmpty() && m_requestPath.isEmpty())
        m_bound.clear();
    m_bindSoon.start();
}

void PortalHotKeys::fail(QString const& reason, std::string const& tellUser) {
    if (notice.get() == tellUser)
        return;
    std::fprintf(stderr, "taliro: no global shortcuts: %s\n", qPrintable(reason));
    notice = tellUser;
}

void PortalHotKeys::activated(QDBusObjectPath const& session, QString const& shortcut, qulonglong,
                              QVariantMap const&) {
    if (session.path() != m_session)
        return;
    auto const held = m_down.find(shortcut);
    bool const isRepeat = held != m_down.end() && !held->second.hasExpired();
    m_down.insert_or_assign(shortcut, QDeadlineTimer(repeatWithin));
    if (!isRepeat)
        pressed(shortcut, Phase::pressed);
}

void PortalHotKeys::deactivated(QDBusObjectPath const& session, QString const& shortcut, qulonglong,
                                QVariantMap const&) {
    if (session.path() == m_session && m_down.erase(shortcut) != 0)
        pressed(shortcut, Phase::released);
}

void PortalHotKeys::pressed(QString const& trigger, Phase phase) {
    auto const known = m_known.find(trigger);
    if (known == m_known.end())
        return;
    using RawPhase = RawKey::Phase;
    auto const rawPhase = phase == Phase::pressed ? RawPhase::down : RawPhase::up;
    if (m_menuKeys.handle({rawPhase, known->second.keyCode, known->second.carbonModifiers}))
        return;
    auto const hotKeys = m_hotKeys; // which a call may change
    auto const handler = m_handler;
    for (auto const& [id, hotKey] : hotKeys)
        if (hotKey.trigger == trigger && handler)
            handler(id, phase);
}

} // namespace taliro
