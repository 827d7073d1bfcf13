#pragma once

#include <QHash>
#include <QList>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <QUrlQuery>

#include <functional>

namespace norva::test {

// A small HTTP/1.1 server on 127.0.0.1 standing in for a web service: it writes down every request
// and answers each with what the handler returns. A handler may hold an answer back (held = true)
// until release() sends it.
class LocalHttpServer : public QObject {
public:
    struct Request {
        QByteArray target; // the request line's target as sent: path and query string
        QString path;
        QUrlQuery query;
        QHash<QByteArray, QByteArray> headers; // names in lower case
    };
    struct Response {
        int status = 200;
        QByteArray body;
        bool held = false;   // answered only on release()
        bool silent = false; // never answered
    };
    using Handler = std::function<Response(const Request&)>;

    explicit LocalHttpServer(Handler handler) : m_handler(std::move(handler))
    {
        m_server.listen(QHostAddress::LocalHost, 0);
        QObject::connect(&m_server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = m_server.nextPendingConnection())
                QObject::connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        });
    }

    QUrl address() const { return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort())); }
    const QList<Request>& requests() const { return m_requests; }
    void setHandler(Handler handler) { m_handler = std::move(handler); }
    void release()
    {
        for (auto& [socket, response] : m_held)
            if (socket)
                answer(socket, response);
        m_held.clear();
    }

private:
    void read(QTcpSocket* socket)
    {
        QByteArray& buffer = m_buffers[socket];
        buffer += socket->readAll();
        const qsizetype end = buffer.indexOf("\r\n\r\n");
        if (end < 0)
            return;
        const QList<QByteArray> lines = buffer.left(end).split('\n');
        m_buffers.remove(socket);
        Request request;
        request.target = lines.first().split(' ').value(1);
        const QUrl target(QString::fromUtf8(request.target));
        request.path = target.path();
        request.query = QUrlQuery(target);
        for (const QByteArray& line : lines.mid(1)) {
            const qsizetype colon = line.indexOf(':');
            if (colon > 0)
                request.headers.insert(line.left(colon).trimmed().toLower(), line.mid(colon + 1).trimmed());
        }
        m_requests << request;
        const Response response = m_handler(request);
        if (response.silent)
            return;
        if (response.held) {
            m_held.append({QPointer<QTcpSocket>(socket), response});
            return;
        }
        answer(socket, response);
    }
    static void answer(QTcpSocket* socket, const Response& response)
    {
        socket->write("HTTP/1.1 " + QByteArray::number(response.status) +
                      " Answer\r\nContent-Type: "
                      "application/json\r\nContent-Length: " +
                      QByteArray::number(response.body.size()) + "\r\nConnection: close\r\n\r\n" +
                      response.body);
        socket->disconnectFromHost();
    }

    QTcpServer m_server;
    Handler m_handler;
    QList<Request> m_requests;
    QHash<QTcpSocket*, QByteArray> m_buffers;
    QList<std::pair<QPointer<QTcpSocket>, Response>> m_held;
};

} // namespace norva::test
