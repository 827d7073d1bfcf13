#include "reminders/TodoWords.h"

#include "reminders/DueParser.h"

#include <QLocale>
#include <QRegularExpression>

namespace norva::TodoWords {

due::Calendar localCalendar()
{
    return due::Calendar{QTimeZone::systemTimeZone(), QLocale().firstDayOfWeek()};
}

QString readingText(const due::Reading& reading)
{
    if (!reading.hasTime)
        return reading.label;
    return reading.label + QLatin1Char(' ') +
           due::DueParser::clockText(reading.date, localCalendar(), QLocale());
}

// Each word of the text that is not the next word of the title, found in order.
QVariantList spansRead(const QString& text, const QString& title)
{
    static const QRegularExpression word(QStringLiteral("\\S+"));
    const QStringList titleWords =
        title.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    QVariantList spans;
    qsizetype next = 0;
    for (auto it = word.globalMatch(text); it.hasNext();) {
        const auto match = it.next();
        if (next < titleWords.size() && match.captured() == titleWords[next]) {
            ++next;
            continue;
        }
        spans.append(QVariantMap{{QStringLiteral("start"), match.capturedStart()},
                                 {QStringLiteral("length"), match.capturedLength()}});
    }
    return spans;
}

QString refusalText(TodoRefusal refusal)
{
    switch (refusal) {
    case TodoRefusal::notAsked:
    case TodoRefusal::denied:
        return QStringLiteral(
            "Norva can't reach your to-dos: there is no calendar folder yet. Your words are still here.");
    case TodoRefusal::noDefaultList:
        return QStringLiteral("Reminders has no default list. Your words are still here.");
    case TodoRefusal::notSaved:
        break;
    }
    return QStringLiteral("Reminders didn't take the to-do. Your words are still here.");
}

} // namespace norva::TodoWords
