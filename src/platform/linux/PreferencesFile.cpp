#include "platform/linux/PreferencesFile.h"

#include "app/AtomicFile.h"
#include "app/CountText.h"
#include "app/Log.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringDecoder>

#include <cmath>

namespace norva {
namespace {

const QString kArea = QStringLiteral("Norva settings");
const QString kHeader = QStringLiteral(
    "# Norva preferences: one setting per line, \"key\" = value (true/false, a number or \"text\").\n"
    "# Norva notices edits while it runs; a line it cannot read is kept as it is.");

bool isBareKey(const QString& key)
{
    static const QRegularExpression bare(QStringLiteral("^[A-Za-z0-9_-]+$"));
    return bare.match(key).hasMatch();
}

// Reads a double-quoted string starting at text[pos] == '"'; sets pos past the closing quote.
std::optional<QString> readQuoted(const QString& text, qsizetype& pos)
{
    QString out;
    for (qsizetype i = pos + 1; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('"')) {
            pos = i + 1;
            return out;
        }
        if (c != QLatin1Char('\\')) {
            out.append(c);
            continue;
        }
        if (++i >= text.size())
            return std::nullopt;
        const QChar e = text.at(i);
        switch (e.unicode()) {
        case 'n':
            out.append(QLatin1Char('\n'));
            break;
        case 't':
            out.append(QLatin1Char('\t'));
            break;
        case 'r':
            out.append(QLatin1Char('\r'));
            break;
        case '"':
            out.append(QLatin1Char('"'));
            break;
        case '\\':
            out.append(QLatin1Char('\\'));
            break;
        case 'u':
        case 'U': {
            const int digits = e == QLatin1Char('u') ? 4 : 8;
            bool ok = false;
            const uint code = text.mid(i + 1, digits).toUInt(&ok, 16);
            if (!ok || i + digits >= text.size())
                return std::nullopt;
            out.append(QString::fromUcs4(reinterpret_cast<const char32_t*>(&code), 1));
            i += digits;
            break;
        }
        default:
            return std::nullopt;
        }
    }
    return std::nullopt;
}

QVariant parseValue(const QString& raw)
{
    static const QRegularExpression integer(QStringLiteral("^[+-]?[0-9][0-9_]*$"));
    static const QRegularExpression decimal(
        QStringLiteral("^[+-]?[0-9][0-9_]*(\\.[0-9_]+)?([eE][+-]?[0-9]+)?$"));
    QString text = raw.trimmed();
    if (text == QLatin1String("true"))
        return true;
    if (text == QLatin1String("false"))
        return false;
    if (text.startsWith(QLatin1Char('"'))) {
        qsizetype pos = 0;
        if (auto quoted = readQuoted(text, pos)) {
            const QString rest = text.mid(pos).trimmed();
            if (rest.isEmpty() || rest.startsWith(QLatin1Char('#')))
                return *quoted;
        }
        return text; // a broken string is kept as the text it is
    }
    if (text.startsWith(QLatin1Char('\'')) && text.indexOf(QLatin1Char('\''), 1) > 0)
        return text.mid(1, text.indexOf(QLatin1Char('\''), 1) - 1);
    // A comment after a bare value.
    const qsizetype hash = text.indexOf(QLatin1Char('#'));
    if (hash > 0)
        text = text.left(hash).trimmed();
    if (integer.match(text).hasMatch()) {
        bool ok = false;
        const qint64 number = QString(text).remove(QLatin1Char('_')).toLongLong(&ok);
        if (ok)
            return number;
    }
    if (decimal.match(text).hasMatch()) {
        bool ok = false;
        const double number = QString(text).remove(QLatin1Char('_')).toDouble(&ok);
        if (ok)
            return number;
    }
    if (text == QLatin1String("inf") || text == QLatin1String("+inf"))
        return std::numeric_limits<double>::infinity();
    if (text == QLatin1String("-inf"))
        return -std::numeric_limits<double>::infinity();
    if (text == QLatin1String("nan") || text == QLatin1String("+nan") || text == QLatin1String("-nan"))
        return std::numeric_limits<double>::quiet_NaN();
    // Anything else (yes, 0,3, an unquoted word) reads as the text it is; typed readers report it.
    return text;
}

bool sameValues(const QHash<QString, QVariant>& a, const QHash<QString, QVariant>& b)
{
    if (a.size() != b.size())
        return false;
    for (auto it = a.cbegin(); it != a.cend(); ++it) {
        const auto other = b.constFind(it.key());
        if (other == b.cend() || other->typeId() != it->typeId() || *other != *it)
            return false;
    }
    return true;
}

} // namespace

bool PreferencesFile::Line::isUnread() const
{
    const QString trimmed = text.trimmed();
    return key.isEmpty() && !trimmed.isEmpty() && !trimmed.startsWith(QLatin1Char('#'));
}

