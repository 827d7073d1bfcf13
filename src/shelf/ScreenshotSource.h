#pragma once

#include <QObject>
#include <QString>

namespace norva {

// Tells the shelf of each new screenshot the desktop saves. On Linux, new pictures in the
// screenshots folder; on macOS, the Spotlight query for screen captures.
class ScreenshotSource : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    virtual void start() = 0;
    virtual void stop() = 0;

signals:
    void screenshotSaved(const QString& path);
};

} // namespace norva
