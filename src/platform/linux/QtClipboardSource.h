#pragma once

#include "clipboard/ClipboardSource.h"

class QClipboard;

namespace norva {

// The desktop's clipboard on Linux through QClipboard. On X11 the copying program's targets
// arrive as formats under their own names ("x-kde-passwordManagerHint", "org.nspasteboard.*"),
// and the front program is read from the window manager's _NET_ACTIVE_WINDOW.
class QtClipboardSource final : public ClipboardSource {
    Q_OBJECT
public:
    explicit QtClipboardSource(QObject* parent = nullptr);

    quint64 changeCount() const override { return m_changes; }
    QStringList formats() const override;
    QByteArray data(const QString& format) const override;
    QString text() const override;
    std::optional<QString> frontmostApplication() const override;
    bool put(std::unique_ptr<QMimeData> content) override;
    // The count moves only with QClipboard::dataChanged (on X11 the selection-owner events), so
    // there is never anything to poll for.
    bool tellsEveryChange() const override { return true; }

private:
    QClipboard* m_clipboard = nullptr;
    quint64 m_changes = 0;
};

} // namespace norva
