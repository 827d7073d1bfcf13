#include "notch/DisplayInfo.h"

#include <QSet>

#include <functional>

namespace norva {
namespace {

using Distinction = std::function<QString(const ScreenFacts& screen, qsizetype ordinal)>;

QString positionText(const QRect& geometry)
{
    return QStringLiteral("%1,%2").arg(geometry.x()).arg(geometry.y());
}

QString sizeText(const QRect& geometry)
{
    return QStringLiteral("%1x%2").arg(geometry.width()).arg(geometry.height());
}

// The first distinction that gives every screen of `group` a different, non-empty text; the last
// one (the order) always does.
const Distinction& separating(const QList<qsizetype>& group, const QList<ScreenFacts>& screens,
                              const QList<Distinction>& distinctions)
{
    for (const Distinction& distinction : distinctions) {
        QSet<QString> seen;
        for (qsizetype ordinal = 0; ordinal < group.size(); ++ordinal) {
            const QString text = distinction(screens[group[ordinal]], ordinal);
            if (text.isEmpty() || seen.contains(text))
                break;
            seen.insert(text);
        }
        if (seen.size() == group.size())
            return distinction;
    }
    return distinctions.last();
}

// Gives each screen `base(screen)`, followed by `distinctions` where screens share a base.
QStringList distinguished(const QList<ScreenFacts>& screens,
                          const std::function<QString(const ScreenFacts&)>& base,
                          const QList<Distinction>& distinctions)
{
    QStringList texts;
    for (const ScreenFacts& screen : screens)
        texts << base(screen);
    QStringList result = texts;
    for (qsizetype i = 0; i < screens.size(); ++i) {
        QList<qsizetype> group;
        for (qsizetype j = 0; j < screens.size(); ++j) {
            if (texts[j] == texts[i])
                group << j;
        }
        if (group.size() < 2 || group.first() != i)
            continue;
        const Distinction& distinction = separating(group, screens, distinctions);
        for (qsizetype ordinal = 0; ordinal < group.size(); ++ordinal)
            result[group[ordinal]] = texts[i] + distinction(screens[group[ordinal]], ordinal);
    }
    return result;
}

QString personName(const ScreenFacts& screen)
{
    if (isBuiltInConnector(screen.connector))
        return QStringLiteral("Built-in display");
    return screen.model.trimmed().isEmpty() ? screen.connector : screen.model.trimmed();
}

} // namespace

bool isBuiltInConnector(const QString& connector)
{
    static const QStringList panels = {QStringLiteral("eDP"), QStringLiteral("LVDS"), QStringLiteral("DSI")};
    for (const QString& prefix : panels) {
        if (connector.startsWith(prefix, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

QList<DisplayInfo> describeDisplays(const QList<ScreenFacts>& screens)
{
    // The identifier is stored in the display choice before a "|", so it never holds one.
    const QList<Distinction> idDistinctions = {
        [](const ScreenFacts& screen, qsizetype) {
            return screen.serial.isEmpty() ? QString() : QLatin1Char('/') + screen.serial;
        },
        [](const ScreenFacts& screen, qsizetype) { return QLatin1Char('@') + positionText(screen.geometry); },
        [](const ScreenFacts& screen, qsizetype) {
            return QLatin1Char('@') + sizeText(screen.geometry) + QLatin1Char('+') +
                   positionText(screen.geometry);
        },
        [](const ScreenFacts&, qsizetype ordinal) { return QStringLiteral("#%1").arg(ordinal + 1); },
    };
    const QStringList ids = distinguished(
        screens, [](const ScreenFacts& screen) { return screen.connector; }, idDistinctions);

    const QList<Distinction> nameDistinctions = {
        [](const ScreenFacts& screen, qsizetype) {
            return screen.connector.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(screen.connector);
        },
        [](const ScreenFacts& screen, qsizetype) {
            return QStringLiteral(" (at %1, %2)").arg(screen.geometry.x()).arg(screen.geometry.y());
        },
        [](const ScreenFacts& screen, qsizetype) {
            return QStringLiteral(" (%1 × %2)").arg(screen.geometry.width()).arg(screen.geometry.height());
        },
        [](const ScreenFacts&, qsizetype ordinal) { return QStringLiteral(" (%1)").arg(ordinal + 1); },
    };
    const QStringList names = distinguished(screens, personName, nameDistinctions);

    QList<DisplayInfo> displays;
    for (qsizetype i = 0; i < screens.size(); ++i) {
        QString id = ids[i];
        id.replace(QLatin1Char('|'), QLatin1Char('/'));
        displays.append({id, names[i], isBuiltInConnector(screens[i].connector), screens[i].primary});
    }
    return displays;
}

} // namespace norva
