#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class QMimeData;

namespace norva {

// What the clipboard history needs from the desktop's clipboard: its formats and data, a count
// that moves on every change, the program the copy came from when the desktop says, and a way to
// put a clip back. Linux reads it through Qt; macOS through NSPasteboard.
class ClipboardSource : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Moves on every change of the clipboard's content, by anyone.
    virtual quint64 changeCount() const = 0;
    virtual QStringList formats() const = 0;
    virtual QByteArray data(const QString& format) const = 0;
    virtual QString text() const = 0;
    // The name of the program that was in front when the copy was seen, where the desktop tells it.
    virtual std::optional<QString> frontmostApplication() const = 0;
    // Puts content on the clipboard; false when the clipboard did not take it.
    virtual bool put(std::unique_ptr<QMimeData> content) = 0;
    // True when changed() comes with every change, so reading the count on a timer would find
    // nothing the signal did not already bring (and would only wake the machine).
    virtual bool tellsEveryChange() const { return false; }

signals:
    // The clipboard changed (where the desktop says so at once; elsewhere the count is polled).
    void changed();
};

} // namespace norva
