#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QProcess>

namespace taliro::testing {

/// A session bus of the process's own, so that tests neither need nor disturb the desktop's.
/// It must exist before the process first asks for its session bus.
class PrivateBus {
public:
    static PrivateBus& shared() {
        static PrivateBus bus;
        return bus;
    }

    bool isRunning() const { return !m_address.isEmpty(); }
    /// Another connection, for a stand-in service to speak from.
    QDBusConnection connect(QString const& name) const {
        return QDBusConnection::connectToBus(QString::fromUtf8(m_address), name);
    }

private:
    PrivateBus() {
        m_daemon.start(
            QStringLiteral("dbus-daemon"),
            {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        if (m_daemon.waitForReadyRead(20000))
            m_address = m_daemon.readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address);
    }
    ~PrivateBus() {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    QProcess m_daemon;
    QByteArray m_address;
};

} // namespace taliro::testing
