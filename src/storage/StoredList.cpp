#include "storage/StoredList.h"

#include "app/AtomicFile.h"
#include "app/CountText.h"
#include "app/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>

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

StoredList::Read StoredList::read(const QString& path, const QString& notAList)
{
    Read read;
    read.cleared = clearHalfWrittenSaves(path);
    QFile file(path);
    if (!file.exists())
        return read;
    if (!file.open(QIODevice::ReadOnly)) {
        read.failure = file.errorString();
        return read;
    }
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError)
        read.failure = QStringLiteral("it is not JSON: ") + error.errorString();
    else if (!document.isArray())
        read.failure = notAList.isEmpty() ? Wording().notAList : notAList;
    else
        read.elements = document.array();
    return read;
}

void StoredList::take(const Read& read)
{
    for (const QString& name : read.cleared)
        logLine(halfWrittenLine(m_area, name));
    m_unreadable = !read.failure.isEmpty();
    if (m_unreadable)
        logLine(m_area + QStringLiteral(": could not read ") + fileName() + QStringLiteral(" (") +
                read.failure + QStringLiteral("); started without it"));
}

QJsonArray StoredList::load()
{
    const Read found = read(m_path, m_wording.notAList);
    take(found);
    return found.elements;
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
                *m_lastSaveFailure +
                QStringLiteral("); the list stays as it is and is saved at its next change"));
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

void StoredList::reportSkipped(int count) const
{
    logLine(m_area + QStringLiteral(": skipped ") +
            countText(count, QStringLiteral("entry"), QStringLiteral("entries")) + QStringLiteral(" of ") +
            fileName() + QStringLiteral(" that did not read"));
}

} // namespace norva
