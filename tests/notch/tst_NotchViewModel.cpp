#include "LogCapture.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TestMain.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "notch/NotchLayout.h"
#include "notch/NotchViewModel.h"

#include <QtTest>

using namespace norva;
using norva::test::LogCapture;
using norva::test::ManualClock;
using norva::test::MemoryPreferences;
using State = NotchViewModel::State;

namespace {

// A notch with its own preferences and a clock that moves only when told.
struct Rig {
    ManualClock clock;
    MemoryPreferences prefs;
    SettingsStore settings{prefs};
    NotchViewModel notch{clock, settings};

    Rig() { notch.setPages({QStringLiteral("music"), QStringLiteral("agents")}); }
    void advance(double seconds) { clock.advance(Seconds(seconds)); }
    // Seconds until the notch reaches the state, stepping the clock by 10 ms; -1 if it never does.
    double secondsUntil(State state, double limit = 3.0)
    {
        for (int step = 0; step <= limit * 100; ++step) {
            if (notch.state() == state)
                return step / 100.0;
            advance(0.01);
        }
        return -1;
    }
};

} // namespace

class NotchViewModelTest : public QObject {
    Q_OBJECT
private slots:
    void hoverOpensAfterTheResolvedDelay_data()
    {
        QTest::addColumn<QVariant>("openOnHover");
        QTest::addColumn<double>("delay");
        QTest::addColumn<bool>("peekOnHover");
        QTest::addColumn<bool>("fullscreen");
        QTest::addColumn<QString>("guard");
        QTest::addColumn<double>("opensAfter"); // -1: never by hovering
        QTest::newRow("plain delay") << QVariant(true) << 0.3 << false << false << "longer" << 0.3;
        QTest::newRow("short delay is no shorter than the peek")
            << QVariant(true) << 0.05 << true << false << "longer" << 0.09;
        QTest::newRow("short delay floor without peek")
            << QVariant(true) << 0.05 << false << false << "longer" << 0.09;
        QTest::newRow("fullscreen raises to 0.6") << QVariant(true) << 0.2 << true << true << "longer" << 0.6;
        QTest::newRow("fullscreen keeps longer delay")
            << QVariant(true) << 1.0 << true << true << "longer" << 1.0;
        QTest::newRow("fullscreen normal") << QVariant(true) << 0.2 << true << true << "normal" << 0.2;
        QTest::newRow("fullscreen click") << QVariant(true) << 0.2 << true << true << "click" << -1.0;
        QTest::newRow("fullscreen unknown guard is longer")
            << QVariant(true) << 0.2 << false << true << "sometimes" << 0.6;
        QTest::newRow("open on hover absent") << QVariant() << 0.2 << true << false << "longer" << -1.0;
        QTest::newRow("open on hover off") << QVariant(false) << 0.2 << false << false << "longer" << -1.0;
    }

    void hoverOpensAfterTheResolvedDelay()
    {
        QFETCH(QVariant, openOnHover);
        QFETCH(double, delay);
        QFETCH(bool, peekOnHover);
        QFETCH(bool, fullscreen);
        QFETCH(QString, guard);
        QFETCH(double, opensAfter);
        Rig rig;
        if (openOnHover.isValid())
            rig.prefs.setValue(SettingsKeys::openOnHover, openOnHover);
        rig.prefs.setValue(SettingsKeys::openHoverDelay, delay);
        rig.prefs.setValue(SettingsKeys::peekOnHover, peekOnHover);
        rig.prefs.setValue(SettingsKeys::fullscreenGuard, guard);
        rig.notch.setFullscreenOnDisplay(fullscreen);
        rig.notch.pointerEntered();
        const double took = rig.secondsUntil(State::open);
        QVERIFY2(qAbs(took - opensAfter) < 0.011, qPrintable(QString::number(took)));
    }

