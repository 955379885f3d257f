#include "platform/linux/PortalColorScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QFileSystemWatcher>
#include <QGuiApplication>
#include <QPalette>
#include <QSettings>
#include <QStandardPaths>

namespace taliro {
namespace {

auto const service = QStringLiteral("org.freedesktop.portal.Desktop");
auto const path = QStringLiteral("/org/freedesktop/portal/desktop");
auto const interface = QStringLiteral("org.freedesktop.portal.Settings");
auto const appearance = QStringLiteral("org.freedesktop.appearance");
auto const colorScheme = QStringLiteral("color-scheme");

/// 1 is dark, 2 is light, anything else no preference. `Read` wraps the value in one variant more than it
/// should.
std::optional<bool> preference(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    switch (value.toUInt()) {
    case 1:
        return true;
    case 2:
        return false;
    default:
        return std::nullopt;
    }
}

QString gtkSettings(QLatin1String version) {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1Char('/') +
           version + QStringLiteral("/settings.ini");
}

bool isDarkTheme(QString const& name) {
    return name.endsWith(QStringLiteral("-dark"), Qt::CaseInsensitive) ||
           name.endsWith(QStringLiteral(":dark"), Qt::CaseInsensitive);
}

} // namespace

std::optional<bool> prefersDark(QString const& settingsIni) {
    if (!QFile::exists(settingsIni))
        return std::nullopt;
    QSettings settings(settingsIni, QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("Settings"));
    auto const flag = QStringLiteral("gtk-application-prefer-dark-theme");
    if (settings.contains(flag))
        return settings.value(flag).toString() == QStringLiteral("1") || settings.value(flag).toBool();
    auto const theme = settings.value(QStringLiteral("gtk-theme-name")).toString();
    if (theme.isEmpty())
        return std::nullopt;
    return isDarkTheme(theme);
}

PortalColorScheme::PortalColorScheme()
    : m_paletteIsDark(QGuiApplication::palette().color(QPalette::Window).lightness() < 128),
      m_gtkFiles(new QFileSystemWatcher(this)) {
    connect(m_gtkFiles, &QFileSystemWatcher::fileChanged, this, &PortalColorScheme::readGtkSettings);
    readGtkSettings();
    askPortal();
}

void PortalColorScheme::askPortal() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    auto request = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    request << appearance << colorScheme;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(request), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
        call->deleteLater();
        QDBusPendingReply<QDBusVariant> const reply = *call;
        if (reply.isError())
            return;
        m_portal = preference(reply.value().variant());
        update();
    });
}

void PortalColorScheme::settingChanged(QString const& group, QString const& key, QDBusVariant const& value) {
    if (group != appearance || key != colorScheme)
        return;
    m_portal = preference(value.variant());
    update();
}

void PortalColorScheme::readGtkSettings() {
    m_gtk = std::nullopt;
    if (auto const theme = qEnvironmentVariable("GTK_THEME"); !theme.isEmpty())
        m_gtk = isDarkTheme(theme);
    for (auto const version : {QLatin1String("gtk-4.0"), QLatin1String("gtk-3.0")}) {
        auto const file = gtkSettings(version);
        if (QFile::exists(file))
            m_gtkFiles->addPath(file); // Again each time: an editor that replaces the file ends the watch.
        if (!m_gtk)
            m_gtk = prefersDark(file);
    }
    update();
}

void PortalColorScheme::update() {
    auto const dark = m_portal.value_or(m_gtk.value_or(m_paletteIsDark));
    if (dark == m_dark)
        return;
    m_dark = dark;
    m_observers.notify(dark);
}

} // namespace taliro
