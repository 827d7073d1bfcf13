#include "DueParseSetting.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace norva::due {

std::optional<DueParseSetting> DueParseSetting::fromArguments(const QStringList& arguments)
{
    DueParseSetting setting;
    setting.locale = QLocale::system();
    setting.calendar.timeZone = QTimeZone::systemTimeZone();
    QString nowText;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& flag = arguments.at(i);
        const bool hasValue = i + 1 < arguments.size();
        if (flag == QLatin1String("--now") && hasValue) {
            nowText = arguments.at(++i);
        } else if (flag == QLatin1String("--tz") && hasValue) {
            setting.calendar.timeZone = QTimeZone(arguments.at(++i).toUtf8());
            if (!setting.calendar.timeZone.isValid()) {
                std::fprintf(stderr, "due-parse: %s is not a time zone this machine knows\n",
                             qPrintable(arguments.at(i)));
                return std::nullopt;
            }
        } else if (flag == QLatin1String("--locale") && hasValue) {
            setting.locale = QLocale(arguments.at(++i));
        } else {
            setting.rest.append(flag);
        }
    }
    setting.calendar.firstDayOfWeek = setting.locale.firstDayOfWeek();
    if (nowText.isEmpty()) {
        setting.now = QDateTime::currentDateTime().toTimeZone(setting.calendar.timeZone);
    } else {
        const QDateTime wall = QDateTime::fromString(nowText, Qt::ISODate);
        if (!wall.isValid()) {
            std::fprintf(stderr, "due-parse: --now wants a local wall time such as 2026-11-18T10:00:00\n");
            return std::nullopt;
        }
        setting.now = QDateTime(wall.date(), wall.time(), setting.calendar.timeZone);
    }
    return setting;
}

QString DueParseSetting::isoWithOffset(const QDateTime& date)
{
    const int offset = date.offsetFromUtc();
    const int minutes = std::abs(offset) / 60;
    return date.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")) +
           (offset < 0 ? QLatin1Char('-') : QLatin1Char('+')) +
           QStringLiteral("%1:%2")
               .arg(minutes / 60, 2, 10, QLatin1Char('0'))
               .arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

QByteArray DueParseSetting::jsonLine(const QString& text, const std::optional<Reading>& reading)
{
    QJsonObject line;
    line.insert(QStringLiteral("text"), text);
    line.insert(QStringLiteral("date"), reading ? QJsonValue(isoWithOffset(reading->date)) : QJsonValue());
    line.insert(QStringLiteral("hasTime"), reading && reading->hasTime);
    line.insert(QStringLiteral("label"), reading ? QJsonValue(reading->label) : QJsonValue());
    // With no due read, the whole text is the title.
    line.insert(QStringLiteral("title"), reading ? reading->title : text.simplified());
    return QJsonDocument(line).toJson(QJsonDocument::Compact);
}

QStringList readPhrases(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QStringList phrases;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        if (!line.trimmed().isEmpty() && !line.startsWith(QLatin1Char('#')))
            phrases.append(line);
    }
    return phrases;
}

} // namespace norva::due
