#include "reminders/DueDraft.h"

#include "reminders/TodoWords.h"

#include <QLocale>

namespace norva {

bool DueDraft::setText(const QString& text)
{
    if (text == m_text)
        return false;
    m_text = text;
    if (text.trimmed().isEmpty())
        m_dropped = false;
    reread();
    return true;
}

void DueDraft::dropReading()
{
    m_dropped = true;
    reread();
}

void DueDraft::clear()
{
    m_text.clear();
    m_dropped = false;
    reread();
}

std::optional<due::Reading> DueDraft::read(const QString& text) const
{
    return m_parser.parse(text, m_clock.now(), TodoWords::localCalendar(), QLocale());
}

// Several pasted lines become several to-dos, each read on its own when filed.
void DueDraft::reread()
{
    m_reading = m_dropped || m_text.contains(QLatin1Char('\n')) ? std::nullopt : read(m_text);
}

QString DueDraft::readingText() const
{
    return m_reading ? TodoWords::readingText(*m_reading) : QString();
}

QVariantList DueDraft::spans() const
{
    return m_reading ? TodoWords::spansRead(m_text, m_reading->title) : QVariantList();
}

TodoDraft::Filing DueDraft::filing(const QString& line, const std::optional<QString>& list) const
{
    const auto reading = m_dropped ? std::nullopt : read(line);
    if (reading && !reading->title.isEmpty())
        return {reading->title, list, reading->date, reading->hasTime};
    return {line.trimmed(), list, std::nullopt, false};
}

} // namespace norva
