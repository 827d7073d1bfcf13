#pragma once

#include <QString>

#include <optional>

namespace norva {

// Opens a file or a folder in the app the desktop chose for its kind, and where none would, says
// what the person can install or set so that one does. It waits for the desktop's answer, so it
// runs off the main thread.
class FileOpener {
public:
    // Why nothing opened it: `why` for the log line, `advice` for the person.
    struct Refusal {
        QString why;
        QString advice;
    };

    virtual ~FileOpener() = default;
    virtual std::optional<Refusal> open(const QString& path) = 0;
};

} // namespace norva
