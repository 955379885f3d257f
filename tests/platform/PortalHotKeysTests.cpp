#include "platform/linux/PortalHotKeys.h"

#include "platform/CarbonModifiers.h"
#include "platform/linux/XKeyboard.h"
#include "platform/linux/XkbKeyboardLayout.h"
#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>

namespace taliro::testing {
namespace {

using Phase = HotKeys::Phase;
constexpr std::uint32_t p = 35, up = 126;
constexpr std::uint32_t toggleModifiers = carbonMask::control | carbonMask::option | carbonMask::command;
auto const toggleTrigger = QStringLiteral("CTRL+ALT+LOGO+p");

/// The desktop portal, as far as global shortcuts go. Calls must have the types of the real interface.
class StandInPortal : public QDBusVirtualObject {
public:
    explicit StandInPortal(QDBusConnection bus) : m_bus(std::move(bus)) {
        m_bus.registerVirtualObject(path, this, QDBusConnection::SubPath);
        m_bus.registerService(service);
    }
    ~StandInPortal() override {
        m_bus.unregisterService(service);
        m_bus.unregisterObject(path, QDBusConnection::UnregisterTree);
    }

    uint bindResponse = 0;
    bool isSlow = false;    ///< keeps its answers until `answer`
    QStringList sessions;   ///< open ones
    QStringList bound;      ///< of the session made last
    QVariantMap properties; ///< of the shortcut bound last
    QStringList faults;     ///< calls that the real portal would refuse
    int created = 0;

    void answer() {
        for (auto const& reply : std::exchange(m_held, {}))
            reply();
    }
    void send(char const* signal, QString const& shortcut) {
        auto message = QDBusMessage::createSignal(path, interface, QLatin1String(signal));
        message << QVariant::fromValue(QDBusObjectPath(sessions.last())) << shortcut << qulonglong(1)
                << QVariantMap();
        m_bus.send(message);
    }

    QString introspect(QString const&) const override { return {}; }
    bool handleMessage(QDBusMessage const& message, QDBusConnection const&) override {
        auto const call = message.member();
        if (call == QLatin1String("CreateSession"))
            createSession(message);
        else if (call == QLatin1String("BindShortcuts"))
            bindShortcuts(message);
        else if (call == QLatin1String("Close"))
            sessions.removeAll(message.path());
        else
            return false;
        return true;
    }

private:
    static inline QString const service = QStringLiteral("org.freedesktop.portal.Desktop");
    static inline QString const path = QStringLiteral("/org/freedesktop/portal/desktop");
    static inline QString const interface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

    void expectSignature(QDBusMessage const& message, char const* signature) {
        if (message.signature() != QLatin1String(signature))
            faults.append(message.member() + QLatin1Char(' ') + message.signature());
    }
    /// The path under which a caller waits, or has its session, by the portal's rule.
    static QString pathOf(QDBusMessage const& message, char const* kind, QString const& token) {
        auto const sender = message.service().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
        return path + QLatin1String(kind) + sender + QLatin1Char('/') + token;
    }
    void createSession(QDBusMessage const& message) {
        expectSignature(message, "a{sv}");
        auto const options = qdbus_cast<QVariantMap>(message.arguments().at(0));
        auto const session =
            pathOf(message, "/session/", options.value(QStringLiteral("session_handle_token")).toString());
        ++created;
        sessions.append(session);
        bound.clear();
        respond(message, options, 0, {{QStringLiteral("session_handle"), session}});
    }
    void bindShortcuts(QDBusMessage const& message) {
        expectSignature(message, "oa(sa{sv})sa{sv}");
        auto const session = message.arguments().at(0).value<QDBusObjectPath>().path();
        if (!sessions.contains(session) || !bound.isEmpty())
            faults.append(QStringLiteral("bound twice, or to no session"));
        for (auto const& shortcut : qdbus_cast<QList<PortalShortcut>>(message.arguments().at(1))) {
            bound.append(shortcut.id);
            properties = shortcut.properties;
        }
        respond(message, qdbus_cast<QVariantMap>(message.arguments().at(3)), bindResponse, {});
    }
    void respond(QDBusMessage const& message, QVariantMap const& options, uint response,
                 QVariantMap const& results) {
        auto const request =
            pathOf(message, "/request/", options.value(QStringLiteral("handle_token")).toString());
        m_bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
        auto signal = QDBusMessage::createSignal(request, QStringLiteral("org.freedesktop.portal.Request"),
                                                 QStringLiteral("Response"));
        signal << response << results;
        m_held.push_back([this, signal] { m_bus.send(signal); });
        if (!isSlow)
            answer();
    }

    QDBusConnection m_bus;
    std::vector<std::function<void()>> m_held;
};

struct PortalHotKeysTest : ::testing::Test {
    PortalHotKeysTest() {
        qDBusRegisterMetaType<PortalShortcut>();
        qDBusRegisterMetaType<QList<PortalShortcut>>();
        qunsetenv("DISPLAY");
    }
    PrivateBus& bus = PrivateBus::shared();
    XKeyboard keyboard;
    XkbKeyboardLayout layout{keyboard};
    QDBusConnection ours = bus.connect(QStringLiteral("ours"));
    std::optional<StandInPortal> portal;
    PortalHotKeys hotKeys{ours, layout, QStringLiteral("Show or hide")};
    std::vector<std::pair<std::uint32_t, Phase>> heard;

