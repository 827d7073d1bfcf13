#include "notes/MarkdownNote.h"

#include <QRegularExpression>

namespace norva::MarkdownNote {
namespace {

const QString kOwnerKey = QStringLiteral("norva: ");
// Longer names are cut: most file systems take 255 bytes, and a list of files reads better short.
constexpr int kLongestName = 80;

// Characters that make YAML read a plain scalar as something else (a mapping, a comment, a flow
// collection, an anchor, a tag, a block scalar, a quoted string, a directive, a reserved sign).
bool needsQuotes(const QString& text)
{
    static const QString special = QStringLiteral(":#{}[],&*!|>'\"%@`\\");
    for (const QChar c : text) {
        if (special.contains(c) || c.unicode() < 0x20 || c.unicode() == 0x7f)
            return true;
    }
    if (text.isEmpty() || text != text.trimmed())
        return true;
    // Words and signs that YAML reads as another type or an indicator at the start.
    static const QRegularExpression typed(
        QStringLiteral("^(~|null|true|false|yes|no|on|off|y|n|[-+]?[0-9._]+([eE][-+]?[0-9]+)?|[-?].*)$"),
        QRegularExpression::CaseInsensitiveOption);
    return typed.match(text).hasMatch();
}

} // namespace

QString iso(const QDateTime& instant)
{
    return instant.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ssZ"));
}

QString yamlScalar(const QString& text)
{
    if (!needsQuotes(text))
        return text;
    QString quoted = QStringLiteral("\"");
    for (const QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            quoted += QLatin1Char('\\') + c;
        else if (c == QLatin1Char('\n'))
            quoted += QStringLiteral("\\n");
        else if (c == QLatin1Char('\t'))
            quoted += QStringLiteral("\\t");
        else if (c.unicode() < 0x20 || c.unicode() == 0x7f)
            quoted += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        else
            quoted += c;
    }
    return quoted + QLatin1Char('"');
}

QByteArray render(const QuickNote& note)
{
    QString text = QStringLiteral("---\n");
    text += QStringLiteral("created: ") + iso(note.createdAt) + QLatin1Char('\n');
    text += QStringLiteral("updated: ") + iso(note.updatedAt) + QLatin1Char('\n');
    text += QStringLiteral("category: ") + yamlScalar(note.category) + QLatin1Char('\n');
    text += kOwnerKey + note.id.toString(QUuid::WithoutBraces) + QLatin1Char('\n');
    text += QStringLiteral("---\n\n") + note.text;
    if (!note.text.endsWith(QLatin1Char('\n')))
        text += QLatin1Char('\n');
    return text.toUtf8();
}

QString untitledStamp(const QDateTime& created)
{
    return created.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH.mm"));
}

QString baseName(const QuickNote& note)
{
    static const QRegularExpression unsafe(QStringLiteral("[/\\\\:*?\"<>|\\x00-\\x1f\\x7f]"));
    static const QRegularExpression spaces(QStringLiteral("\\s+"));
    QString name = note.firstLine();
    // A Markdown heading's marks are not part of its name.
    while (name.startsWith(QLatin1Char('#')))
        name.remove(0, 1);
    name.replace(unsafe, QStringLiteral(" ")).replace(spaces, QStringLiteral(" "));
    name = name.left(kLongestName).trimmed();
    // No hidden files, and no name that is only dots.
    while (name.startsWith(QLatin1Char('.')))
        name = name.mid(1).trimmed();
    return name.isEmpty() ? untitledStamp(note.createdAt) : name;
}

std::optional<QUuid> ownerID(const QByteArray& content)
{
    const QList<QByteArray> lines = content.split('\n');
    if (lines.isEmpty() || lines.first().trimmed() != "---")
        return std::nullopt;
    for (qsizetype i = 1; i < lines.size() && lines[i].trimmed() != "---"; ++i) {
        const QString line = QString::fromUtf8(lines[i]).trimmed();
        if (line.startsWith(kOwnerKey)) {
            const QUuid id = QUuid::fromString(line.mid(kOwnerKey.size()).trimmed());
            if (!id.isNull())
                return id;
        }
    }
    return std::nullopt;
}

} // namespace norva::MarkdownNote
