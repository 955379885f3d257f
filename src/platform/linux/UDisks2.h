#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace taliro {

/// What UDisks2 tells of a block device with a file system.
struct DiskFileSystem {
    QString path; ///< of the object on the bus
    std::vector<std::string> mountPoints;
    std::string label;
    bool isIgnored = false;          ///< not to be shown to users
    QString drive;                   ///< its object; empty where there is none
    QString cryptoDevice;            ///< the encrypted device it lies in; empty where there is none
    std::optional<bool> isRemovable; ///< the drive or what is in it
    std::optional<bool> isInternal;
    bool isEjectable = false;
};

/// The disk service on the system bus, which knows of drives and unmounts for the user.
class UDisks2 : public QObject {
    Q_OBJECT

public:
    using Done = std::function<void(std::expected<void, std::string>)>;

    explicit UDisks2(QDBusConnection bus);

    /// As told last; empty until the service has answered, and where there is none.
    std::vector<DiskFileSystem> const& fileSystems() const { return m_fileSystems; }
    DiskFileSystem const* mountedAt(std::string_view mountPoint) const;
    /// Asks for the file systems anew; `done`, if given, is called once they are there or could not be had.
    void refresh(Done done = {});
    /// Unmounts, locks what was encrypted, and ejects the medium or powers nothing off.
    void eject(std::string const& mountPoint, Done done);

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void refreshSoon();

private:
    void call(QString const& path, QString const& interface, QString const& method, Done done);

    QDBusConnection m_bus;
    std::vector<DiskFileSystem> m_fileSystems;
    bool m_refreshPending = false;
};

} // namespace taliro
