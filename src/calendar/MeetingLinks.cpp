#include "calendar/MeetingLinks.h"

#include "calendar/LinkFinder.h"

namespace norva {

const QList<MeetingLinks::KnownHost>& MeetingLinks::knownHosts()
{
    static const QList<KnownHost> hosts{
        {QStringLiteral("zoom.us"), QStringLiteral("Zoom")},
        {QStringLiteral("meet.google.com"), QStringLiteral("Google Meet")},
        {QStringLiteral("teams.microsoft.com"), QStringLiteral("Microsoft Teams")},
        {QStringLiteral("teams.live.com"), QStringLiteral("Microsoft Teams")},
        {QStringLiteral("webex.com"), QStringLiteral("Webex")},
        {QStringLiteral("whereby.com"), QStringLiteral("Whereby")},
    };
    return hosts;
}

std::optional<MeetingLinks::KnownHost> MeetingLinks::serviceOf(const QUrl& url)
{
    const QString scheme = url.scheme().toLower();
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https"))
        return std::nullopt;
    QString host = url.host().toLower();
    if (host.endsWith(QLatin1Char('.')))
        host.chop(1); // "zoom.us." is the same host written fully qualified
    for (const KnownHost& known : knownHosts()) {
        // The suffix is matched on a label boundary: "acme.zoom.us" is Zoom, "notzoom.us" is not.
        if (host == known.suffix || host.endsWith(QLatin1Char('.') + known.suffix))
            return known;
    }
    return std::nullopt;
}

std::optional<QUrl> MeetingLinks::detectMeetingLink(const QString& text)
{
    for (const QUrl& link : LinkFinder::find(text)) {
        if (isJoinLink(link))
            return link;
    }
    return std::nullopt;
}

std::optional<QUrl> MeetingLinks::joinURL(const QUrl& eventUrl, const QString& location, const QString& notes)
{
    if (isJoinLink(eventUrl))
        return eventUrl;
    if (auto inLocation = detectMeetingLink(location))
        return inLocation;
    return detectMeetingLink(notes);
}

} // namespace norva
