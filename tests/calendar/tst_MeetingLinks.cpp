#include "TestMain.h"

#include "calendar/LinkFinder.h"
#include "calendar/MeetingLinks.h"

#include <QTest>

using namespace norva;

// Invitation texts as the services write them, and look-alikes that must never be joined.
class MeetingLinksTest : public QObject {
    Q_OBJECT

private slots:
    void pastedInvitationYieldsItsJoinLink_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected"); // empty: no join link

        QTest::newRow("zoom invitation")
            << QStringLiteral(
                   "Ada Lovelace is inviting you to a scheduled Zoom meeting.\n\nJoin Zoom Meeting\n"
                   "https://us02web.zoom.us/j/83451234567?pwd=aGVsbG8xMjM0NTY3ODkw.1\n\nMeeting ID: 834 5123 "
                   "4567\n"
                   "Passcode: 271828")
            << QStringLiteral("https://us02web.zoom.us/j/83451234567?pwd=aGVsbG8xMjM0NTY3ODkw.1");
        QTest::newRow("zoom company subdomain, full stop after")
            << QStringLiteral("Join here: https://acme.zoom.us/j/5550001111.")
            << QStringLiteral("https://acme.zoom.us/j/5550001111");
        QTest::newRow("meet in a sentence, comma after")
            << QStringLiteral(
                   "Video call link: https://meet.google.com/abc-defg-hij, or dial +1 929-555-0199")
            << QStringLiteral("https://meet.google.com/abc-defg-hij");
        QTest::newRow("meet in angle brackets")
            << QStringLiteral("Join with Google Meet <https://meet.google.com/xyz-abcd-efg>")
            << QStringLiteral("https://meet.google.com/xyz-abcd-efg");
        QTest::newRow("teams work, long encoded link")
            << QStringLiteral(
                   "Microsoft Teams meeting\nJoin on your computer, mobile app or room device\n"
                   "Click here to join the meeting<https://teams.microsoft.com/l/meetup-join/"
                   "19%3ameeting_NjQ5ZTI0YjUtYTk2Ny00NjBmLWI2NDMtMjQ3ZTM5ZjBiNGE1%40thread.v2/0?context="
                   "%7b%22Tid%22%3a%2272f988bf-86f1-41af-91ab-2d7cd011db47%22%2c%22Oid%22%3a%22d1c9f3a0%22%"
                   "7d>\n"
                   "Meeting ID: 245 817 663 22")
            << QStringLiteral(
                   "https://teams.microsoft.com/l/meetup-join/"
                   "19%3ameeting_NjQ5ZTI0YjUtYTk2Ny00NjBmLWI2NDMtMjQ3ZTM5ZjBiNGE1%40thread.v2/0?context="
                   "%7b%22Tid%22%3a%2272f988bf-86f1-41af-91ab-2d7cd011db47%22%2c%22Oid%22%3a%22d1c9f3a0%22%"
                   "7d");
        QTest::newRow("teams consumer")
            << QStringLiteral("Join: https://teams.live.com/meet/9388123456789?p=AbCdEfGh")
            << QStringLiteral("https://teams.live.com/meet/9388123456789?p=AbCdEfGh");
        QTest::newRow("webex site, in brackets")
            << QStringLiteral("Webex meeting (https://acme.webex.com/acme/j.php?MTID=m1f2e3d4c5b6a7980)")
            << QStringLiteral("https://acme.webex.com/acme/j.php?MTID=m1f2e3d4c5b6a7980");
        QTest::newRow("whereby room, exclamation after")
            << QStringLiteral("Pop in! https://whereby.com/design-crit!")
            << QStringLiteral("https://whereby.com/design-crit");
        QTest::newRow("upper-case host")
            << QStringLiteral("HTTPS://ZOOM.US/J/123") << QStringLiteral("https://zoom.us/J/123");
        QTest::newRow("www form") << QStringLiteral("see www.zoom.us/j/42 today")
                                  << QStringLiteral("https://www.zoom.us/j/42");
        QTest::newRow("unknown service first, meet later")
            << QStringLiteral(
                   "Agenda https://docs.example.com/agenda then https://meet.google.com/aaa-bbbb-ccc")
            << QStringLiteral("https://meet.google.com/aaa-bbbb-ccc");
        QTest::newRow("host that ends in the zoom domain")
            << QStringLiteral("https://zoom.us.evil.example/j/1") << QString();
        QTest::newRow("host that only contains the word")
            << QStringLiteral("https://notzoom.us/j/1") << QString();
        QTest::newRow("zoom as user name of another host")
            << QStringLiteral("https://zoom.us@evil.example/j/1") << QString();
        QTest::newRow("meet on another google host")
            << QStringLiteral("https://google.com/meet/abc") << QString();
        QTest::newRow("teams look-alike")
            << QStringLiteral("https://teams.microsoft.com.phish.example/l/x") << QString();
        QTest::newRow("not a web scheme") << QStringLiteral("zoommtg://zoom.us/join?confno=123") << QString();
        QTest::newRow("meeting words without a link")
            << QStringLiteral("Zoom call, link to follow") << QString();
        QTest::newRow("empty") << QString() << QString();
    }
    void pastedInvitationYieldsItsJoinLink()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        const auto link = MeetingLinks::detectMeetingLink(text);
        // Compared as links: the hex digits of an escape may change case, never what they encode.
        QCOMPARE(link.value_or(QUrl()), expected.isEmpty() ? QUrl() : QUrl(expected));
        if (link)
            QVERIFY(!link->toString(QUrl::FullyEncoded).contains(QLatin1Char('"'))); // %22 stays encoded
    }

    // The event's own URL, then its location, then its notes; a plain web page never wins.
    void joinLinkComesFromUrlThenLocationThenNotes_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("location");
        QTest::addColumn<QString>("notes");
        QTest::addColumn<QString>("expected");

        const QString zoom = QStringLiteral("https://acme.zoom.us/j/1");
        const QString meet = QStringLiteral("https://meet.google.com/abc-defg-hij");
        const QString teams = QStringLiteral("https://teams.microsoft.com/l/meetup-join/1");
        QTest::newRow("own url wins") << zoom << meet << teams << zoom;
        QTest::newRow("location before notes")
            << QString() << QStringLiteral("Room 4 / ") + meet << teams << meet;
        QTest::newRow("plain page url, meet in notes")
            << QStringLiteral("https://intranet.example/standup") << QStringLiteral("Room 4")
            << QStringLiteral("Join: ") + meet << meet;
        QTest::newRow("nothing known")
            << QStringLiteral("https://intranet.example/") << QStringLiteral("https://notzoom.us/j/1")
            << QStringLiteral("bring snacks") << QString();
    }
    void joinLinkComesFromUrlThenLocationThenNotes()
    {
        QFETCH(QString, url);
        QFETCH(QString, location);
        QFETCH(QString, notes);
        const auto link = MeetingLinks::joinURL(QUrl(url), location, notes);
        QTEST(link ? link->toString() : QString(), "expected");
    }

    void everyLinkOfATextIsFoundInOrder()
    {
        const auto links = LinkFinder::find(
            QStringLiteral("First (https://en.wikipedia.org/wiki/Ada_(programming_language)), then "
                           "\"https://example.org/a?b=c\"; last www.example.net."));
        QCOMPARE(links.size(), 3);
        QCOMPARE(links[0].toString(),
                 QStringLiteral("https://en.wikipedia.org/wiki/Ada_(programming_language)"));
        QCOMPARE(links[1].toString(), QStringLiteral("https://example.org/a?b=c"));
        QCOMPARE(links[2].toString(), QStringLiteral("https://www.example.net"));
    }
};

NORVA_TEST(MeetingLinksTest)
#include "tst_MeetingLinks.moc"
