#pragma once

#include <QByteArray>
#include <QString>

namespace norva::test {

// A to-do as todoman writes it, with what Norva does not show: an X- property, categories, an
// alarm and a long description folded over two lines.
inline QByteArray todomanTodo(const QByteArray& uid, const QByteArray& summary)
{
    return "BEGIN:VCALENDAR\r\n"
           "VERSION:2.0\r\n"
           "PRODID:-//todoman//EN\r\n"
           "BEGIN:VTODO\r\n"
           "UID:" +
           uid +
           "\r\n"
           "SUMMARY:" +
           summary +
           "\r\n"
           "DTSTAMP:20261118T090000Z\r\n"
           "CATEGORIES:home,family\r\n"
           "X-PERSONAL-MARK;X-KEEP=yes:kept as is\r\n"
           "DESCRIPTION:A long description that another program folded over more than one\r\n"
           "  line, which Norva never unfolds or folds again.\r\n"
           "BEGIN:VALARM\r\n"
           "ACTION:DISPLAY\r\n"
           "DESCRIPTION:alarm\r\n"
           "TRIGGER:-PT15M\r\n"
           "END:VALARM\r\n"
           "END:VTODO\r\n"
           "END:VCALENDAR\r\n";
}

} // namespace norva::test
