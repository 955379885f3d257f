#pragma once

#include "support/TemporaryFolder.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>

#include <map>
#include <optional>

namespace taliro::testing {

/// What a server on this machine shows to be who it is; only those who know it trust it.
struct Identity {
    QSslCertificate certificate = QSslCertificate();
    QSslKey key;

    static Identity make() {
        TemporaryFolder const folder;
        auto const command = "cd '" + folder.path().string() +
                             "' && openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes "
                             "-subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1 -keyout key -out "
                             "certificate 2>/dev/null";
        if (std::system(command.c_str()) != 0)
            return {};
        auto const read = [&](char const* name) {
            return QByteArray::fromStdString(contentsOf(folder / name));
        };
        return {QSslCertificate(read("certificate")), QSslKey(read("key"), QSsl::Ec)};
    }
    /// Everything in this process that asks by https trusts it from now on, or not any more.
    void setTrusted(bool trusted) const {
        auto configuration = QSslConfiguration::defaultConfiguration();
        configuration.setCaCertificates(trusted ? QList{certificate} : QList<QSslCertificate>());
        QSslConfiguration::setDefaultConfiguration(configuration);
    }
};

/// A server on this machine that answers each path with raw bytes, and then closes, or stays silent.
class HttpServer : public QObject {
public:
    struct Answer {
        QByteArray bytes;
        bool closes = true;
    };
    std::map<QByteArray, Answer> answers;
    int requests = 0;

    /// By https where it has an identity.
    explicit HttpServer(std::optional<Identity> const& identity = {}) : m_server(identity) {
        m_server.listen(QHostAddress::LocalHost);
        connect(&m_server, &QTcpServer::newConnection, this, [this] { accept(); });
    }
    /// Connections that the other side hasn't closed.
    int open() const { return static_cast<int>(m_server.findChildren<QTcpSocket*>().size()); }
    std::string address(std::string const& path) const {
        return (m_server.identity ? "https" : "http") + std::string("://127.0.0.1:") +
               std::to_string(m_server.serverPort()) + path;
    }
    static QByteArray response(QByteArray const& headers, QByteArray const& body) {
        return "HTTP/1.1 200 OK\r\nConnection: close\r\n" + headers + "\r\n" + body;
    }

private:
    void accept() {
        auto* const socket = m_server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            auto const line = socket->peek(4096);
            if (!line.contains("\r\n\r\n"))
                return;
            socket->readAll();
            ++requests;
            auto const answer = answers[line.split(' ').value(1)];
            socket->write(answer.bytes);
            if (answer.closes)
                socket->disconnectFromHost();
        });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }

    struct Listener : QTcpServer {
        explicit Listener(std::optional<Identity> const& own) : identity(own) {}
        void incomingConnection(qintptr handle) override {
            auto* const socket = new QSslSocket(this);
            socket->setSocketDescriptor(handle);
            if (identity) {
                socket->setLocalCertificate(identity->certificate);
                socket->setPrivateKey(identity->key);
                socket->startServerEncryption();
            }
            addPendingConnection(socket);
        }
        std::optional<Identity> identity;
    } m_server;
};

} // namespace taliro::testing
