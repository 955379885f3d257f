#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <functional>
#include <map>

namespace taliro::testing {

/// A server on this machine that answers each path with raw bytes, and then closes, or stays silent.
class HttpServer : public QObject {
public:
    struct Answer {
        QByteArray bytes;
        bool closes = true;
    };
    std::map<QByteArray, Answer> answers;
    int requests = 0;

    HttpServer() {
        m_server.listen(QHostAddress::LocalHost);
        connect(&m_server, &QTcpServer::newConnection, this, [this] { accept(); });
    }
    /// Connections that the other side hasn't closed.
    int open() const { return static_cast<int>(m_server.findChildren<QTcpSocket*>().size()); }
    std::string address(std::string const& path) const {
        return "http://127.0.0.1:" + std::to_string(m_server.serverPort()) + path;
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

    QTcpServer m_server;
};

} // namespace taliro::testing
