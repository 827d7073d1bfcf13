#include "media/LyricsManager.h"

#include "app/Log.h"
#include "app/SettingsStore.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QNetworkInformation>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <limits>

namespace norva {
namespace {

constexpr int kHttpOk = 200;
constexpr int kHttpNotFound = 404;

QString lyricsText(const QJsonObject& answer)
{
    const QString synced = answer.value(QStringLiteral("syncedLyrics")).toString();
    return synced.isEmpty() ? answer.value(QStringLiteral("plainLyrics")).toString() : synced;
}

} // namespace

const QUrl LyricsManager::defaultBaseAddress = QUrl(QStringLiteral("https://lrclib.net"));

const QString LyricsManager::addressKey = QStringLiteral("music.lyricsAddress.v1");

LyricsManager::LyricsManager(Clock& clock, QObject* parent) : QObject(parent), m_clock(clock), m_http(clock)
{}

QUrl LyricsManager::baseAddressFrom(const SettingsStore& settings)
{
    return HttpClient::usableAddress(settings.storedText(addressKey).value_or(QString()))
        .value_or(defaultBaseAddress);
}

void LyricsManager::follow(SettingsStore& settings)
{
    setBaseAddress(baseAddressFrom(settings));
    connect(&settings, &SettingsStore::changed, this,
            [this, &settings] { setBaseAddress(baseAddressFrom(settings)); });
}

void LyricsManager::watchReachability()
{
    if (!QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability))
        return; // no backend: network errors stay transient failures
    auto* information = QNetworkInformation::instance();
    auto follow = [this](QNetworkInformation::Reachability reachability) {
        setOffline(reachability == QNetworkInformation::Reachability::Disconnected);
    };
    connect(information, &QNetworkInformation::reachabilityChanged, this, follow);
    follow(information->reachability());
}

void LyricsManager::setOffline(bool offline)
{
    if (offline == m_offline)
        return;
    m_offline = offline;
    emit offlineChanged();
    // Back online: a track that failed because the machine was offline is asked at once.
    if (!offline && m_state == State::failed && !m_track.key.isEmpty())
        retry();
}

QString LyricsManager::trackKey(const QString& title, const QString& artist, const QString& album)
{
    return title.trimmed().toLower() + QChar(0x1f) + artist.trimmed().toLower() + QChar(0x1f) +
           album.trimmed().toLower();
}

void LyricsManager::load(const QString& title, const QString& artist, const QString& album,
                         std::optional<double> duration)
{
    const QString key = trackKey(title, artist, album);
    if (key == m_track.key && m_state != State::failed)
        return; // already loaded or loading
    m_track = Track{key, title, artist, album, duration};
    if (const auto cached = m_cache.constFind(key); cached != m_cache.constEnd()) {
        publish(cached->state, cached->lines, cached->plain);
        return;
    }
    if (key == m_failedKey && m_clock.now() < m_retryAfter) {
        publish(State::failed);
        return;
    }
    run();
}

void LyricsManager::clear()
{
    m_track = Track{};
    publish(State::idle);
}

void LyricsManager::retry()
{
    if (m_track.key.isEmpty() || m_state == State::loading)
        return;
    m_cache.remove(m_track.key);
    m_failedKey.clear();
    run();
}

void LyricsManager::run()
{
    const QString key = m_track.key;
    if (m_offline) {
        finishTransient(key, QStringLiteral("the computer is offline"));
        return;
    }
    publish(State::loading);
    QList<std::pair<QString, QString>> query{{QStringLiteral("track_name"), m_track.title},
                                             {QStringLiteral("artist_name"), m_track.artist},
                                             {QStringLiteral("album_name"), m_track.album}};
    // Whole seconds, and never a value that does not fit.
    if (m_track.duration && std::isfinite(*m_track.duration) && *m_track.duration >= 0 &&
        *m_track.duration < double(std::numeric_limits<int>::max()))
        query.append({QStringLiteral("duration"), QString::number(std::lround(*m_track.duration))});
    request(QStringLiteral("/api/get"), query, key, [this, key](int status, const QByteArray& body) {
        // The exact lookup answers 404 for a track it does not know: that is no lyrics, not a failure.
        if (status == kHttpOk) {
            const QJsonDocument document = QJsonDocument::fromJson(body);
            if (const auto result = interpret(document.object())) {
                finish(key, *result);
                return;
            }
        }
        search(key, searchAttempts(m_track.title, m_track.artist));
    });
}

