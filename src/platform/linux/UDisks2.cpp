#include "platform/linux/UDisks2.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QTimer>

#include <algorithm>

namespace taliro {

namespace {

constexpr char service[] = "org.freedesktop.UDisks2";
constexpr char managerPath[] = "/org/freedesktop/UDisks2";
constexpr char objectManager[] = "org.freedesktop.DBus.ObjectManager";
constexpr char blockInterface[] = "org.freedesktop.UDisks2.Block";
constexpr char driveInterface[] = "org.freedesktop.UDisks2.Drive";
constexpr char encryptedInterface[] = "org.freedesktop.UDisks2.Encrypted";
constexpr char fileSystemInterface[] = "org.freedesktop.UDisks2.Filesystem";
/// What is still to be written goes out before an unmount returns.
constexpr int callTimeoutMilliseconds = 5 * 60 * 1000;

using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

QString text(char const* latin) {
    return QString::fromLatin1(latin);
}

/// Paths come as bytes with a zero at the end.
std::vector<std::string> mountPointsOf(QVariantMap const& fileSystem) {
    std::vector<std::string> points;
    auto const value = fileSystem.value(text("MountPoints"));
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return points;
    auto const argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != text("aay"))
        return points;
    for (auto const& bytes : qdbus_cast<QList<QByteArray>>(argument))
        points.emplace_back(bytes.constData());
    return points;
}

QString pathOf(QVariant const& value) {
    auto const path = value.value<QDBusObjectPath>().path();
    return path == text("/") ? QString() : path;
}

void describeDrive(QVariantMap const& drive, DiskFileSystem& found) {
    auto const bus = drive.value(text("ConnectionBus")).toString();
    found.isRemovable =
        drive.value(text("Removable")).toBool() || drive.value(text("MediaRemovable")).toBool();
    found.isInternal =
        !*found.isRemovable && bus != text("usb") && bus != text("sdio") && bus != text("ieee1394");
    found.isEjectable = drive.value(text("Ejectable")).toBool();
}

std::vector<DiskFileSystem> fileSystemsOf(Objects const& objects) {
    std::vector<DiskFileSystem> fileSystems;
    for (auto object = objects.begin(); object != objects.end(); ++object) {
        auto const& interfaces = object.value();
        if (!interfaces.contains(text(fileSystemInterface)) || !interfaces.contains(text(blockInterface)))
            continue;
        auto const block = interfaces.value(text(blockInterface));
        DiskFileSystem found;
        found.path = object.key().path();
        found.mountPoints = mountPointsOf(interfaces.value(text(fileSystemInterface)));
        auto const hint = block.value(text("HintName")).toString();
        found.label = (hint.isEmpty() ? block.value(text("IdLabel")).toString() : hint).toStdString();
        found.isIgnored = block.value(text("HintIgnore")).toBool();
        found.cryptoDevice = pathOf(block.value(text("CryptoBackingDevice")));
        found.drive = pathOf(block.value(text("Drive")));
        auto const drive = objects.value(QDBusObjectPath(found.drive)).value(text(driveInterface));
        if (!drive.isEmpty())
            describeDrive(drive, found);
        fileSystems.push_back(std::move(found));
    }
    return fileSystems;
}

std::string wordsOf(QDBusError const& error) {
    switch (error.type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::Disconnected:
    case QDBusError::NoServer:
        return "The disk service (UDisks2) is not running.";
    default:
        return error.message().toStdString();
    }
}

} // namespace

UDisks2::UDisks2(QDBusConnection bus) : m_bus(std::move(bus)) {
    qDBusRegisterMetaType<Interfaces>();
    qDBusRegisterMetaType<Objects>();
    for (auto const* signal : {"InterfacesAdded", "InterfacesRemoved"})
        m_bus.connect(text(service), text(managerPath), text(objectManager), text(signal), this,
                      SLOT(refreshSoon()));
    m_bus.connect(text(service), QString(), text("org.freedesktop.DBus.Properties"),
                  text("PropertiesChanged"), this, SLOT(refreshSoon()));
}

DiskFileSystem const* UDisks2::mountedAt(std::string_view mountPoint) const {
    for (auto const& fileSystem : m_fileSystems)
        if (std::ranges::find(fileSystem.mountPoints, mountPoint) != fileSystem.mountPoints.end())
            return &fileSystem;
    return nullptr;
}

/// One question after a burst of signals.
void UDisks2::refreshSoon() {
    if (std::exchange(m_refreshPending, true))
        return;
    QTimer::singleShot(100, this, [this] {
        m_refreshPending = false;
        refresh();
    });
}

void UDisks2::refresh(Done done) {
    auto const call = QDBusMessage::createMethodCall(text(service), text(managerPath), text(objectManager),
                                                     text("GetManagedObjects"));
    auto* const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, done = std::move(done)] {
        watcher->deleteLater();
        QDBusPendingReply<Objects> const reply = *watcher;
        m_fileSystems = reply.isError() ? std::vector<DiskFileSystem>() : fileSystemsOf(reply.value());
        Q_EMIT changed();
        if (!done)
            return;
        if (reply.isError())
            done(std::unexpected(wordsOf(reply.error())));
        else
            done({});
    });
}

void UDisks2::call(QString const& path, QString const& interface, QString const& method, Done done) {
    auto message = QDBusMessage::createMethodCall(text(service), path, interface, method);
    message << QVariantMap();
    message.setInteractiveAuthorizationAllowed(true);
    auto* const watcher =
        new QDBusPendingCallWatcher(m_bus.asyncCall(message, callTimeoutMilliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, done = std::move(done)] {
        watcher->deleteLater();
        if (watcher->isError())
            done(std::unexpected(wordsOf(watcher->error())));
        else
            done({});
    });
}

void UDisks2::eject(std::string const& mountPoint, Done done) {
    // What is known may be older than the mount.
    refresh([this, mountPoint, done = std::move(done)](auto const& refreshed) {
        if (!refreshed)
            return done(refreshed);
        auto const* mounted = mountedAt(mountPoint);
        if (!mounted)
            return done(
                std::unexpected<std::string>("The disk service (UDisks2) does not know this volume."));
        auto const disk = *mounted;
        auto const ejectMedium = [this, disk, done](auto const& outcome) {
            bool const othersMounted = std::ranges::any_of(m_fileSystems, [&](DiskFileSystem const& other) {
                return other.drive == disk.drive && other.path != disk.path && !other.mountPoints.empty();
            });
            if (!outcome || !disk.isEjectable || othersMounted)
                return done(outcome);
            call(disk.drive, text(driveInterface), text("Eject"), done);
        };
        auto const lock = [this, disk, done, ejectMedium](auto const& outcome) {
            if (!outcome || disk.cryptoDevice.isEmpty())
                return ejectMedium(outcome);
            call(disk.cryptoDevice, text(encryptedInterface), text("Lock"), ejectMedium);
        };
        call(disk.path, text(fileSystemInterface), text("Unmount"), lock);
    });
}

} // namespace taliro
