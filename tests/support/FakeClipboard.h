#pragma once

#include "TestImages.h"
#include "clipboard/ClipboardSource.h"

#include <QBuffer>
#include <QImage>
#include <QMap>
#include <QMimeData>

namespace norva::test {

// A clipboard the test fills by hand: formats with their bytes, a change count, a front program;
// what Norva puts on it can be read back by format.
class FakeClipboard final : public ClipboardSource {
public:
    void set(const QMap<QString, QByteArray>& content, std::optional<QString> app = std::nullopt)
    {
        m_content = content;
        m_app = std::move(app);
        ++m_count;
    }
    void setText(const QString& text) { set({{QStringLiteral("text/plain"), text.toUtf8()}}); }

    quint64 changeCount() const override { return m_count; }
    QStringList formats() const override { return m_content.keys(); }
    QByteArray data(const QString& format) const override { return m_content.value(format); }
    QString text() const override { return QString::fromUtf8(m_content.value(QStringLiteral("text/plain"))); }
    std::optional<QString> frontmostApplication() const override { return m_app; }
    bool put(std::unique_ptr<QMimeData> content) override
    {
        if (m_refuses)
            return false;
        m_content.clear();
        for (const QString& format : content->formats())
            m_content.insert(format, content->data(format));
        ++m_count;
        ++m_puts;
        return true;
    }

    bool tellsEveryChange() const override { return m_tells; }
    // Tells of a change the way a desktop that signals every change does.
    void tell() { emit changed(); }

    bool m_tells = false;
    bool m_refuses = false;
    int m_puts = 0;

private:
    QMap<QString, QByteArray> m_content;
    std::optional<QString> m_app;
    quint64 m_count = 0;
};

} // namespace norva::test
