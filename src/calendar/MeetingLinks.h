#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace norva {

// The video-call services whose links Norva offers to join, and the rule that finds an event's join
// link: its own URL, then the links in its location, then those in its notes; the first whose host
// is one of the services' (or a subdomain of one) wins.
class MeetingLinks {
public:
    struct KnownHost {
        QString suffix;  // the host, or the domain of which any subdomain counts
        QString service; // the name the person knows it by
    };
    // In the order they are tried.
    static const QList<KnownHost>& knownHosts();

    // The service of a link that Norva would join, or nothing for any other link.
    static std::optional<KnownHost> serviceOf(const QUrl& url);
    static bool isJoinLink(const QUrl& url) { return serviceOf(url).has_value(); }

    static std::optional<QUrl> joinURL(const QUrl& eventUrl, const QString& location, const QString& notes);
    // The first join link in a pasted text (the meeting forms' link field).
    static std::optional<QUrl> detectMeetingLink(const QString& text);
};

} // namespace norva
