#include "settings/WhatsNew.h"

#include <QVersionNumber>

namespace norva::WhatsNew {

const QList<Release>& releases()
{
    static const QList<Release> list = {
        {QStringLiteral("0.1.0"),
         {QStringLiteral(
              "A settings window with every setting, from the notch, the tray or norva --settings."),
          QStringLiteral("Norva installs with cmake --install, with its icon and menu entry."),
          QStringLiteral("Quit sits on the Settings page, for desktops without a tray.")}},
    };
    return list;
}

QStringList linesSince(const QString& lastSeen, const QString& current, const QList<Release>& list)
{
    const QVersionNumber now = QVersionNumber::fromString(current);
    const QVersionNumber seen = QVersionNumber::fromString(lastSeen);
    QStringList lines;
    for (const Release& release : list) {
        const QVersionNumber version = QVersionNumber::fromString(release.version);
        if (version > now)
            continue; // written ahead of its release
        if (lastSeen.isEmpty() ? version == now : version > seen)
            lines << release.lines;
    }
    return lines;
}

} // namespace norva::WhatsNew
