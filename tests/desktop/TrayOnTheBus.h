#pragma once

#include "desktop/Process.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QThread>

#include <mutex>
#include <string>
#include <vector>

namespace taliro::testing {

/// A tray as most of today's desktops have it: icons announce themselves on the bus, and the tray shows their
/// menus. It stands in for StatusNotifierWatcher and asks for menus by com.canonical.dbusmenu.
class TrayOnTheBus : public QDBusVirtualObject {
public:
    explicit TrayOnTheBus(QDBusConnection bus) : m_bus(std::move(bus)) {
        m_bus.registerVirtualObject(QStringLiteral("/StatusNotifierWatcher"), this);
        m_bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
        moveToThread(&m_thread);
        m_thread.start();
    }
    ~TrayOnTheBus() override {
        m_bus.unregisterService(QStringLiteral("org.kde.StatusNotifierWatcher"));
        m_thread.quit();
        m_thread.wait();
    }

    bool hasIcon() {
        std::lock_guard const lock(m_mutex);
        return !m_item.isEmpty();
    }

    /// The titles in the icon's menu, separators as empty ones.
    std::vector<std::string> menuTitles() {
        std::vector<std::string> titles;
        for (auto const& [id, title] : entries())
            titles.push_back(title);
        return titles;
    }

    void choose(std::string const& wanted) {
        for (auto const& [id, title] : entries())
            if (title == wanted)
                menu().asyncCall(QStringLiteral("Event"), id, QStringLiteral("clicked"),
                                 QVariant::fromValue(QDBusVariant(0)), 0u);
    }

    QString introspect(QString const&) const override {
        return QStringLiteral(
            "<interface name='org.kde.StatusNotifierWatcher'>"
            "<property name='IsStatusNotifierHostRegistered' type='b' access='read'/>"
            "<method name='RegisterStatusNotifierItem'><arg type='s' direction='in'/></method>"
            "</interface>");
    }
    bool handleMessage(QDBusMessage const& message, QDBusConnection const& connection) override {
        if (message.member() == QStringLiteral("RegisterStatusNotifierItem")) {
            std::lock_guard const lock(m_mutex);
            m_item = message.arguments().value(0).toString();
            return connection.send(message.createReply());
        }
        if (message.member() == QStringLiteral("Get")) // Whether there is anything that shows icons.
            return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
        return false;
    }

private:
    struct Entry {
        int id;
        std::string title;
    };

    QDBusInterface menu() {
        QDBusInterface item(m_item, QStringLiteral("/StatusNotifierItem"),
                            QStringLiteral("org.kde.StatusNotifierItem"), m_bus);
        auto const path = item.property("Menu").value<QDBusObjectPath>().path();
        return {m_item, path, QStringLiteral("com.canonical.dbusmenu"), m_bus};
    }

    std::vector<Entry> entries() {
        auto const reply = menu().call(QStringLiteral("GetLayout"), 0, -1, QStringList());
        std::vector<Entry> entries;
        if (reply.arguments().size() < 2)
            return entries;
        auto const root = reply.arguments()[1].value<QDBusArgument>();
        int rootId = 0;
        QVariantMap rootProperties;
        root.beginStructure();
        root >> rootId >> rootProperties;
        root.beginArray();
        while (!root.atEnd()) {
            QDBusVariant child;
            root >> child;
            entries.push_back(entry(child.variant().value<QDBusArgument>()));
        }
        return entries;
    }

    static Entry entry(QDBusArgument const& argument) {
        Entry entry{};
        QVariantMap properties;
        argument.beginStructure();
        argument >> entry.id >> properties;
        entry.title = properties[QStringLiteral("label")].toString().toStdString();
        return entry;
    }

    QDBusConnection m_bus;
    QThread m_thread; ///< answers while the test waits
    std::mutex m_mutex;
    QString m_item; ///< the bus name of the icon that came last
};

} // namespace taliro::testing
