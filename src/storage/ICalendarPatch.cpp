#include "storage/ICalendarPatch.h"

#include <libical/ical.h>

#include <algorithm>

namespace norva {

namespace {

// One logical content line: where it starts and ends in the text (folded continuations included,
// its line break too) and its upper-cased property name.
struct ContentLine {
    qsizetype begin = 0;
    qsizetype end = 0;
    QByteArray name;
    QByteArray value; // what follows the name and parameters, unfolded, for BEGIN, END and UID
};

QList<ContentLine> contentLines(const QByteArray& bytes)
{
    QList<ContentLine> lines;
    qsizetype start = 0;
    while (start < bytes.size()) {
        qsizetype end = bytes.indexOf('\n', start);
        end = end < 0 ? bytes.size() : end + 1;
        const bool continuation = bytes[start] == ' ' || bytes[start] == '\t';
        if (continuation && !lines.isEmpty()) {
            lines.last().end = end;
            lines.last().value += bytes.mid(start + 1, end - start - 1).trimmed();
        } else {
            ContentLine line{start, end, {}, {}};
            const QByteArray text = bytes.mid(start, end - start).trimmed();
            qsizetype nameEnd = 0;
            while (nameEnd < text.size() && text[nameEnd] != ':' && text[nameEnd] != ';')
                ++nameEnd;
            line.name = text.left(nameEnd).toUpper();
            const qsizetype colon = text.indexOf(':');
            line.value = colon < 0 ? QByteArray() : text.mid(colon + 1);
            lines.append(line);
        }
        start = end;
    }
    return lines;
}

// The span of the wanted component's own lines: index of its BEGIN and END lines.
struct Span {
    qsizetype begin = -1;
    qsizetype end = -1;
};

std::optional<Span> findComponent(const QList<ContentLine>& lines, const QByteArray& kind,
                                  const QByteArray& uid)
{
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (lines[i].name != "BEGIN" || lines[i].value.toUpper() != kind)
            continue;
        int depth = 0;
        bool uidMatches = uid.isEmpty();
        bool exception = false;
        qsizetype j = i + 1;
        for (; j < lines.size(); ++j) {
            if (lines[j].name == "BEGIN")
                ++depth;
            else if (lines[j].name == "END" && depth-- == 0)
                break;
            else if (depth == 0 && lines[j].name == "UID" && lines[j].value == uid)
                uidMatches = true;
            else if (depth == 0 && lines[j].name == "RECURRENCE-ID")
                exception = true;
        }
        if (j >= lines.size())
            return std::nullopt;
        if (uidMatches && !exception)
            return Span{i, j};
        i = j;
    }
    return std::nullopt;
}

} // namespace

ICalendarPatch::ICalendarPatch(QByteArray kind, QByteArray uid)
    : m_kind(kind.toUpper()), m_uid(std::move(uid))
{}

QByteArray ICalendarPatch::contentLine(icalproperty* property)
{
    char* text = icalproperty_as_ical_string_r(property);
    QByteArray line(text);
    icalmemory_free_buffer(text);
    return line;
}

ICalendarPatch& ICalendarPatch::set(icalproperty* property)
{
    const QByteArray name = QByteArray(icalproperty_get_property_name(property)).toUpper();
    return setAll(name, {property});
}

ICalendarPatch& ICalendarPatch::setAll(const QByteArray& name, const QList<icalproperty*>& properties)
{
    Change change{name.toUpper(), {}};
    for (icalproperty* property : properties) {
        change.lines += contentLine(property);
        icalproperty_free(property);
    }
    for (Change& existing : m_changes) {
        if (existing.name == change.name) {
            existing = change;
            return *this;
        }
    }
    m_changes.append(change);
    return *this;
}

std::optional<QByteArray> ICalendarPatch::applyTo(const QByteArray& bytes) const
{
    const QList<ContentLine> lines = contentLines(bytes);
    const auto span = findComponent(lines, m_kind, m_uid);
    if (!span)
        return std::nullopt;
    // A file written with bare line feeds keeps them.
    const bool crlf = bytes.contains("\r\n") || !bytes.contains('\n');
    auto inFileStyle = [crlf](QByteArray text) {
        if (!crlf)
            text.replace("\r\n", "\n");
        return text;
    };

    QByteArray out;
    out.reserve(bytes.size() + 256);
    out += bytes.left(lines[span->begin].end);
    QList<QByteArray> placed;
    int depth = 0;
    qsizetype firstNested = span->end;
    for (qsizetype i = span->begin + 1; i < span->end; ++i) {
        const ContentLine& line = lines[i];
        if (line.name == "BEGIN" && depth++ == 0 && firstNested == span->end)
            firstNested = i;
        if (line.name == "END")
            --depth;
        const bool own = depth == 0 && line.name != "END";
        const auto change = std::find_if(m_changes.begin(), m_changes.end(),
                                         [&](const Change& c) { return own && c.name == line.name; });
        if (i == firstNested) {
            for (const Change& c : m_changes)
                if (!placed.contains(c.name))
                    out += inFileStyle(c.lines);
            for (const Change& c : m_changes)
                placed.append(c.name);
        }
        if (change == m_changes.end()) {
            out += bytes.mid(line.begin, line.end - line.begin);
        } else if (!placed.contains(change->name)) {
            out += inFileStyle(change->lines);
            placed.append(change->name);
        }
    }
    if (firstNested == span->end)
        for (const Change& c : m_changes)
            if (!placed.contains(c.name))
                out += inFileStyle(c.lines);
    out += bytes.mid(lines[span->end].begin);
    return out;
}

} // namespace norva
