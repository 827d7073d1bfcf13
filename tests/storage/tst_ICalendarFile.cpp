#include "CalendarFixtures.h"
#include "LogCapture.h"
#include "TempHome.h"
#include "TestMain.h"

#include "storage/ICalendarFile.h"
#include "storage/ICalendarPatch.h"

#include <QFile>
#include <QtTest>

#include <libical/ical.h>

#include <sys/stat.h>

using namespace norva;
using namespace norva::test;

namespace {

QByteArray repeated(const QByteArray& line, int times)
{
    QByteArray out;
    for (int i = 0; i < times; ++i)
        out += line;
    return out;
}

QByteArray deeplyNested(int depth)
{
    return "BEGIN:VCALENDAR\r\n" + repeated("BEGIN:VTODO\r\n", depth) + repeated("END:VTODO\r\n", depth) +
           "END:VCALENDAR\r\n";
}

} // namespace

class ICalendarFileTest : public QObject {
    Q_OBJECT

private slots:
    void badFilesAreRefusedWithTheirReason_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        const QByteArray good = todomanTodo("a", "call mum");
        QTest::newRow("truncated") << good.left(good.size() / 2) << "it ends before its calendar does";
        QTest::newRow("binary") << QByteArray("BEGIN:VCALENDAR\r\n\0\x01\x02\xff", 22) + "END:VCALENDAR\r\n"
                                << "it holds binary bytes";
        QTest::newRow("not iCalendar") << QByteArray("hello\n") << "it is not an iCalendar file";
        QTest::newRow("empty") << QByteArray() << "it is not an iCalendar file";
        QTest::newRow("ten thousand properties")
            << "BEGIN:VCALENDAR\r\nBEGIN:VTODO\r\nUID:x\r\n" + repeated("X-A:1\r\n", 10000) +
                   "END:VTODO\r\nEND:VCALENDAR\r\n"
            << "a component holds more than 2000 properties";
        QTest::newRow("deep nesting") << deeplyNested(5000) << "its components nest deeper than 8";
        QTest::newRow("end without begin") << QByteArray("BEGIN:VCALENDAR\r\nEND:VTODO\r\nEND:VCALENDAR\r\n")
                                           << "a component ends that never began";
        QTest::newRow("other root") << QByteArray("BEGIN:VCARD\r\nFN:x\r\nEND:VCARD\r\n")
                                    << "it is not an iCalendar file";
        QTest::newRow("over 4 MB") << "BEGIN:VCALENDAR\r\nBEGIN:VTODO\r\nUID:big\r\nATTACH;VALUE=BINARY:" +
                                          QByteArray(10 * 1024 * 1024, 'A') +
                                          "\r\nEND:VTODO\r\nEND:VCALENDAR\r\n"
                                   << "it is larger than 4 MB";
    }
    void badFilesAreRefusedWithTheirReason()
    {
        QFETCH(QByteArray, bytes);
        TempHome home;
        const QString path = home.write(QStringLiteral("cal/list/bad.ics"), bytes);
        const auto read = ICalendarFile::read(path);
        QVERIFY(!read.file);
        QTEST(read.reason, "reason");
        QCOMPARE(TempHome::read(path), bytes); // never touched
    }

    void thingsThatAreNotPlainFilesAreNeverOpened()
    {
        TempHome home;
        const QString link = home.file(QStringLiteral("shadow.ics"));
        QVERIFY(QFile::link(QStringLiteral("/etc/shadow"), link));
        QCOMPARE(ICalendarFile::read(link).reason, QStringLiteral("it is a link, which Norva never follows"));
        const QString fifo = home.file(QStringLiteral("pipe.ics"));
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        QCOMPARE(ICalendarFile::read(fifo).reason,
                 QStringLiteral("it is not a plain file")); // and did not block
        QVERIFY(!ICalendarFile::stampOf(link));
    }

    void aGoodFileReadsWithItsBytesAndStamp()
    {
        TempHome home;
        const QByteArray bytes = todomanTodo("a", "call mum");
        const QString path = home.write(QStringLiteral("a.ics"), bytes);
        const auto read = ICalendarFile::read(path);
        QVERIFY(read.file);
        QCOMPARE(read.file->bytes(), bytes);
        QVERIFY(read.file->holds("VTODO"));
        QVERIFY(!read.file->holds("VEVENT"));
        QCOMPARE(read.stamp, *ICalendarFile::stampOf(path));
        QCOMPARE(read.stamp.size, bytes.size());
    }

    void aWriteReplacesALinkInsteadOfWritingThroughIt()
    {
        TempHome home;
        const QString target = home.write(QStringLiteral("elsewhere.txt"), "keep me");
        const QString link = home.file(QStringLiteral("item.ics"));
        QVERIFY(QFile::link(target, link));
        QVERIFY(!writeCalendarItem(link, "new"));
        QCOMPARE(TempHome::read(target), QByteArray("keep me"));
        QVERIFY(!QFileInfo(link).isSymLink());
        QCOMPARE(TempHome::read(link), QByteArray("new"));
        QCOMPARE(QDir(home.path()).entryList(QDir::Files | QDir::Hidden).size(), 2); // no leftovers
    }
};

