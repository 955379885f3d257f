#include "platform/linux/DBusOpenRequests.h"

#include "platform/linux/ApplicationAdaptor.h"

#include <QDBusConnection>
#include <QMetaObject>

#include <gio/gio.h>

#include <cstdio>

namespace taliro {

namespace {

constexpr char service[] = "com.taliro.Taliro";
constexpr char objectPath[] = "/com/taliro/Taliro";
constexpr char interface[] = "org.freedesktop.Application";
constexpr int answerTimeoutMs = 5000;

GVariant* requestFor(std::vector<Url> const& urls) {
    GVariantBuilder platformData;
    g_variant_builder_init(&platformData, G_VARIANT_TYPE("a{sv}"));
    if (urls.empty())
        return g_variant_new("(a{sv})", &platformData);
    GVariantBuilder uris;
    g_variant_builder_init(&uris, G_VARIANT_TYPE("as"));
    for (auto const& url : urls)
        g_variant_builder_add(&uris, "s", url.absoluteString().c_str());
    return g_variant_new("(asa{sv})", &uris, &platformData);
}

/// Whether an instance has the name: not one that ended while it was asked.
bool runsAlready(GDBusConnection* bus) {
    auto* answer = g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                               "org.freedesktop.DBus", "NameHasOwner",
                                               g_variant_new("(s)", service), G_VARIANT_TYPE("(b)"),
                                               G_DBUS_CALL_FLAGS_NONE, answerTimeoutMs, nullptr, nullptr);
    gboolean hasOwner = false;
    if (answer) {
        g_variant_get(answer, "(b)", &hasOwner);
        g_variant_unref(answer);
    }
    return hasOwner;
}

} // namespace

DBusOpenRequests::HandOver DBusOpenRequests::handOver(std::vector<Url> const& urls) {
    auto* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (!bus)
        return HandOver::nobody;
    auto* answer = g_dbus_connection_call_sync(
        bus, service, objectPath, interface, urls.empty() ? "Activate" : "Open", requestFor(urls), nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, answerTimeoutMs, nullptr, nullptr);
    auto const result = answer ? HandOver::taken : runsAlready(bus) ? HandOver::failed : HandOver::nobody;
    if (answer)
        g_variant_unref(answer);
    g_object_unref(bus);
    return result;
}

DBusOpenRequests::DBusOpenRequests() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        std::fputs("Taliro: no session bus; other programs can't open places here\n", stderr);
        return;
    }
    new ApplicationAdaptor(*this);
    // The object comes first: who sees the name may call at once.
    bus.registerObject(QLatin1String(objectPath), this, QDBusConnection::ExportAdaptors);
    m_isOnlyOne = bus.registerService(QLatin1String(service));
}

void DBusOpenRequests::start(std::function<void(std::vector<Url>)> open, std::function<void()> activate) {
    m_open = std::move(open);
    m_activate = std::move(activate);
    for (auto& urls : std::exchange(m_waiting, {}))
        QMetaObject::invokeMethod(
            this, [this, urls] { deliver(urls); }, Qt::QueuedConnection);
}

void DBusOpenRequests::deliver(std::vector<Url> urls) {
    if (!m_open)
        m_waiting.push_back(std::move(urls));
    else if (urls.empty())
        m_activate();
    else
        m_open(std::move(urls));
}

} // namespace taliro
