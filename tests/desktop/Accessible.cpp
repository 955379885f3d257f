#include "desktop/Accessible.h"

#include "desktop/Process.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>

#include <gtest/gtest.h>

namespace taliro::testing {

namespace {

constexpr char accessible[] = "org.a11y.atspi.Accessible";
constexpr char component[] = "org.a11y.atspi.Component";
constexpr char textInterface[] = "org.a11y.atspi.Text";
constexpr char action[] = "org.a11y.atspi.Action";
constexpr uint screenCoordinates = 0;
/// A program may be busy; a test that hangs tells less than one that fails.
constexpr int callTimeoutMs = 10'000;

/// References as the protocol has them: `(so)`.
std::vector<std::pair<QString, QString>> references(QVariant const& value) {
    std::vector<std::pair<QString, QString>> found;
    auto const list = value.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString service;
        QDBusObjectPath path;
        list.beginStructure();
        list >> service >> path;
        list.endStructure();
        found.emplace_back(service, path.path());
    }
    list.endArray();
    return found;
}

/// The names in `a(sss)`: each with a description and keys.
QStringList actionNames(QVariant const& value) {
    QStringList names;
    auto const list = value.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString name;
        QString description;
        QString keys;
        list.beginStructure();
        list >> name >> description >> keys;
        list.endStructure();
        names.append(name);
    }
    list.endArray();
    return names;
}

} // namespace

QDBusMessage Accessible::call(char const* interface, char const* method,
                              QVariantList const& arguments) const {
    if (!m_bus || m_path.isEmpty())
        return {};
    auto message = QDBusMessage::createMethodCall(m_service, m_path, QString::fromLatin1(interface),
                                                  QString::fromLatin1(method));
    message.setArguments(arguments);
    return m_bus->call(message, QDBus::Block, callTimeoutMs);
}

QVariant Accessible::property(char const* interface, char const* name) const {
    auto const reply = call("org.freedesktop.DBus.Properties", "Get",
                            {QString::fromLatin1(interface), QString::fromLatin1(name)});
    return reply.type() == QDBusMessage::ReplyMessage
               ? reply.arguments().value(0).value<QDBusVariant>().variant()
               : QVariant();
}

QString Accessible::name() const {
    return property(accessible, "Name").toString();
}

QString Accessible::description() const {
    return property(accessible, "Description").toString();
}

QString Accessible::role() const {
    return call(accessible, "GetRoleName").arguments().value(0).toString();
}

QString Accessible::text() const {
    return call(textInterface, "GetText", {0, -1}).arguments().value(0).toString();
}

bool Accessible::has(State state) const {
    auto const reply = call(accessible, "GetState");
    if (reply.type() != QDBusMessage::ReplyMessage)
        return false;
    auto const words = qdbus_cast<QList<uint>>(reply.arguments().value(0));
    auto const bit = static_cast<uint>(state);
    return words.value(bit / 32) & (1u << bit % 32);
}

Place Accessible::place() const {
    auto const reply = call(component, "GetExtents", {screenCoordinates});
    if (reply.type() != QDBusMessage::ReplyMessage)
        return {};
    Place place;
    auto const rect = reply.arguments().value(0).value<QDBusArgument>();
    rect.beginStructure();
    rect >> place.x >> place.y >> place.width >> place.height;
    rect.endStructure();
    return place;
}

std::vector<Accessible> Accessible::children() const {
    std::vector<Accessible> found;
    auto const reply = call(accessible, "GetChildren");
    if (reply.type() != QDBusMessage::ReplyMessage)
        return found;
    for (auto const& [service, path] : references(reply.arguments().value(0)))
        found.emplace_back(*m_bus, service, path);
    return found;
}

Accessible Accessible::find(std::function<bool(Accessible const&)> const& wanted) const {
    for (auto const& child : children()) {
        if (wanted(child))
            return child;
        if (auto const found = child.find(wanted))
            return found;
    }
    return {};
}

Accessible Accessible::find(QString const& role, QString const& name) const {
    return find([&](Accessible const& one) {
        return (name.isEmpty() || one.name() == name) && (role.isEmpty() || one.role() == role);
    });
}

std::vector<Accessible> Accessible::findAll(QString const& role) const {
    std::vector<Accessible> found;
    find([&](Accessible const& one) {
        if (one.role() == role)
            found.push_back(one);
        return false;
    });
    return found;
}

Accessible Accessible::expect(QString const& role, QString const& name) const {
    Accessible found;
    bool const came = waitFor([&] {
        found = find([&](Accessible const& one) {
            return (name.isEmpty() || one.name() == name) && (role.isEmpty() || one.role() == role) &&
                   one.isShowing();
        });
        return static_cast<bool>(found);
    });
    EXPECT_TRUE(came) << "no " << role.toStdString() << " called \"" << name.toStdString() << "\" in\n"
                      << dump();
    return found;
}

bool Accessible::waitUntilGone(QString const& role, QString const& name) const {
    return waitFor([&] {
        auto const found = find(role, name);
        return !found || !found.isShowing();
    });
}

bool Accessible::act(QString const& wanted) const {
    auto const reply = call(action, "GetActions");
    if (reply.type() != QDBusMessage::ReplyMessage)
        return false;
    auto const names = actionNames(reply.arguments().value(0));
    auto const at = names.indexOf(wanted);
    return at >= 0 && call(action, "DoAction", {static_cast<int>(at)}).arguments().value(0).toBool();
}

std::string Accessible::dump(int depth) const {
    std::string lines;
    for (auto const& child : children()) {
        lines += std::string(static_cast<std::size_t>(depth) * 2, ' ') + child.role().toStdString() + " \"" +
                 child.name().toStdString() + '"' + (child.isShowing() ? "" : " (hidden)") + '\n' +
                 child.dump(depth + 1);
    }
    return lines;
}

AccessibilityBus::AccessibilityBus(QDBusConnection const& session) {
    auto const call =
        QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                       QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"));
    QDBusReply<QString> const address = session.call(call, QDBus::Block, callTimeoutMs);
    EXPECT_TRUE(address.isValid()) << address.error().message().toStdString();
    if (!address.isValid())
        return;
    m_name = session.name() + QStringLiteral("-a11y");
    m_bus = QDBusConnection::connectToBus(address.value(), m_name);
}

AccessibilityBus::~AccessibilityBus() {
    m_bus.reset();
    QDBusConnection::disconnectFromBus(m_name);
}

Accessible AccessibilityBus::application(int pid) {
    if (!m_bus)
        return {};
    Accessible const registry(*m_bus, QStringLiteral("org.a11y.atspi.Registry"),
                              QStringLiteral("/org/a11y/atspi/accessible/root"));
    Accessible found;
    waitFor([&] {
        for (auto const& one : registry.children()) {
            if (m_bus->interface()->servicePid(one.service()).value() == static_cast<uint>(pid))
                found = one;
        }
        return static_cast<bool>(found);
    });
    return found;
}

} // namespace taliro::testing