    // The display is asked at each entry, so a window that goes full-screen between two visits
    // changes the second visit's delay, and leaving full-screen brings the configured one back.
    void fullscreenIsAskedAtEachEntry()
    {
        Rig rig;
        rig.prefs.setValue(SettingsKeys::openOnHover, true);
        rig.prefs.setValue(SettingsKeys::openHoverDelay, 0.2);
        rig.prefs.setValue(SettingsKeys::peekOnHover, false);
        bool fullscreen = false;
        int asked = 0;
        rig.notch.setFullscreenProbe([&] {
            ++asked;
            return fullscreen;
        });
        QList<double> took;
        for (bool front : {false, true, false}) {
            fullscreen = front;
            rig.notch.pointerEntered();
            took << rig.secondsUntil(State::open);
            rig.notch.escape();
            rig.notch.pointerExited();
            rig.advance(2); // past the courtesy of a notch that closed under the pointer
        }
        QCOMPARE(took, QList<double>({0.2, 0.6, 0.2}));
        QCOMPARE(asked, 3);
    }

    void panelNeverOpensBeforeThePeekShows()
    {
        Rig rig;
        rig.prefs.setValue(SettingsKeys::openOnHover, true);
        rig.prefs.setValue(SettingsKeys::openHoverDelay, 0.1);
        rig.prefs.setValue(SettingsKeys::peekDelay, 0.3);
        const QDateTime start = rig.clock.now();
        QStringList states;
        connect(&rig.notch, &NotchViewModel::stateChanged, this, [&] {
            states << rig.notch.stateName() + '@' + QString::number(rig.clock.secondsSince(start));
        });
        rig.notch.pointerEntered();
        rig.advance(1);
        QCOMPARE(states, QStringList({QStringLiteral("peek@0.3"), QStringLiteral("open@0.3")}));
    }

    // A drag under way keeps the notch closed, not even peeking; it opens on the release only if the
    // pointer is still there.
    void heldButtonDelaysOpeningUntilRelease_data()
    {
        QTest::addColumn<bool>("leftFirst");
        QTest::newRow("released over the notch") << false;
        QTest::newRow("released after leaving") << true;
    }
    void heldButtonDelaysOpeningUntilRelease()
    {
        QFETCH(bool, leftFirst);
        Rig rig;
        rig.prefs.setValue(SettingsKeys::openOnHover, true);
        rig.notch.setPressedMouseButtons(1);
        rig.notch.pointerEntered();
        rig.advance(2);
        QCOMPARE(rig.notch.state(), State::closed);
        if (leftFirst)
            rig.notch.pointerExited();
        rig.notch.setPressedMouseButtons(0);
        rig.advance(leftFirst ? 2 : 0.06);
        QCOMPARE(rig.notch.state(), leftFirst ? State::closed : State::open);
    }

    // Leaving closes the notch after the grace of how it was shown (a pointer back within it keeps
    // it); a card that holds the panel open rechecks every 0.4 s, an open menu or a pin keep it.
    void leavingClosesAfterTheGrace_data()
    {
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("holder");
        QTest::addColumn<double>("closesAfter"); // -1: it stays
        QTest::newRow("peek") << "peek" << QString() << 0.22;
        QTest::newRow("opened by a click") << "click" << QString() << 0.7;
        QTest::newRow("just opened by hover") << "hover" << QString() << 0.9;
        QTest::newRow("a card holds it") << "click" << QStringLiteral("card") << -1.0;
        QTest::newRow("a menu is open") << "click" << QStringLiteral("menu") << -1.0;
        QTest::newRow("pinned") << "click" << QStringLiteral("pin") << -1.0;
    }
    void leavingClosesAfterTheGrace()
    {
        QFETCH(QString, shown);
        QFETCH(QString, holder);
        QFETCH(double, closesAfter);
        Rig rig;
        rig.prefs.setValue(SettingsKeys::openOnHover, shown == QLatin1String("hover"));
        rig.notch.pointerEntered();
        if (shown == QLatin1String("click"))
            rig.notch.clicked();
        const State state = shown == QLatin1String("peek") ? State::peek : State::open;
        const double shownAfter = rig.secondsUntil(state);
        QVERIFY(shownAfter >= 0);
        if (shown == QLatin1String("peek")) { // without opening on hover it peeks, and stays while over it
            QCOMPARE(shownAfter, 0.07);
            rig.notch.pointerExited();
            rig.advance(closesAfter - 0.01);
            rig.notch.pointerEntered();
            rig.advance(1);
            QCOMPARE(rig.notch.state(), state);
        }
        rig.notch.setCardShowing(holder == QLatin1String("card"));
        rig.notch.setCardHoldsOpen(holder == QLatin1String("card"));
        rig.notch.setMenuOpen(holder == QLatin1String("menu"));
        rig.notch.setPinnedOpen(holder == QLatin1String("pin"));
        rig.notch.pointerExited();
        if (closesAfter >= 0) {
            QCOMPARE(rig.secondsUntil(State::closed), closesAfter);
            return;
        }
        if (holder == QLatin1String("menu"))
            QCOMPARE(rig.clock.pendingCount(), 0); // nothing to recheck
        rig.advance(0.7);
        if (holder == QLatin1String("card"))
            QCOMPARE(rig.clock.secondsToNext(), 0.4);
        rig.advance(10);
        QCOMPARE(rig.notch.state(), State::open);
        if (holder == QLatin1String("card")) {
            rig.notch.setCardHoldsOpen(false);
            const double took = rig.secondsUntil(State::closed);
            QVERIFY2(took > 0 && took <= 0.4, qPrintable(QString::number(took)));
        }
    }