NORVA_TEST(ICalendarFileTest)

class ICalendarPatchTest : public QObject {
    Q_OBJECT

private slots:
    void onlyTheChangedPropertiesChange()
    {
        const QByteArray before = todomanTodo("a", "call mum");
        const auto after = ICalendarPatch("VTODO", "a")
                               .set(icalproperty_new_summary("call dad"))
                               .set(icalproperty_new_status(ICAL_STATUS_COMPLETED))
                               .applyTo(before);
        QVERIFY(after);
        QByteArray expected = before;
        expected.replace("SUMMARY:call mum\r\n", "SUMMARY:call dad\r\n");
        // A property the item did not have goes among the item's own, before its alarm.
        expected.replace("BEGIN:VALARM\r\n", "STATUS:COMPLETED\r\nBEGIN:VALARM\r\n");
        QCOMPARE(*after, expected);
        QVERIFY(ICalendarFile::parse(*after));
    }

    void removingAPropertyLeavesTheAlarmsAlone()
    {
        const QByteArray before = todomanTodo("a", "call mum");
        const auto after = ICalendarPatch("VTODO", {}).remove("DESCRIPTION").applyTo(before);
        QVERIFY(after);
        QVERIFY(!after->contains("folded over"));
        QVERIFY(after->contains("DESCRIPTION:alarm\r\n")); // the alarm's own description stays
    }

    void lineFeedFilesKeepTheirLineFeeds()
    {
        QByteArray before = todomanTodo("a", "call mum");
        before.replace("\r\n", "\n");
        const auto after = ICalendarPatch("VTODO", "a").set(icalproperty_new_summary("x")).applyTo(before);
        QVERIFY(after);
        QVERIFY(!after->contains('\r'));
        QVERIFY(after->contains("\nSUMMARY:x\n"));
    }

    void theMasterIsEditedNeverAnException()
    {
        const QByteArray before =
            "BEGIN:VCALENDAR\r\nBEGIN:VTODO\r\nUID:r\r\nRECURRENCE-ID:20261120T090000Z\r\n"
            "SUMMARY:one\r\nEND:VTODO\r\nBEGIN:VTODO\r\nUID:r\r\nSUMMARY:master\r\n"
            "END:VTODO\r\nEND:VCALENDAR\r\n";
        const auto after =
            ICalendarPatch("VTODO", "r").set(icalproperty_new_summary("changed")).applyTo(before);
        QVERIFY(after);
        QVERIFY(after->contains("SUMMARY:one\r\n"));
        QVERIFY(after->contains("SUMMARY:changed\r\n"));
        QVERIFY(!ICalendarPatch("VTODO", "other").set(icalproperty_new_summary("x")).applyTo(before));
        QVERIFY(!ICalendarPatch("VEVENT", {}).set(icalproperty_new_summary("x")).applyTo(before));
    }

    void textIsEscapedAndLongLinesFolded()
    {
        const QString title =
            QStringLiteral("milk, eggs; and a very long line that goes well past seventy five "
                           "octets so that libical folds it");
        const auto after = ICalendarPatch("VTODO", "a")
                               .set(icalproperty_new_summary(title.toUtf8().constData()))
                               .applyTo(todomanTodo("a", "x"));
        QVERIFY(after);
        QVERIFY(after->contains("milk\\, eggs\\; and"));
        const auto reread = ICalendarFile::parse(*after);
        QVERIFY(reread);
        auto* todo = icalcomponent_get_first_component(const_cast<icalcomponent*>(reread->calendar()),
                                                       ICAL_VTODO_COMPONENT);
        QCOMPARE(QString::fromUtf8(icalcomponent_get_summary(todo)), title);
    }
};

NORVA_TEST(ICalendarPatchTest)

#include "tst_ICalendarFile.moc"
