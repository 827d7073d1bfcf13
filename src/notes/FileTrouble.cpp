#include "notes/FileTrouble.h"

#include <array>
#include <utility>

namespace norva {

QString plainFileTrouble(const QString& systemWords)
{
    static const std::array<std::pair<QLatin1String, QLatin1String>, 5> plain = {{
        {QLatin1String("read-only file system"), QLatin1String("the disk is read-only")},
        {QLatin1String("permission denied"), QLatin1String("permission denied")},
        {QLatin1String("no such file or directory"), QLatin1String("the folder is missing")},
        {QLatin1String("no space left on device"), QLatin1String("the disk is full")},
        {QLatin1String("disk quota exceeded"), QLatin1String("the disk is full")},
    }};
    for (const auto& [system, words] : plain) {
        if (systemWords.contains(system, Qt::CaseInsensitive))
            return words;
    }
    return systemWords;
}

} // namespace norva
