#include "platform/linux/ApplicationAdaptor.h"

#include "platform/linux/DBusOpenRequests.h"

namespace taliro {

ApplicationAdaptor::ApplicationAdaptor(DBusOpenRequests& requests)
    : QDBusAbstractAdaptor(&requests), m_requests(requests) {}

void ApplicationAdaptor::Open(QStringList const& uris, QVariantMap const&) {
    std::vector<Url> urls;
    for (auto const& uri : uris)
        if (auto url = Url::parse(uri.toStdString()))
            urls.push_back(std::move(*url));
    m_requests.deliver(std::move(urls));
}

void ApplicationAdaptor::Activate(QVariantMap const&) {
    m_requests.deliver({});
}

void ApplicationAdaptor::ActivateAction(QString const&, QVariantList const&, QVariantMap const&) {
    m_requests.deliver({});
}

} // namespace taliro
