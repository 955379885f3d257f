#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantMap>

namespace taliro {

class DBusOpenRequests;

/// The interface by which desktops start and call a running application; see the Desktop Entry Specification,
/// "D-Bus Activation".
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(DBusOpenRequests& requests);

public Q_SLOTS:
    void Open(QStringList const& uris, QVariantMap const& platformData);
    void Activate(QVariantMap const& platformData);
    void ActivateAction(QString const& action, QVariantList const& parameter,
                        QVariantMap const& platformData);

private:
    DBusOpenRequests& m_requests;
};

} // namespace taliro
