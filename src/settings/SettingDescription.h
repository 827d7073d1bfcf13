#pragma once

#include <QList>
#include <QString>
#include <QVariant>

namespace norva {

// What a setting needs from outside Norva to work, so the settings window can say whether it does.
enum class SettingNeed { nothing, agentHooks, calendarsFolder, notesFolder, soundPlayer, pactl };

// One choice of a setting with a few fixed values. An invalid value stands for the key being
// absent (the setting then follows something else, such as the desktop's unit).
struct SettingOption {
    QVariant value;
    QString label;
};

// One row of the settings window: the preference key it reads and writes, where it is shown, what
// it says, and how its value is edited. The window is drawn from a list of these.
struct SettingDescription {
    enum class Kind { toggle, number, choice, text, folder };

    QString key;
    QString group;
    QString label;
    QString explanation;
    Kind kind = Kind::toggle;
    QVariant fallback; // the value an absent key reads as
    double lowest = 0;
    double highest = 0;
    double step = 1; // a whole step stores a whole number; a fraction stores a double
    QString unit;    // after a number: "s", "min", "clips"
    QList<SettingOption> options;
    SettingNeed need = SettingNeed::nothing;

    bool storesWholeNumbers() const { return step >= 1; }
};

} // namespace norva
