#include "agents/hooks/AgentPresence.h"

#include <QFileInfo>
#include <QStandardPaths>

namespace norva {

bool AgentPresence::executableFound(const QString& program, const QStringList& fixedPlaces)
{
    for (const QString& place : fixedPlaces) {
        const QFileInfo info(place);
        if (info.isFile() && info.isExecutable())
            return true;
    }
    return !QStandardPaths::findExecutable(program).isEmpty();
}

} // namespace norva
