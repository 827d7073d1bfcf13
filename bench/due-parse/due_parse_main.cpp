// due-parse: reads one to-do text per line on standard input and prints what Norva's due-date
// parser reads in it, one JSON line per text.
#include "DueParseSetting.h"

#include <QCoreApplication>

#include <cstdio>
#include <iostream>
#include <string>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const auto setting = norva::due::DueParseSetting::fromArguments(app.arguments());
    if (!setting)
        return 2;
    if (!setting->rest.isEmpty()) {
        std::fprintf(stderr,
                     "usage: due-parse [--now 2026-11-18T10:00:00] [--tz Europe/London] [--locale en_GB]\n");
        return 2;
    }
    const norva::due::DueParser parser;
    std::string line;
    while (std::getline(std::cin, line)) {
        const QString text = QString::fromStdString(line);
        const auto reading = parser.parse(text, setting->now, setting->calendar, setting->locale);
        const QByteArray json = norva::due::DueParseSetting::jsonLine(text, reading);
        std::fwrite(json.constData(), 1, static_cast<size_t>(json.size()), stdout);
        std::fputc('\n', stdout);
        std::fflush(stdout);
    }
    return 0;
}
