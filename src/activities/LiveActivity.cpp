#include "activities/LiveActivity.h"

#include "activities/ActivityKinds.h"

namespace norva {

QString ActivityContent::kindWord(Kind kind)
{
    const auto index = static_cast<size_t>(kind);
    return index < ActivityKinds::table.size() ? QString::fromLatin1(ActivityKinds::table[index].word)
                                               : QString();
}

std::optional<ActivityContent::Kind> ActivityContent::kindFromWord(const QString& word)
{
    for (const ActivityKind& row : ActivityKinds::table) {
        if (word == QLatin1String(row.word))
            return row.kind;
    }
    return std::nullopt;
}

} // namespace norva
