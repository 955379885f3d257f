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

/// False without windows, where there is no palette to ask for.
bool toolkitIsDark() {
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) &&
           QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

} // namespace

// Read by ourselves: QSettings keeps a file's contents for as long as its time stamp stays the same.
std::optional<bool> prefersDark(QString const& settingsIni) {
    QFile file(settingsIni);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    std::optional<bool> flag;
    std::optional<bool> theme;
    bool inSettings = false;
    for (auto const& line : QString::fromUtf8(file.read(64 * 1024)).split(QLatin1Char('\n'))) {
        auto const trimmed = line.trimmed();
        auto const key = trimmed.section(QLatin1Char('='), 0, 0).trimmed();
        auto const value = trimmed.section(QLatin1Char('='), 1).trimmed();
        if (trimmed.startsWith(QLatin1Char('[')))
            inSettings = trimmed == QStringLiteral("[Settings]");
        else if (inSettings && key == QStringLiteral("gtk-application-prefer-dark-theme"))
            flag = value == QStringLiteral("1") || value == QStringLiteral("true");
        else if (inSettings && key == QStringLiteral("gtk-theme-name"))
            theme = isDarkTheme(value);
    }
    return flag ? flag : theme;
}

PortalColorScheme::PortalColorScheme()
    : m_toolkitIsDark(toolkitIsDark()), m_gtkFiles(new QFileSystemWatcher(this)) {
    connect(m_gtkFiles, &QFileSystemWatcher::fileChanged, this, &PortalColorScheme::readGtkSettings);
    readGtkSettings();
    askPortal();
}

void PortalColorScheme::askPortal() {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    if (!bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                     SLOT(settingChanged(QDBusMessage))))
        qWarning("The settings portal can't be listened to.");
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

void PortalColorScheme::settingChanged(QDBusMessage const& signal) {
    auto const arguments = signal.arguments(); // group, key, value
    if (arguments.size() != 3 || arguments[0] != appearance || arguments[1] != colorScheme)
        return;
    m_portal = preference(arguments[2]);
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
    auto const dark = m_portal.value_or(m_gtk.value_or(m_toolkitIsDark));
    if (dark == m_dark)
        return;
    m_dark = dark;
    m_observers.notify(dark);
}

} // namespace taliro