    // A drag the shelf would take over the notch: a closed notch peeks to show the drop will land, and
    // goes back to what it was when the drag leaves, unless the drop opened it.
    void dragOverTheNotchPeeksUntilItLeaves_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<bool>("dropOpensShelf");
        QTest::addColumn<State>("during");
        QTest::addColumn<State>("after");
        QTest::newRow("closed") << "closed" << false << State::peek << State::closed;
        QTest::newRow("closed, the drop opens the shelf") << "closed" << true << State::peek << State::open;
        QTest::newRow("peeking under the pointer") << "peek" << false << State::peek << State::peek;
        QTest::newRow("open") << "open" << false << State::open << State::open;
    }
    void dragOverTheNotchPeeksUntilItLeaves()
    {
        QFETCH(QString, before);
        QFETCH(bool, dropOpensShelf);
        QFETCH(State, during);
        Rig rig;
        rig.notch.setPages({QStringLiteral("shelf")});
        if (before == QLatin1String("peek")) {
            rig.notch.pointerEntered();
            rig.advance(0.1);
        } else if (before == QLatin1String("open")) {
            rig.notch.clicked();
        }
        QSignalSpy dragOver(&rig.notch, &NotchViewModel::dragOverChanged);
        rig.notch.dragEntered();
        QVERIFY(rig.notch.dragOver());
        QCOMPARE(rig.notch.state(), during);
        rig.advance(2);
        QCOMPARE(rig.notch.state(), during);
        if (dropOpensShelf)
            rig.notch.openPage(QStringLiteral("shelf"));
        rig.notch.dragLeft();
        QVERIFY(!rig.notch.dragOver());
        QCOMPARE(dragOver.size(), 2);
        QTEST(rig.notch.state(), "after");
    }

    // The hover handler said the pointer left, but the pointer is still over the panel (the
    // button under it was replaced): the panel stays, and closes once the pointer has really gone.
    void panelNeverClosesWhileThePointerIsInside_data()
    {
        QTest::addColumn<bool>("byHover");
        QTest::newRow("opened by hover") << true;
        QTest::newRow("opened by a click") << false;
    }

    void panelNeverClosesWhileThePointerIsInside()
    {
        QFETCH(bool, byHover);
        Rig rig;
        rig.prefs.setValue(SettingsKeys::openOnHover, byHover);
        bool reallyInside = true;
        rig.notch.setPointerProbe([&] { return reallyInside; });
        rig.notch.pointerEntered();
        if (!byHover)
            rig.notch.clicked();
        QVERIFY(rig.secondsUntil(State::open) >= 0);
        rig.notch.pointerExited();
        rig.advance(5);
        QCOMPARE(rig.notch.state(), State::open);
        reallyInside = false;
        const double closedAfter = rig.secondsUntil(State::closed);
        QVERIFY2(closedAfter > 0 && closedAfter <= NotchViewModel::closeRecheck,
                 qPrintable(QString::number(closedAfter)));
    }

    void closedNotchWithNothingExpandedSchedulesNothing()
    {
        Rig rig;
        rig.prefs.setValue(SettingsKeys::peekOnHover, false);
        rig.notch.pointerEntered();
        rig.notch.pointerExited();
        QCOMPARE(rig.clock.pendingCount(), 0);
    }

    void activityDetailOpensAfter045AndClosesWhenThePointerLeaves()
    {
        Rig rig;
        rig.prefs.setValue(SettingsKeys::peekOnHover, false);
        rig.notch.setPointerOverDetailActivity(true);
        rig.notch.pointerEntered();
        rig.advance(0.44);
        QVERIFY(!rig.notch.activityDetailOpen());
        rig.advance(0.01);
        QVERIFY(rig.notch.activityDetailOpen());
        rig.notch.pointerExited();
        rig.advance(0.21);
        QVERIFY(rig.notch.activityDetailOpen());
        rig.advance(0.01);
        QVERIFY(!rig.notch.activityDetailOpen());
        QCOMPARE(rig.notch.state(), State::closed);
    }

    void notchThatClosedUnderThePointerDoesNotReopenAtOnce()
    {
        Rig rig;
        rig.prefs.setValue(SettingsKeys::openOnHover, true);
        rig.prefs.setValue(SettingsKeys::peekOnHover, false);
        rig.notch.pointerEntered();
        rig.notch.clicked();
        rig.notch.escape();
        QCOMPARE(rig.notch.state(), State::closed);
        rig.notch.pointerExited(); // the notch shrank from under the pointer
        rig.advance(0.2);
        rig.notch.pointerEntered(); // within the courtesy window
        rig.advance(2);
        QCOMPARE(rig.notch.state(), State::closed);
        rig.notch.pointerExited();
        rig.notch.pointerEntered();
        QVERIFY(rig.secondsUntil(State::open) > 0);
    }

    // The panel that closed after the pointer left (0.7 s, or 0.9 s just after a hover opening)
    // opens again on the next visit, however soon after the close that visit comes.
    void comingBackAfterTheCloseOpensAgain_data()
    {
        QTest::addColumn<double>("awayFor");
        for (double away : {0.5, 0.8, 0.9, 1.0, 1.1, 1.2})
            QTest::addRow("back after %.1f s", away) << away;
    }

    void comingBackAfterTheCloseOpensAgain()
    {
        QFETCH(double, awayFor);
        Rig rig;
        rig.prefs.setValue(SettingsKeys::openOnHover, true);
        rig.notch.pointerEntered();
        QVERIFY(rig.secondsUntil(State::open) > 0);
        rig.notch.pointerExited();
        rig.advance(awayFor);
        rig.notch.pointerEntered();
        QVERIFY2(rig.secondsUntil(State::open, 0.5) >= 0, "the notch did not open on hover");
    }

    void openingAnUnknownPageKeepsThePagerWhereItWas()
    {
        Rig rig;
        rig.notch.openPage(QStringLiteral("agents"));
        QCOMPARE(rig.notch.currentPage(), QStringLiteral("agents"));
        rig.notch.close();
        rig.notch.openPage(QStringLiteral("nowhere"));
        QCOMPARE(rig.notch.state(), State::open);
        QCOMPARE(rig.notch.currentPage(), QStringLiteral("agents"));
    }

    // The open panel grows with its page as far as its display has room for (0: no display known),
    // before the banners.
    void openSize_data()
    {
        QTest::addColumn<double>("need");
        QTest::addColumn<double>("display");
        QTest::addColumn<bool>("meeting");
        QTest::addColumn<bool>("alert");
        QTest::addColumn<double>("height");
        QTest::newRow("module") << 200.0 << 0.0 << false << false << 334.0;
        QTest::newRow("capped without a display") << 900.0 << 0.0 << false << false << 520.0;
        QTest::newRow("capped then banners") << 900.0 << 0.0 << true << true << 614.0;
        QTest::newRow("meeting banner") << 100.0 << 0.0 << true << false << 284.0;
        QTest::newRow("alert banner") << 100.0 << 0.0 << false << true << 278.0;
        QTest::newRow("grows on a tall display") << 500.0 << 1080.0 << false << false << 634.0;
        QTest::newRow("capped at 60% of the display") << 900.0 << 1080.0 << false << false << 648.0;
        QTest::newRow("a small display still shows a usual page")
            << 900.0 << 400.0 << false << false << 334.0;
    }

    void openSize()
    {
        QFETCH(double, need);
        QFETCH(double, display);
        QFETCH(bool, meeting);
        QFETCH(bool, alert);
        QFETCH(double, height);
        Rig rig;
        rig.notch.setDisplayHeight(display);
        rig.notch.setPageNeed(need);
        rig.notch.setMeetingBannerShowing(meeting);
        rig.notch.setAlertBannerShowing(alert);
        QCOMPARE(rig.notch.currentOpenSize(), QSizeF(760, height));
    }

    // A page's need from what its content wants inside the panel's tabs and margins: all of it
    // shows, and a page with little (or nothing said) keeps the usual size.
    void pageNeedFollowsTheContent_data()
    {
        QTest::addColumn<double>("content");
        QTest::addColumn<double>("chrome");
        QTest::addColumn<double>("panelHeight");
        QTest::newRow("nothing said") << 0.0 << 86.0 << 334.0;
        QTest::newRow("less than the usual page") << 180.0 << 86.0 << 334.0;
        QTest::newRow("a third card") << 420.0 << 86.0 << 506.0;
    }

    void pageNeedFollowsTheContent()
    {
        QFETCH(double, content);
        QFETCH(double, chrome);
        QFETCH(double, panelHeight);
        Rig rig;
        rig.notch.setDisplayHeight(1080);
        QSignalSpy moved(&rig.notch, &NotchViewModel::shownSizeChanged);
        rig.notch.openPage(QStringLiteral("agents"));
        rig.notch.setPageNeed(rig.notch.pageNeedFor(content, chrome));
        QCOMPARE(rig.notch.shownSize(), QSizeF(760, panelHeight));
        // The page's content fits the panel's body exactly when it is below the limit.
        if (panelHeight > NotchLayout::modulePanelHeight(NotchLayout::defaultPageNeed))
            QCOMPARE(panelHeight - chrome, content);
        QVERIFY(!moved.isEmpty());
    }

    // The shape's size in each state: the closed notch never smaller than Norva's own, the peek
    // a little larger than the closed notch, and the open panel whatever the face asked for.
    void shownSizeFollowsTheState_data()
    {
        QTest::addColumn<QString>("state");
        QTest::addColumn<QSizeF>("face");
        QTest::addColumn<QSizeF>("shown");
        QTest::newRow("closed, empty face") << "closed" << QSizeF(0, 0) << QSizeF(190, 32);
        QTest::newRow("closed, wide face") << "closed" << QSizeF(262.5, 32) << QSizeF(262.5, 32);
        QTest::newRow("closed, detail open") << "closed" << QSizeF(240, 70) << QSizeF(240, 70);
        QTest::newRow("peek, empty face") << "peek" << QSizeF(0, 0) << QSizeF(238, 48);
        QTest::newRow("peek, wide face") << "peek" << QSizeF(262, 32) << QSizeF(310, 48);
        QTest::newRow("open") << "open" << QSizeF(262, 32) << QSizeF(760, 334);
    }
    void shownSizeFollowsTheState()
    {
        QFETCH(QString, state);
        QFETCH(QSizeF, face);
        Rig rig;
        QSignalSpy moved(&rig.notch, &NotchViewModel::shownSizeChanged);
        rig.notch.setFaceSize(face);
        if (state == QLatin1String("peek"))
            rig.notch.peek();
        else if (state == QLatin1String("open"))
            rig.notch.openPage(QStringLiteral("music"));
        QCOMPARE(rig.notch.stateName(), state);
        QTEST(rig.notch.shownSize(), "shown");
        QVERIFY(!moved.isEmpty());
    }

    // The window holds the shape and its margin: it grows at once, shrinks only once the shape has
    // settled, and stays even in width so it centres exactly.
    void windowSizeHoldsTheShape_data()
    {
        QTest::addColumn<QSizeF>("target");
        QTest::addColumn<QSizeF>("shape");
        QTest::addColumn<bool>("moving");
        QTest::addColumn<QSize>("current");
        QTest::addColumn<QSize>("window");
        QTest::newRow("closed at rest")
            << QSizeF(190, 32) << QSizeF(190, 32) << false << QSize(230, 52) << QSize(230, 52);
        QTest::newRow("odd width rounds up to even")
            << QSizeF(192.4, 32.5) << QSizeF(192.4, 32.5) << false << QSize() << QSize(234, 53);
        QTest::newRow("opening grows at once")
            << QSizeF(760, 334) << QSizeF(190, 32) << true << QSize(230, 52) << QSize(800, 354);
        QTest::newRow("closing keeps the room while moving")
            << QSizeF(190, 32) << QSizeF(500, 200) << true << QSize(800, 354) << QSize(800, 354);
        QTest::newRow("closing shrinks once settled")
            << QSizeF(190, 32) << QSizeF(190, 32) << false << QSize(800, 354) << QSize(230, 52);
    }
    void windowSizeHoldsTheShape()
    {
        QFETCH(QSizeF, target);
        QFETCH(QSizeF, shape);
        QFETCH(bool, moving);
        QFETCH(QSize, current);
        QTEST(NotchLayout::windowSize(target, shape, moving, current), "window");
    }

    void layoutInputsOutOfRangeAreCorrectedAndLogged()
    {
        LogCapture log;
        QCOMPARE(NotchLayout::stageHeight(2), 176.0);
        QCOMPARE(NotchLayout::stageHeight(5), 268.0);
        QCOMPARE(NotchLayout::stageHeight(0), 84.0);
        QCOMPARE(NotchLayout::panelHeight(NotchLayout::stageHeight(1)), 182.0);
        QCOMPARE(NotchLayout::panelHeight(-4), 98.0);
        QCOMPARE(NotchLayout::modulePanelHeight(-1), 134.0);
        QCOMPARE(log.lines(),
                 QStringList(
                     {QStringLiteral("Norva: DS.Layout.stageHeight got 5 cells, outside 1...3; clamped to 3"),
                      QStringLiteral("Norva: DS.Layout.stageHeight got 0 cells, outside 1...3; clamped to 1"),
                      QStringLiteral("Norva: DS.Layout.panelHeight(stage:) got a negative stage height (-4); "
                                     "treating it as 0"),
                      QStringLiteral("Norva: DS.Layout.modulePanelHeight got a negative need (-1); treating "
                                     "it as 0")}));
    }

    void hoverOpenPlaysTheHapticOnlyWhenOn()
    {
        Rig rig;
        int played = 0;
        rig.notch.setHapticPlayer([&] { ++played; });
        rig.prefs.setValue(SettingsKeys::openOnHover, true);
        rig.notch.pointerEntered();
        rig.advance(1);
        QCOMPARE(played, 1);
        rig.notch.close();
        rig.notch.clicked();
        QCOMPARE(played, 1); // a click is felt already
        rig.notch.close();
        rig.prefs.setValue(SettingsKeys::hoverHaptics, false);
        rig.notch.pointerExited();
        rig.advance(1);
        rig.notch.pointerEntered();
        rig.advance(1);
        QCOMPARE(rig.notch.state(), State::open);
        QCOMPARE(played, 1);
    }

    void destroyedViewModelEndsItsTimersSilently()
    {
        ManualClock clock;
        MemoryPreferences prefs;
        SettingsStore settings(prefs);
        prefs.setValue(SettingsKeys::openOnHover, true);
        {
            NotchViewModel notch(clock, settings);
            notch.pointerEntered();
        }
        clock.advance(Seconds(2)); // would crash if a job still pointed at the dead view model
        QCOMPARE(clock.pendingCount(), 0);
    }
};

NORVA_TEST(NotchViewModelTest)
#include "tst_NotchViewModel.moc"
