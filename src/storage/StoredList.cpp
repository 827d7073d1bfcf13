#include "storage/StoredList.h"

#include "app/AtomicFile.h"
#include "app/CountText.h"
#include "app/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QRegularExpression>

namespace norva {
StoredList::StoredList(QString path, QString area, Clock& clock, Seconds saveDelay)
    : m_path(std::move(path)), m_area(std::move(area)), m_clock(clock), m_saveDelay(saveDelay)
{}

StoredList::~StoredList()
{
    if (m_pending.isArmed())
        saveNow();
}

QString StoredList::fileName() const
{
    return QFileInfo(m_path).fileName();
}

QJsonArray StoredList::load()
{
    clearHalfWritten();
    m_unreadable = false;
    QFile file(m_path);
    if (!file.exists())
        return {};
    QString why;
    QJsonArray elements;
    if (!file.open(QIODevice::ReadOnly)) {
        why = file.errorString();
    } else {
        QJsonParseError error{};
        const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
        if (error.error != QJsonParseError::NoError)
            why = QStringLiteral("it is not JSON: ") + error.errorString();
        else if (!document.isArray())
            why = m_wording.notAList;
        else
            elements = document.array();
    }
    if (!why.isEmpty()) {
        m_unreadable = true;
        logLine(m_area + QStringLiteral(": could not read ") + fileName() + QStringLiteral(" (") + why +
                QStringLiteral("); started without it"));
    }
    return elements;
}

void StoredList::later()
{
    if (m_pending.isArmed())
        return;
    m_pending = m_clock.after(m_saveDelay, [this] { saveNow(); });
}

bool StoredList::saveNow()
{
    m_pending.cancel();
    if (!m_snapshot)
        return false;
    const bool saved = save();
    if (m_onSaved)
        m_onSaved();
    return saved;
}

bool StoredList::save()
{
    if (m_unreadable && !setAsideUnreadable()) {
        m_lastSaveFailure = QStringLiteral("the unreadable file could not be kept aside");
        return false;
    }
    const QByteArray bytes = QJsonDocument(m_snapshot()).toJson(QJsonDocument::Compact);
    m_lastSaveFailure = writeFileAtomically(m_path, bytes);
    if (m_lastSaveFailure) {
        logLine(m_area + QStringLiteral(": could not save ") + fileName() + QStringLiteral(" (") +
                *m_lastSaveFailure + QStringLiteral("); the list stays as it is and is saved at its next change"));
        return false;
    }
    return true;
}

bool StoredList::setAsideUnreadable()
{
    if (!QFileInfo::exists(m_path)) {
        m_unreadable = false;
        return true;
    }
    const QString aside = unreadableCopyName(m_path, m_clock.now(), m_wording.stamp);
    QFile file(m_path);
    if (QFileInfo::exists(aside) || !file.rename(aside)) {
        const QString why = QFileInfo::exists(aside)
                                ? QStringLiteral("something is already called ") + QFileInfo(aside).fileName()
                                : file.errorString();
        logLine(m_area + QStringLiteral(": could not keep the unreadable ") + fileName() +
                QStringLiteral(" (") + why + QStringLiteral("); left it as it is and did not save the list"));
        return false;
    }
    logLine(m_area + m_wording.setAside.arg(fileName(), QFileInfo(aside).fileName()));
    m_setAsideName = QFileInfo(aside).fileName();
    m_unreadable = false;
    return true;
}

// A quit in the middle of a save can leave the save's temporary file ("<name>.XXXXXX") beside
// the list; the list itself is whole (old or new), so the leftover only takes room.
void StoredList::clearHalfWritten() const
{
    const QFileInfo info(m_path);
    const QRegularExpression leftover(QStringLiteral("^") + QRegularExpression::escape(info.fileName()) +
                                      QStringLiteral("\\.[A-Za-z0-9]{6}$"));
    const QDir folder = info.absoluteDir();
    for (const QString& name :
         folder.entryList({info.fileName() + QStringLiteral(".*")}, QDir::Files | QDir::Hidden)) {
        if (!leftover.match(name).hasMatch())
            continue;
        if (QFile::remove(folder.filePath(name)))
            logLine(m_area + QStringLiteral(": removed ") + name +
                    QStringLiteral(", a save that a quit left half written"));
    }
}

void StoredList::reportSkipped(int count) const
{
    logLine(m_area + QStringLiteral(": skipped ") +
            countText(count, QStringLiteral("entry"), QStringLiteral("entries")) + QStringLiteral(" of ") +
            fileName() + QStringLiteral(" that did not read"));
}

} // namespace norva
