// due-parse-bench: the time one parse takes as the jot sheet calls it on every keystroke. Every
// phrase of the table is typed out character by character and each prefix parsed, several rounds.
#include "DueParseSetting.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int kRounds = 20;

double percentile(const std::vector<qint64>& sorted, double fraction)
{
    const auto at = static_cast<size_t>(fraction * static_cast<double>(sorted.size() - 1));
    return static_cast<double>(sorted[at]) / 1000.0;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QStringList arguments = app.arguments();
    if (!arguments.contains(QStringLiteral("--now")))
        arguments << QStringLiteral("--now") << QStringLiteral("2026-11-18T10:00:00");
    if (!arguments.contains(QStringLiteral("--tz")))
        arguments << QStringLiteral("--tz") << QStringLiteral("Europe/London");
    if (!arguments.contains(QStringLiteral("--locale")))
        arguments << QStringLiteral("--locale") << QStringLiteral("en_GB");
    const auto setting = norva::due::DueParseSetting::fromArguments(arguments);
    if (!setting)
        return 2;
    const QStringList phrases = norva::due::readPhrases(QStringLiteral(DUE_PARSE_PHRASES));
    if (phrases.isEmpty()) {
        std::fprintf(stderr, "due-parse-bench: no phrases in %s\n", DUE_PARSE_PHRASES);
        return 1;
    }
    const norva::due::DueParser parser;

    QElapsedTimer first;
    first.start();
    (void)parser.parse(phrases.front(), setting->now, setting->calendar, setting->locale);
    const qint64 firstParse = first.nsecsElapsed();

    std::vector<qint64> keystrokes;
    std::vector<qint64> whole;
    int readings = 0;
    QElapsedTimer timer;
    for (int round = 0; round < kRounds; ++round) {
        for (const QString& phrase : phrases) {
            for (qsizetype typed = 1; typed <= phrase.size(); ++typed) {
                const QString text = phrase.left(typed);
                timer.start();
                const auto reading = parser.parse(text, setting->now, setting->calendar, setting->locale);
                const qint64 took = timer.nsecsElapsed();
                keystrokes.push_back(took);
                if (typed == phrase.size()) {
                    whole.push_back(took);
                    readings += reading ? 1 : 0;
                }
            }
        }
    }
    std::sort(keystrokes.begin(), keystrokes.end());
    std::sort(whole.begin(), whole.end());
    std::printf("phrases %lld, rounds %d, parses %zu, readings per round %d\n",
                static_cast<long long>(phrases.size()), kRounds, keystrokes.size(), readings / kRounds);
    std::printf("first parse (compiles the patterns): %.1f us\n", static_cast<double>(firstParse) / 1000.0);
    std::printf("%-28s %10s %10s %10s %10s\n", "", "median us", "p90 us", "p99 us", "max us");
    std::printf("%-28s %10.1f %10.1f %10.1f %10.1f\n", "every keystroke (prefixes)",
                percentile(keystrokes, 0.5), percentile(keystrokes, 0.9), percentile(keystrokes, 0.99),
                percentile(keystrokes, 1.0));
    std::printf("%-28s %10.1f %10.1f %10.1f %10.1f\n", "whole phrases", percentile(whole, 0.5),
                percentile(whole, 0.9), percentile(whole, 0.99), percentile(whole, 1.0));
    return 0;
}
