#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QMap>
#include <QStringList>

#include <functional>

namespace taliro::testing {

/// The disk service, as far as anybody asks it here: it tells of the disks it was given and notes what it is
/// asked.
class DiskService : public QDBusVirtualObject {
public:
    struct Disk {
        QString name; ///< the last part of the object's path
        QByteArray mountPoint;
        QString label;
        bool isRemovable = false;
        bool isEjectable = false;
        bool isIgnored = false;
        QString cryptoDevice = QStringLiteral("/");
        QString connectionBus = QStringLiteral("usb");
    };
    QList<Disk> disks;
    QStringList calls;    ///< "Unmount sdb1"
    QString unmountError; ///< told instead of unmounting
    std::function<void()> onUnmount;

    explicit DiskService(QDBusConnection bus) : m_bus(std::move(bus)) {
        qDBusRegisterMetaType<QList<QByteArray>>();
        qDBusRegisterMetaType<Interfaces>();
        qDBusRegisterMetaType<Objects>();
        m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/UDisks2"), this,
                                    QDBusConnection::SubPath);
        m_bus.registerService(QStringLiteral("org.freedesktop.UDisks2"));
    }
    ~DiskService() override {
        m_bus.unregisterService(QStringLiteral("org.freedesktop.UDisks2"));
        m_bus.unregisterObject(QStringLiteral("/org/freedesktop/UDisks2"), QDBusConnection::UnregisterTree);
    }

    /// Tells that a disk changed, as the service does when a label is written.
    void announce() {
        auto signal = QDBusMessage::createSignal(blockPath(QStringLiteral("sdb1")),
                                                 QStringLiteral("org.freedesktop.DBus.Properties"),
                                                 QStringLiteral("PropertiesChanged"));
        signal << QStringLiteral("org.freedesktop.UDisks2.Block") << QVariantMap() << QStringList();
        m_bus.send(signal);
    }

    QString introspect(QString const&) const override { return {}; }
    bool handleMessage(QDBusMessage const& message, QDBusConnection const& connection) override {
        auto const object = message.path().section(QLatin1Char('/'), -1);
        if (message.member() == QStringLiteral("GetManagedObjects")) {
            connection.send(message.createReply(QVariant::fromValue(objects())));
            return true;
        }
        calls << message.member() + QLatin1Char(' ') + object;
        if (message.member() == QStringLiteral("Unmount") && !unmountError.isEmpty()) {
            connection.send(message.createErrorReply(
                QStringLiteral("org.freedesktop.UDisks2.Error.DeviceBusy"), unmountError));
            return true;
        }
        if (message.member() == QStringLiteral("Unmount") && onUnmount)
            onUnmount();
        connection.send(message.createReply());
        return true;
    }

private:
    using Interfaces = QMap<QString, QVariantMap>;
    using Objects = QMap<QDBusObjectPath, Interfaces>;

    static QString blockPath(QString const& name) {
        return QStringLiteral("/org/freedesktop/UDisks2/block_devices/") + name;
    }
    static QString drivePath(QString const& name) {
        return QStringLiteral("/org/freedesktop/UDisks2/drives/of_") + name;
    }
    Objects objects() const {
        Objects found;
        for (auto const& disk : disks) {
            QList<QByteArray> const points{disk.mountPoint + '\0'};
            Interfaces block;
            block[QStringLiteral("org.freedesktop.UDisks2.Block")] = {
                {QStringLiteral("IdLabel"), disk.label},
                {QStringLiteral("HintIgnore"), disk.isIgnored},
                {QStringLiteral("CryptoBackingDevice"),
                 QVariant::fromValue(QDBusObjectPath(disk.cryptoDevice))},
                {QStringLiteral("Drive"), QVariant::fromValue(QDBusObjectPath(drivePath(disk.name)))}};
            block[QStringLiteral("org.freedesktop.UDisks2.Filesystem")] = {
                {QStringLiteral("MountPoints"), QVariant::fromValue(points)}};
            found[QDBusObjectPath(blockPath(disk.name))] = block;
            found[QDBusObjectPath(drivePath(disk.name))] = {
                {QStringLiteral("org.freedesktop.UDisks2.Drive"),
                 {{QStringLiteral("Removable"), disk.isRemovable},
                  {QStringLiteral("Ejectable"), disk.isEjectable},
                  {QStringLiteral("ConnectionBus"), disk.connectionBus}}}};
        }
        return found;
    }

    QDBusConnection m_bus;
};

} // namespace taliro::testing
