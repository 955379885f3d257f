#include "platform/linux/PortalColorScheme.h"

#include "support/PrivateBus.h"
#include "support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QDeadlineTimer>

namespace taliro {
namespace {

using testing::PrivateBus;

bool waitUntil(auto const& condition) {
    QDeadlineTimer const end(20000);
    while (!condition() && !end.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    return condition();
}

/// The settings portal, as far as anybody asks it here.
class Portal : public QDBusVirtualObject {
public:
    explicit Portal(uint scheme)
        : m_scheme(scheme), m_bus(PrivateBus::shared().connect(QStringLiteral("portal"))) {
        m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this);
        m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    ~Portal() override { QDBusConnection::disconnectFromBus(QStringLiteral("portal")); }

    void change(QString const& key, uint value) {
        auto signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                 QStringLiteral("org.freedesktop.portal.Settings"),
                                                 QStringLiteral("SettingChanged"));
        signal << QStringLiteral("org.freedesktop.appearance") << key
               << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

    QString introspect(QString const&) const override { return {}; }
    bool handleMessage(QDBusMessage const& message, QDBusConnection const& connection) override {
        if (message.member() != QStringLiteral("Read"))
            return false;
        ++reads;
        QDBusVariant const inner(m_scheme);
        connection.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
        return true;
    }

    int reads = 0;

private:
    uint m_scheme;
    QDBusConnection m_bus;
};

TEST(PortalColorScheme, FollowsThePortal) {
    ASSERT_TRUE(PrivateBus::shared().isRunning());
    Portal portal(1);
    PortalColorScheme scheme;
    auto const atFirst = scheme.isDark();
    std::vector<bool> heard;
    auto const subscription = scheme.observe([&](bool dark) { heard.push_back(dark); });

    EXPECT_TRUE(waitUntil([&] { return scheme.isDark(); }));
    portal.change(QStringLiteral("contrast"), 2);
    portal.change(QStringLiteral("color-scheme"), 2);
    EXPECT_TRUE(waitUntil([&] { return !scheme.isDark(); }));
    portal.change(QStringLiteral("color-scheme"), 1);
    EXPECT_TRUE(waitUntil([&] { return scheme.isDark(); }));

    auto const expected = atFirst ? std::vector{false, true} : std::vector{true, false, true};
    EXPECT_EQ(heard, expected);
    EXPECT_EQ(portal.reads, 1);
}

TEST(PortalColorScheme, ReadsWhatGtkPrefers) {
    struct Case {
        char const* settings;
        std::optional<bool> dark;
    };
    testing::TemporaryFolder folder;
    for (auto const& [settings, dark] : {
             Case{"[Settings]\ngtk-application-prefer-dark-theme=1\n", true},
             Case{"[Settings]\ngtk-application-prefer-dark-theme=true\n", true},
             Case{"[Settings]\ngtk-application-prefer-dark-theme=0\ngtk-theme-name=Adwaita-dark\n", false},
             Case{"[Settings]\ngtk-theme-name=Adwaita-dark\n", true},
             Case{"[Settings]\ngtk-theme-name=Adwaita\n", false},
             Case{"[Settings]\ngtk-font-name=Inter 10\n", std::nullopt},
             Case{"gtk-theme-name=Adwaita-dark\n", std::nullopt},
             Case{"\x01\xff[", std::nullopt},
         }) {
        auto const file = folder.write("settings.ini", settings);
        EXPECT_EQ(prefersDark(QString::fromStdString(file)), dark) << settings;
    }
    EXPECT_EQ(prefersDark(QString::fromStdString(folder / "missing.ini")), std::nullopt);
}

} // namespace
} // namespace taliro