    void SetUp() override {
        ASSERT_TRUE(ours.isConnected());
        hotKeys.setHandler([this](std::uint32_t id, Phase phase) {
            heard.emplace_back(id, phase);
            return true;
        });
    }
    void startPortal() { portal.emplace(bus.connect(QStringLiteral("portal"))); }
    bool isBound(QStringList const& triggers) {
        return waitUntil([&] { return portal->bound == triggers && portal->sessions.size() == 1; });
    }
    void TearDown() override {
        if (portal) {
            EXPECT_TRUE(portal->faults.isEmpty()) << portal->faults.join(QLatin1Char(';')).toStdString();
        }
    }
};

TEST_F(PortalHotKeysTest, AreBoundOnceAndHeardUntilGivenBack) {
    startPortal();
    auto registration = hotKeys.registerHotKey(p, toggleModifiers, 7);
    ASSERT_TRUE(registration);
    ASSERT_TRUE(isBound({toggleTrigger}));
    EXPECT_EQ(portal->properties.value(QStringLiteral("preferred_trigger")), toggleTrigger);
    EXPECT_EQ(portal->properties.value(QStringLiteral("description")), QStringLiteral("Show or hide"));
    portal->send("Activated", toggleTrigger);
    portal->send("Activated", toggleTrigger); // as some desktops tell of a held key
    portal->send("Deactivated", toggleTrigger);
    portal->send("Activated", toggleTrigger);
    ASSERT_TRUE(waitUntil([&] { return heard.size() >= 3; }));
    EXPECT_EQ(heard, (std::vector<std::pair<std::uint32_t, Phase>>{
                         {7, Phase::pressed}, {7, Phase::released}, {7, Phase::pressed}}));

    // In a menu, the desktop goes on telling of the keys: they take the menu's way, and the session stays.
    std::vector<std::uint32_t> raw;
    hotKeys.setRawKeyHandler([&](HotKeys::RawKey const& key) {
        raw.push_back(key.keyCode);
        return key.carbonModifiers == toggleModifiers;
    });
    registration->reset();
    portal->send("Deactivated", toggleTrigger);
    portal->send("Activated", toggleTrigger);
    ASSERT_TRUE(waitUntil([&] { return raw.size() == 2; }));
    registration = hotKeys.registerHotKey(p, toggleModifiers, 7);
    hotKeys.setRawKeyHandler(nullptr);
    portal->send("Deactivated", toggleTrigger);
    ASSERT_TRUE(waitUntil([&] { return heard.size() == 4; }));
    EXPECT_EQ(portal->created, 1);

    registration->reset();
    EXPECT_TRUE(waitUntil([&] { return portal->sessions.isEmpty(); }));
}

TEST_F(PortalHotKeysTest, ChangesMakeANewSessionOnceTheLastRequestIsOver) {
    startPortal();
    portal->isSlow = true;
    auto first = hotKeys.registerHotKey(p, toggleModifiers, 1);
    ASSERT_TRUE(waitUntil([&] { return portal->created == 1; }));
    auto second = hotKeys.registerHotKey(up, carbonMask::command, 2);
    first->reset();
    portal->isSlow = false;
    portal->answer();
    ASSERT_TRUE(isBound({QStringLiteral("LOGO+Up")}));
    EXPECT_EQ(portal->created, 2);
    EXPECT_EQ(hotKeys.registerHotKey(9999, toggleModifiers, 3).error(), 2) << "no key has that code";
}

TEST_F(PortalHotKeysTest, ADesktopWithoutThePortalIsSaidOnceAndAPortalMayCome) {
    ::testing::internal::CaptureStderr();
    auto registration = hotKeys.registerHotKey(p, toggleModifiers, 1);
    ASSERT_TRUE(waitUntil([&] { return !hotKeys.notice->empty(); }));
    auto more = hotKeys.registerHotKey(up, carbonMask::command, 2);
    more->reset();
    QCoreApplication::processEvents();
    auto const lines = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::ranges::count(lines, '\n'), 1) << lines;
    startPortal();
    ASSERT_TRUE(isBound({toggleTrigger}));
    EXPECT_TRUE(waitUntil([&] { return hotKeys.notice->empty(); }));
    // It starts anew, without the sessions it had.
    portal.reset();
    startPortal();
    EXPECT_TRUE(isBound({toggleTrigger}));
}

TEST_F(PortalHotKeysTest, AUserWhoDeclinesIsToldInThePreferences) {
    startPortal();
    portal->bindResponse = 1;
    ::testing::internal::CaptureStderr();
    auto const registration = hotKeys.registerHotKey(p, toggleModifiers, 1);
    EXPECT_TRUE(waitUntil([&] { return !hotKeys.notice->empty(); }));
    auto const lines = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::ranges::count(lines, '\n'), 1) << lines;
    EXPECT_EQ(portal->created, 1) << "they are not asked again and again";
}

} // namespace
} // namespace taliro::testing
