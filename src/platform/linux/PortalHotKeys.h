#pragma once

#include "platform/HotKeys.h"
#include "platform/linux/MenuKeys.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QDeadlineTimer>
#include <QTimer>
#include <QVariantMap>

#include <map>
#include <set>

namespace taliro {

class XkbKeyboardLayout;

/// Hot keys by the desktop portal's GlobalShortcuts, for sessions in which programs can't hold keys
/// themselves. The desktop may ask the user, and lets them choose other keys. It binds a session's shortcuts
/// only once, so each change makes a new session, as soon as everything of one turn is known.
class PortalHotKeys : public QObject, public HotKeys, protected QDBusContext {
    Q_OBJECT

public:
    /// `purpose`: what the desktop tells the user that the shortcut does.
    PortalHotKeys(QDBusConnection bus, XkbKeyboardLayout& layout, QString purpose);
    ~PortalHotKeys() override;

    /// Succeeds where the key can be named; whether the desktop has the portal is known later, see `notice`.
    std::expected<std::unique_ptr<Registration>, int>
    registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, std::uint32_t id) override;
    void setHandler(Handler handler) override { m_handler = std::move(handler); }
    void setRawKeyHandler(RawKeyHandler handler) override;

private Q_SLOTS:
    void sessionCreated(uint response, QVariantMap const& results);
    void shortcutsBound(uint response, QVariantMap const& results);
    void activated(QDBusObjectPath const& session, QString const& shortcut, qulonglong time,
                   QVariantMap const& options);
    void deactivated(QDBusObjectPath const& session, QString const& shortcut, qulonglong time,
                     QVariantMap const& options);

private:
    class Binding;
    struct HotKey {
        QString trigger; ///< "CTRL+ALT+LOGO+p", also what the portal knows it by
        std::uint32_t keyCode = 0;
        std::uint32_t carbonModifiers = 0;
    };

    void bind();
    void createSession();
    void closeSession();
    void bindShortcuts();
    void portalChanged(QString const& former);
    void fail(QString const& reason, std::string const& tellUser);
    /// Calls the portal and has `response` called with what the request comes to.
    void request(QString const& method, QVariantList arguments, QVariantMap options, char const* response);
    void endRequest();
    /// Whether the answer that is being heard is to the request under way, which then is over.
    bool isAwaited();
    void pressed(QString const& trigger, Phase phase);
    std::set<QString> wantedTriggers() const;

    QDBusConnection m_bus;
    XkbKeyboardLayout& m_layout;
    QString m_purpose;
    MenuKeys m_menuKeys;
    Handler m_handler;
    std::map<std::uint32_t, HotKey> m_hotKeys; ///< by id
    std::map<QString, HotKey> m_known;         ///< every trigger there ever was
    std::map<QString, QDeadlineTimer> m_down;  ///< held triggers, until when another press is a repeat
    std::set<QString> m_bound;                 ///< triggers of the session
    QString m_session;
    QString m_requestPath;            ///< of the request that is under way
    char const* m_response = nullptr; ///< the slot that hears what it comes to
    int m_tokens = 0;
    QTimer m_bindSoon;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

/// A shortcut as the portal takes it.
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};
QDBusArgument& operator<<(QDBusArgument& argument, PortalShortcut const& shortcut);
QDBusArgument const& operator>>(QDBusArgument const& argument, PortalShortcut& shortcut);

} // namespace taliro

Q_DECLARE_METATYPE(taliro::PortalShortcut)