void LyricsManager::search(const QString& key, QList<SearchAttempt> attempts)
{
    if (attempts.isEmpty()) {
        finish(key, Result{State::notFound, {}, {}});
        return;
    }
    const SearchAttempt attempt = attempts.takeFirst();
    request(QStringLiteral("/api/search"),
            {{QStringLiteral("track_name"), attempt.title}, {QStringLiteral("artist_name"), attempt.artist}},
            key, [this, key, attempts](int status, const QByteArray& body) {
                if (status == kHttpOk) {
                    const auto pick = pickBest(QJsonDocument::fromJson(body).array(), m_track.duration);
                    if (pick) {
                        if (const auto result = interpret(*pick)) {
                            finish(key, *result);
                            return;
                        }
                    }
                }
                search(key, attempts);
            });
}

void LyricsManager::request(const QString& path, const QList<std::pair<QString, QString>>& query,
                            const QString& key, Answer answer)
{
    const auto url = HttpClient::address(m_baseAddress, path, query);
    if (!url) {
        finishTransient(key, m_baseAddress.toString() + QStringLiteral(" is not a web address"));
        return;
    }
    m_http.get(*url, requestTimeout, [this, key, answer = std::move(answer)](const HttpAnswer& reply) {
        if (key != m_track.key)
            return; // an answer for a track that is no longer current
        if (reply.answered() && (reply.status == kHttpOk || reply.status == kHttpNotFound)) {
            answer(reply.status, reply.body);
            return;
        }
        if (reply.answered()) {
            finishTransient(key, QStringLiteral("LRCLIB answered ") + QString::number(reply.status));
            return;
        }
        finishTransient(key,
                        reply.timedOut ? QStringLiteral("LRCLIB did not answer in time") : reply.failure);
    });
}

std::optional<LyricsManager::Result> LyricsManager::interpret(const QJsonObject& answer)
{
    const QString synced = answer.value(QStringLiteral("syncedLyrics")).toString();
    if (!synced.isEmpty()) {
        QList<LyricLine> lines = parseLRC(synced);
        if (!lines.isEmpty())
            return Result{State::synced, std::move(lines), {}};
    }
    const QString plain = answer.value(QStringLiteral("plainLyrics")).toString();
    if (!plain.isEmpty())
        return Result{State::plain, {}, plain};
    return std::nullopt;
}

void LyricsManager::finish(const QString& key, const Result& result)
{
    if (key != m_track.key)
        return;
    m_cache.insert(key, result);
    publish(result.state, result.lines, result.plain);
}

void LyricsManager::finishTransient(const QString& key, const QString& reason)
{
    if (key != m_track.key)
        return;
    logLine(QStringLiteral("Norva music: fetching lyrics failed (") + reason + QLatin1Char(')'));
    m_failedKey = key;
    m_retryAfter = m_clock.now().addMSecs(qint64(retryDelay * 1000));
    publish(State::failed);
}

void LyricsManager::publish(State state, QList<LyricLine> lines, QString plain)
{
    if (state == m_state && lines == m_lines && plain == m_plain)
        return;
    m_state = state;
    m_lines = std::move(lines);
    m_plain = std::move(plain);
    QVariantList rows;
    rows.reserve(m_lines.size());
    for (const LyricLine& line : m_lines)
        rows.append(QVariantMap{{QStringLiteral("time"), line.time}, {QStringLiteral("text"), line.text}});
    m_lineRows.setRows(rows);
    emit stateChanged();
}

