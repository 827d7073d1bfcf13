#include "platform/linux/QtClipboardSource.h"

#include "platform/linux/ActiveWindow.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace norva {

QtClipboardSource::QtClipboardSource(QObject* parent) : ClipboardSource(parent)
{
    m_clipboard = QGuiApplication::clipboard();
    if (m_clipboard) {
        connect(m_clipboard, &QClipboard::dataChanged, this, [this] {
            ++m_changes;
            emit changed();
        });
    }
}

QStringList QtClipboardSource::formats() const
{
    const QMimeData* content = m_clipboard ? m_clipboard->mimeData() : nullptr;
    return content ? content->formats() : QStringList();
}

QByteArray QtClipboardSource::data(const QString& format) const
{
    const QMimeData* content = m_clipboard ? m_clipboard->mimeData() : nullptr;
    return content ? content->data(format) : QByteArray();
}

QString QtClipboardSource::text() const
{
    return m_clipboard ? m_clipboard->text() : QString();
}

std::optional<QString> QtClipboardSource::frontmostApplication() const
{
    return ActiveWindow::applicationName();
}

bool QtClipboardSource::put(std::unique_ptr<QMimeData> content)
{
    if (!m_clipboard || !content)
        return false;
    const QStringList offered = content->formats();
    m_clipboard->setMimeData(content.release());
    // The clipboard took the write when it now offers what was put there.
    const QMimeData* now = m_clipboard->mimeData();
    return now && !offered.isEmpty() && now->hasFormat(offered.first());
}

} // namespace norva