PreferencesFile::PreferencesFile(QString path, QObject* parent)
    : PreferencesDatabase(parent), m_path(std::move(path))
{
    for (const QString& name : clearHalfWrittenSaves(m_path))
        logLine(halfWrittenLine(kArea, name));
    QFile file(m_path);
    if (file.open(QIODevice::ReadOnly))
        m_parsed = parse(file.readAll());
    if (!m_parsed.readable) {
        // Told once the start is over, unless a change sets the file aside first: then one line says both.
        m_unreadable = Unreadable::waiting;
        QMetaObject::invokeMethod(
            this, [this] { reportUnreadable(); }, Qt::QueuedConnection);
    }
    reportUnreadLines();
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &PreferencesFile::reload);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &PreferencesFile::reload);
    watch();
}

PreferencesFile::Parsed PreferencesFile::parse(const QByteArray& bytes)
{
    Parsed parsed;
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(bytes);
    if (decoder.hasError() || bytes.contains('\0')) {
        parsed.readable = false;
        return parsed;
    }
    static const QRegularExpression bareKey(QStringLiteral("^([A-Za-z0-9_.-]+)\\s*="));
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (qsizetype n = 0; n < lines.size(); ++n) {
        QString lineText = lines.at(n);
        if (lineText.endsWith(QLatin1Char('\r')))
            lineText.chop(1);
        if (n == lines.size() - 1 && lineText.isEmpty())
            break; // the file's final newline
        Line line{lineText, {}};
        const QString trimmed = lineText.trimmed();
        QString key;
        qsizetype valueStart = -1;
        if (trimmed.startsWith(QLatin1Char('"'))) {
            qsizetype pos = 0;
            if (auto quoted = readQuoted(trimmed, pos)) {
                const QString rest = trimmed.mid(pos).trimmed();
                if (rest.startsWith(QLatin1Char('='))) {
                    key = *quoted;
                    valueStart = trimmed.size() - rest.size() + 1;
                }
            }
        } else if (auto match = bareKey.match(trimmed); match.hasMatch()) {
            key = match.captured(1);
            valueStart = match.capturedEnd(0);
        }
        if (!key.isEmpty() && valueStart >= 0) {
            line.key = key;
            parsed.values.insert(key, parseValue(trimmed.mid(valueStart)));
        }
        parsed.lines.append(line);
    }
    return parsed;
}

QString PreferencesFile::formatKey(const QString& key)
{
    if (isBareKey(key))
        return key;
    return formatValue(key);
}

QString PreferencesFile::formatValue(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        return QString::number(value.toLongLong());
    case QMetaType::Double:
    case QMetaType::Float: {
        const double number = value.toDouble();
        if (std::isnan(number))
            return QStringLiteral("nan");
        if (std::isinf(number))
            return number > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
        QString text = QString::number(number, 'g', 15);
        if (!text.contains(QLatin1Char('.')) && !text.contains(QLatin1Char('e')))
            text += QStringLiteral(".0"); // keeps a whole double a double
        return text;
    }
    default: {
        QString out = QStringLiteral("\"");
        for (const QChar c : value.toString()) {
            switch (c.unicode()) {
            case '"':
                out += QStringLiteral("\\\"");
                break;
            case '\\':
                out += QStringLiteral("\\\\");
                break;
            case '\n':
                out += QStringLiteral("\\n");
                break;
            case '\t':
                out += QStringLiteral("\\t");
                break;
            case '\r':
                out += QStringLiteral("\\r");
                break;
            default:
                if (c.unicode() < 0x20)
                    out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
                else
                    out += c;
            }
        }
        return out + QLatin1Char('"');
    }
    }
}

std::optional<QVariant> PreferencesFile::value(const QString& key) const
{
    QMutexLocker lock(&m_lock);
    const auto it = m_parsed.values.constFind(key);
    if (it == m_parsed.values.cend())
        return std::nullopt;
    return *it;
}

void PreferencesFile::reportUnreadable()
{
    if (m_unreadable != Unreadable::waiting)
        return;
    m_unreadable = Unreadable::told;
    logLine(kArea + QStringLiteral(": the preferences file at ") + m_path +
            QStringLiteral(" could not be read (it is not text); the defaults apply and the file is left as "
                           "it is until a setting is changed"));
}

// Lines Norva cannot read are kept, and said once a run, not at every reading.
void PreferencesFile::reportUnreadLines()
{
    if (m_unreadLinesTold)
        return;
    const auto unread = std::count_if(m_parsed.lines.cbegin(), m_parsed.lines.cend(),
                                      [](const Line& line) { return line.isUnread(); });
    if (unread == 0)
        return;
    m_unreadLinesTold = true;
    logLine(kArea + QStringLiteral(": the preferences file at ") + m_path + QStringLiteral(" holds ") +
            countText(unread, QStringLiteral("line"), QStringLiteral("lines")) +
            QStringLiteral(" Norva cannot read; they are kept as they are"));
}

