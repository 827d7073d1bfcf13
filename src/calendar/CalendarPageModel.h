#pragma once

#include "app/QmlInstances.h"
#include "app/RowsModel.h"
#include "calendar/MeetingManager.h"

#include <QDate>
#include <QObject>
#include <QVariantList>
#include <QVariantMap>
#include <QtQmlIntegration/qqmlintegration.h>

namespace norva {

// The calendar page's view model: the next two weeks by day and a month view of the same events,
// each event with its time, title, calendar colour and whether it can be joined; the add and edit
// forms' words, their link detection on paste, and their saving. QML draws; this decides.
class CalendarPageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(norva::RowsModel* days READ days CONSTANT)
    Q_PROPERTY(QString monthTitle READ monthTitle NOTIFY changed)
    Q_PROPERTY(norva::RowsModel* monthCells READ monthCells CONSTANT)
    Q_PROPERTY(norva::RowsModel* calendars READ calendars CONSTANT)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY changed)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)

public:
    static CalendarPageModel* create(QQmlEngine*, QJSEngine*)
    {
        return QmlInstances::of<CalendarPageModel>();
    }
    // The form's calendar choice that keeps a meeting in Norva only.
    static const QString kNorvaOnly;       // "norva"
    static constexpr int kMonthCells = 42; // six weeks, so every month fits
    static constexpr int kDotsPerCell = 3;

    explicit CalendarPageModel(MeetingManager& meetings, Clock& clock, QObject* parent = nullptr);

    RowsModel* days() { return &m_days; }
    QString monthTitle() const;
    RowsModel* monthCells() { return &m_monthCells; }
    RowsModel* calendars() { return &m_calendars; }
    QString emptyText() const;
    QString notice() const { return m_notice; }

    Q_INVOKABLE void previousMonth();
    Q_INVOKABLE void nextMonth();
    // The index in `days` of the day (yyyy-MM-dd), or -1 when nothing happens that day.
    Q_INVOKABLE int dayIndex(const QString& isoDate) const;

    Q_INVOKABLE bool join(const QString& key);
    // The join link in a pasted text, or empty; and the service's name for the form to say.
    Q_INVOKABLE QString detectLink(const QString& text) const;
    Q_INVOKABLE QString serviceOf(const QString& link) const;

    // The form's fields for a new meeting (`key` empty) or an existing one.
    Q_INVOKABLE QVariantMap formFor(const QString& key) const;
    // Saves the form (title, date yyyy-MM-dd, start and end HH:mm, link, calendar). False keeps the
    // form open with a notice; what the person typed stays in it.
    Q_INVOKABLE bool save(const QVariantMap& form);
    Q_INVOKABLE bool remove(const QString& key);
    Q_INVOKABLE void dismissNotice();

signals:
    void changed();
    void noticeChanged();

private:
    // Lays the meetings and the month over the lists shown, then says the page changed; again when
    // the day turns, as "Today" moves then.
    void refresh();
    QVariantList dayRows() const;
    QVariantList monthRows() const;
    QVariantList calendarRows() const;
    QVariantMap rowOf(const Meeting& meeting) const;
    QString colorOf(const Meeting& meeting) const;
    QString calendarNameOf(const Meeting& meeting) const;
    void say(const QString& notice);
    QDate today() const;

    MeetingManager& m_meetings;
    Clock& m_clock;
    QDate m_month; // the first day of the month the month view shows
    QString m_notice;
    RowsModel m_days{QStringLiteral("date"), this};
    RowsModel m_monthCells{QString(), this}; // a cell stays in its place in the grid as months turn
    RowsModel m_calendars{QStringLiteral("id"), this};
    ScheduledWork m_dayTurn;
};

} // namespace norva
