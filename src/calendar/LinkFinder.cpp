#include "calendar/LinkFinder.h"

#include <QRegularExpression>

namespace norva {
namespace {

// A link starts at a scheme or a "www." host and runs until white space, a quote or an angle
// bracket; what it ends with is trimmed afterwards.
const QRegularExpression& linkStart()
{
    static const QRegularExpression pattern(QStringLiteral(R"((?<![\w.+-])(?:https?://|www\.)[^\s<>"'`]+)"),
                                            QRegularExpression::CaseInsensitiveOption);
    return pattern;
}

int countOf(QStringView text, QChar c)
{
    return int(text.count(c));
}

// Sentence punctuation after a link is not part of it; a closing bracket is, when the link opened
// one itself (Wikipedia-style paths).
QString trimmedTail(QString candidate)
{
    static const QString punctuation = QStringLiteral(".,;:!?*_~");
    while (!candidate.isEmpty()) {
        const QChar last = candidate.back();
        if (punctuation.contains(last)) {
            candidate.chop(1);
            continue;
        }
        const auto unbalanced = [&](QChar open, QChar close) {
            return last == close && countOf(candidate, close) > countOf(candidate, open);
        };
        if (unbalanced(u'(', u')') || unbalanced(u'[', u']') || unbalanced(u'{', u'}')) {
            candidate.chop(1);
            continue;
        }
        break;
    }
    return candidate;
}

} // namespace

QList<QUrl> LinkFinder::find(const QString& text)
{
    QList<QUrl> links;
    auto matches = linkStart().globalMatch(text);
    while (matches.hasNext()) {
        QString candidate = trimmedTail(matches.next().captured());
        if (candidate.startsWith(QLatin1String("www."), Qt::CaseInsensitive))
            candidate.prepend(QLatin1String("https://"));
        // Tolerant mode keeps an invitation's own percent-encoding (Teams' %3a, %40, %7b) as it is.
        const QUrl url(candidate, QUrl::TolerantMode);
        if (url.isValid() && !url.host().isEmpty())
            links.append(url);
    }
    return links;
}

} // namespace norva
