#include "app/HttpClient.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>

#include <memory>

namespace norva {
namespace {

const QString kUserAgent = QStringLiteral("Norva/0.1 (https://github.com/norva-notch/norva)");
const QString kTimedOut = QStringLiteral("did not answer in time");

bool isWebAddress(const QUrl& url)
{
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http"));
}

} // namespace

HttpClient::HttpClient(Clock& clock, QObject* parent) : QObject(parent), m_clock(clock) {}

std::optional<QUrl> HttpClient::usableAddress(const QString& text)
{
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    if (!isWebAddress(url))
        return std::nullopt;
    return url;
}

std::optional<QUrl> HttpClient::address(const QUrl& base, const QString& path, const Query& query)
{
    if (!isWebAddress(base))
        return std::nullopt;
    QUrl url = base;
    QString basePath = url.path();
    if (basePath.endsWith(QLatin1Char('/')))
        basePath.chop(1);
    url.setPath(basePath + path);
    QStringList items;
    for (const auto& [name, value] : query)
        items << QString::fromLatin1(QUrl::toPercentEncoding(name) + '=' +
                                     QUrl::toPercentEncoding(value, ","));
    if (!items.isEmpty())
        url.setQuery(items.join(QLatin1Char('&')), QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    return url;
}

void HttpClient::get(const QUrl& url, Seconds timeout, Done done)
{
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::UserAgentHeader, kUserAgent);
    QNetworkReply* reply = m_network.get(request);
    QPointer<QNetworkReply> guard(reply);
    // The time-out lives as long as the request: it is cancelled when the answer comes first.
    auto timer = std::make_shared<ScheduledWork>();
    auto timedOut = std::make_shared<bool>(false);
    *timer = m_clock.after(timeout, [guard, timedOut] {
        if (!guard)
            return;
        *timedOut = true;
        guard->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply, timer, timedOut, done = std::move(done)] {
        timer->cancel();
        reply->deleteLater();
        HttpAnswer answer;
        answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (reply->isOpen()) // an aborted reply is closed and has nothing to read
            answer.body = reply->readAll();
        m_bytesReceived += answer.body.size();
        if (*timedOut) {
            answer.timedOut = true;
            answer.failure = kTimedOut;
        } else if (answer.status == 0) {
            answer.failure = reply->errorString();
        }
        done(answer);
    });
}

} // namespace norva