QString LyricsManager::message() const
{
    switch (m_state) {
    case State::loading:
        return QStringLiteral("Loading lyrics…");
    case State::notFound:
        return QStringLiteral("No lyrics found");
    case State::failed:
        return m_offline ? QStringLiteral("Lyrics will load when you're back online.")
                         : QStringLiteral("The lyrics didn't come back.");
    default:
        return {};
    }
}

int LyricsManager::lineIndexAt(double seconds) const
{
    // Lines are in ascending time: the current one is the last that has started.
    const auto after = std::upper_bound(m_lines.begin(), m_lines.end(), seconds,
                                        [](double at, const LyricLine& line) { return at < line.time; });
    return int(after - m_lines.begin()) - 1;
}

QList<LyricLine> LyricsManager::parseLRC(const QString& text)
{
    static const QRegularExpression tag(QStringLiteral("\\[(\\d{1,2}):(\\d{2})(?:[.:](\\d{1,3}))?\\]"));
    QList<LyricLine> lines;
    for (const QString& raw : text.split(QRegularExpression(QStringLiteral("\\r\\n|\\n|\\r")))) {
        QList<double> times;
        qsizetype textStart = -1;
        for (auto it = tag.globalMatch(raw); it.hasNext();) {
            const auto match = it.next();
            double time = match.captured(1).toInt() * 60 + match.captured(2).toInt();
            const QString fraction = match.captured(3);
            if (!fraction.isEmpty())
                time += fraction.toInt() / std::pow(10.0, fraction.size());
            times << time;
            textStart = match.capturedEnd();
        }
        if (times.isEmpty())
            continue;
        const QString words = raw.mid(textStart).trimmed();
        for (double time : times)
            lines.append(LyricLine{time, words});
    }
    std::stable_sort(lines.begin(), lines.end(),
                     [](const LyricLine& a, const LyricLine& b) { return a.time < b.time; });
    return lines;
}

std::optional<QString> LyricsManager::sanitizedTitle(const QString& title)
{
    static const QRegularExpression brackets(QStringLiteral("\\s*[(\\[][^)\\]]*[)\\]]"));
    static const QRegularExpression suffix(
        QStringLiteral(
            "\\s*-\\s*((feat\\.?|ft\\.?|with)\\s.*|.*\\b(remaster(ed)?|live|version|edit|mix|acoustic|"
            "demo|mono|stereo)\\b.*)$"),
        QRegularExpression::CaseInsensitiveOption);
    QString cleaned = title;
    cleaned.remove(brackets);
    cleaned.remove(suffix);
    cleaned = cleaned.trimmed();
    if (cleaned.isEmpty() || cleaned == title)
        return std::nullopt;
    return cleaned;
}

std::optional<QJsonObject> LyricsManager::pickBest(const QJsonArray& results, std::optional<double> duration)
{
    std::optional<QJsonObject> best;
    double bestDifference = std::numeric_limits<double>::infinity();
    for (const QJsonValue& value : results) {
        const QJsonObject result = value.toObject();
        if (lyricsText(result).isEmpty())
            continue;
        if (!duration || *duration <= 0)
            return result; // without a length to compare, the service's first answer wins
        const QJsonValue length = result.value(QStringLiteral("duration"));
        const double difference = std::abs((length.isDouble() ? length.toDouble() : -1.0) - *duration);
        // Ties keep the earlier answer: the service lists its better matches first.
        if (difference <= durationTolerance && difference < bestDifference) {
            best = result;
            bestDifference = difference;
        }
    }
    return best;
}

QList<LyricsManager::SearchAttempt> LyricsManager::searchAttempts(const QString& title, const QString& artist)
{
    QList<SearchAttempt> attempts{{title, artist}};
    if (const auto sanitized = sanitizedTitle(title)) {
        const SearchAttempt second{*sanitized, artist};
        if (!attempts.contains(second))
            attempts << second;
    }
    return attempts;
}

} // namespace norva