// Nothing Norva could not read is ever overwritten: the old file steps aside first.
bool PreferencesFile::setAsideUnreadable()
{
    if (m_parsed.readable || m_setAside)
        return true;
    const QString kept = unreadableCopyName(m_path, QDateTime::currentDateTimeUtc());
    const bool moved = QFile::rename(m_path, kept);
    if (!moved)
        logLine(kArea + QStringLiteral(": could not keep the unreadable preferences file (") + m_path +
                QStringLiteral(" could not be renamed); the setting is not saved"));
    else if (m_unreadable == Unreadable::waiting)
        logLine(kArea + QStringLiteral(": kept the unreadable preferences file as ") + kept +
                QStringLiteral(" (it is not text) and started a fresh one"));
    else
        logLine(kArea + QStringLiteral(": kept the unreadable preferences file as ") + kept);
    if (m_unreadable == Unreadable::waiting && moved)
        m_unreadable = Unreadable::told;
    m_setAside = QFile::exists(kept);
    if (m_setAside)
        m_parsed = Parsed{};
    return m_setAside;
}

// Many lines Norva cannot read would be rewritten whole with every toggle: they move once to a
// file of their own beside the preferences, where they stay as they were.
void PreferencesFile::setAsideUnreadLines()
{
    qsizetype bytes = 0;
    QByteArray unread;
    for (const Line& line : std::as_const(m_parsed.lines)) {
        if (!line.isUnread())
            continue;
        const QByteArray text = line.text.toUtf8() + '\n';
        bytes += text.size();
        unread += text;
    }
    if (bytes <= kUnreadAsideBytes)
        return;
    const QString aside =
        asideCopyName(m_path, QStringLiteral("unread-lines"), QDateTime::currentDateTimeUtc());
    if (QFile::exists(aside) || writeFileAtomically(aside, unread))
        return; // kept in place, as before: rewritten, never lost
    const auto moved = m_parsed.lines.removeIf([](const Line& line) { return line.isUnread(); });
    logLine(kArea + QStringLiteral(": moved ") +
            countText(moved, QStringLiteral("line"), QStringLiteral("lines")) +
            QStringLiteral(" it cannot read from the preferences file to ") + QFileInfo(aside).fileName() +
            QStringLiteral(", so they are not rewritten with every change"));
}

void PreferencesFile::setValue(const QString& key, const std::optional<QVariant>& value)
{
    {
        QMutexLocker lock(&m_lock);
        if (!setAsideUnreadable())
            return;
        setAsideUnreadLines();
        const QString newLine =
            formatKey(key) + QStringLiteral(" = ") + (value ? formatValue(*value) : QString());
        bool placed = false;
        QList<Line> lines;
        for (const Line& line : std::as_const(m_parsed.lines)) {
            if (line.key != key) {
                lines.append(line);
            } else if (value && !placed) {
                lines.append(Line{newLine, key});
                placed = true;
            }
        }
        if (value && !placed) {
            if (lines.isEmpty())
                lines.append(Line{kHeader, {}});
            lines.append(Line{newLine, key});
        }
        m_parsed.lines = lines;
        if (value)
            m_parsed.values.insert(key, *value);
        else
            m_parsed.values.remove(key);
        save();
    }
    emit changed();
}

bool PreferencesFile::save()
{
    QByteArray bytes;
    for (const Line& line : std::as_const(m_parsed.lines))
        bytes += line.text.toUtf8() + '\n';
    if (const auto failure = writeFileAtomically(m_path, bytes)) {
        logLine(kArea + QStringLiteral(": could not save the preferences (") + *failure +
                QStringLiteral(")"));
        return false;
    }
    return true;
}

void PreferencesFile::watch()
{
    const QString folder = QFileInfo(m_path).absolutePath();
    QDir().mkpath(folder);
    if (!m_watcher.directories().contains(folder))
        m_watcher.addPath(folder);
    if (QFile::exists(m_path) && !m_watcher.files().contains(m_path))
        m_watcher.addPath(m_path);
}

void PreferencesFile::reload()
{
    watch(); // an atomic replace drops the file from the watcher
    QFile file(m_path);
    Parsed fresh;
    if (file.open(QIODevice::ReadOnly))
        fresh = parse(file.readAll());
    bool differs = false;
    {
        QMutexLocker lock(&m_lock);
        if (!fresh.readable && m_parsed.readable) {
            m_unreadable = Unreadable::waiting;
            reportUnreadable();
        }
        differs = !sameValues(fresh.values, m_parsed.values);
        if (fresh.readable)
            m_setAside = false;
        m_parsed = fresh;
        reportUnreadLines();
    }
    if (differs)
        emit changed();
}

} // namespace norva
