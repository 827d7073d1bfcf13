#pragma once

#include <QString>
#include <QStringList>

namespace norva {

// Whether an agent's program is installed: an executable at one of its usual fixed places, or
// anywhere on PATH.
class AgentPresence {
public:
    static bool executableFound(const QString& program, const QStringList& fixedPlaces);
};

} // namespace norva
