#pragma once

#include "app/Clock.h"

#include <QByteArray>
#include <QList>
#include <QNetworkAccessManager>
#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>
#include <utility>

namespace norva {

// What came back from one GET: the HTTP status and body when the service answered at all,
// otherwise why not ("did not answer in time", the network's own words).
struct HttpAnswer {
    int status = 0; // 0 when no HTTP answer arrived
    QByteArray body;
    QString failure; // empty when the service answered (whatever its status)
    bool timedOut = false;
    bool answered() const { return failure.isEmpty(); }
    bool ok() const { return answered() && status == 200; }
};

// Norva's one HTTP client for the small JSON services it asks (lyrics, the forecast, places).
// Requests run on Qt's network loading, never on the main thread's time; each has a time-out
// measured on Norva's clock, so a test lets a service stay silent for 10 s by moving the clock.
// Answers come back on the thread that owns the client.
class HttpClient : public QObject {
    Q_OBJECT

public:
    using Query = QList<std::pair<QString, QString>>;
    using Done = std::function<void(const HttpAnswer&)>;

    explicit HttpClient(Clock& clock, QObject* parent = nullptr);

    // The service's base address with `path` appended and the query in the order given. Values are
    // percent-encoded, except the commas that separate a list ("temperature_2m,is_day").
    // Nothing when the base is not an http(s) address with a host.
    static std::optional<QUrl> address(const QUrl& base, const QString& path, const Query& query = {});
    // An http(s) address with a host, or nothing (for addresses read from the preferences).
    static std::optional<QUrl> usableAddress(const QString& text);

    // Asks `url` and calls `done` once with what came back. After `timeout` without a whole answer
    // the request is given up and `done` hears `timedOut`.
    void get(const QUrl& url, Seconds timeout, Done done);

    // Bytes of answers received since the client was made, for the cost of a refresh.
    qint64 bytesReceived() const { return m_bytesReceived; }

private:
    Clock& m_clock;
    QNetworkAccessManager m_network;
    qint64 m_bytesReceived = 0;
};

} // namespace norva
