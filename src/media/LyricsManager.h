#pragma once

#include "app/Clock.h"
#include "app/HttpClient.h"
#include "app/RowsModel.h"
#include "media/LyricLine.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QUrl>
#include <QVariantList>

#include <functional>
#include <optional>

namespace norva {

class SettingsStore;

// Finds the lyrics of the playing track on LRCLIB, time-synced lines when there are any, and
// publishes them with a loading state for the lyrics pane. Finished results are cached per track;
// a transient failure is not, and the track is not asked again for 45 s unless retried.
class LyricsManager : public QObject {
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(norva::RowsModel* lines READ lineRows CONSTANT)
    Q_PROPERTY(QString plainText READ plainText NOTIFY stateChanged)
    Q_PROPERTY(bool synced READ isSynced NOTIFY stateChanged)
    Q_PROPERTY(bool plain READ isPlain NOTIFY stateChanged)
    Q_PROPERTY(bool failed READ isFailed NOTIFY stateChanged)
    Q_PROPERTY(bool isOffline READ isOffline NOTIFY offlineChanged)
    Q_PROPERTY(QString message READ message NOTIFY stateChanged)

public:
    enum class State { idle, loading, synced, plain, notFound, failed };
    Q_ENUM(State)

    // One search query; equal attempts are run once.
    struct SearchAttempt {
        QString title;
        QString artist;
        bool operator==(const SearchAttempt&) const = default;
    };

    static const QUrl defaultBaseAddress;            // https://lrclib.net
    static constexpr double retryDelay = 45.0;       // seconds a failed track waits before it is asked again
    static constexpr Seconds requestTimeout{10.0};   // one request's time-out
    static constexpr double durationTolerance = 8.0; // seconds a search result's length may differ

    LyricsManager(Clock& clock, QObject* parent = nullptr);

    // Where LRCLIB is reached (a setting; tests point it at 127.0.0.1).
    void setBaseAddress(const QUrl& address) { m_baseAddress = address; }
    // Takes the base address from the preference "music.lyricsAddress.v1", now and on every change;
    // absent or not an http(s) address, LRCLIB's public address holds.
    void follow(SettingsStore& settings);
    static QUrl baseAddressFrom(const SettingsStore& settings);
    static const QString addressKey;
    QUrl baseAddress() const { return m_baseAddress; }
    // Follows the system's reachability when it can tell; otherwise network errors are transient.
    void watchReachability();
    void setOffline(bool offline);

    void load(const QString& title, const QString& artist, const QString& album,
              std::optional<double> duration);
    void clear();
    Q_INVOKABLE void retry();

    State state() const { return m_state; }
    const QList<LyricLine>& lines() const { return m_lines; }
    // The lines as the lyrics pane lists them; a new song's lines are laid over the shown ones by place.
    RowsModel* lineRows() { return &m_lineRows; }
    QString plainText() const { return m_plain; }
    bool isSynced() const { return m_state == State::synced; }
    bool isPlain() const { return m_state == State::plain; }
    bool isFailed() const { return m_state == State::failed; }
    bool isOffline() const { return m_offline; }
    QString message() const;
    QDateTime retryAfter() const { return m_retryAfter; }
    // The index of the line being sung at `seconds`, or -1 before the first.
    Q_INVOKABLE int lineIndexAt(double seconds) const;

    static QList<LyricLine> parseLRC(const QString& text);
    static std::optional<QString> sanitizedTitle(const QString& title);
    static std::optional<QJsonObject> pickBest(const QJsonArray& results, std::optional<double> duration);
    static QList<SearchAttempt> searchAttempts(const QString& title, const QString& artist);
    static QString trackKey(const QString& title, const QString& artist, const QString& album);

signals:
    void stateChanged();
    void offlineChanged();

private:
    struct Track {
        QString key;
        QString title;
        QString artist;
        QString album;
        std::optional<double> duration;
    };
    struct Result {
        State state = State::notFound;
        QList<LyricLine> lines;
        QString plain;
    };
    using Answer = std::function<void(int status, const QByteArray& body)>;

    void run();
    void request(const QString& path, const QList<std::pair<QString, QString>>& query, const QString& key,
                 Answer answer);
    void search(const QString& key, QList<SearchAttempt> attempts);
    static std::optional<Result> interpret(const QJsonObject& answer);
    void finish(const QString& key, const Result& result);
    void finishTransient(const QString& key, const QString& reason);
    void publish(State state, QList<LyricLine> lines = {}, QString plain = {});

    Clock& m_clock;
    HttpClient m_http;
    QUrl m_baseAddress = defaultBaseAddress;
    bool m_offline = false;
    Track m_track;
    QHash<QString, Result> m_cache;
    QString m_failedKey;
    QDateTime m_retryAfter;
    State m_state = State::idle;
    QList<LyricLine> m_lines;
    RowsModel m_lineRows{QString(), this};
    QString m_plain;
};

} // namespace norva
