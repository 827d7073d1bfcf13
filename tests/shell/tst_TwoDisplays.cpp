#include "NorvaProcess.h"
#include "PrivateXServer.h"
#include "TempHome.h"
#include "TestMain.h"

#include <QProcess>
#include <QStandardPaths>
#include <QtTest>

#include <xcb/xcb.h>

using norva::test::TempHome;
using norva::test::waitForOutput;

namespace {

// An X server with two screens, as a second monitor on its own X screen gives. Qt names both
// "screen", which once put every notch on the second one.
class TwoScreenServer : public norva::test::PrivateXServer {
public:
    TwoScreenServer() : PrivateXServer({QStringLiteral("1600x900x24"), QStringLiteral("1280x800x24")}) {}

    // How many notch windows are shown on each X screen: mapped windows called "Norva" that are
    // larger than Qt's 1 × 1 helper window.
    QList<int> notchesPerScreen() const
    {
        QList<int> counts;
        xcb_connection_t* connection = xcb_connect(display().toLocal8Bit().constData(), nullptr);
        if (xcb_connection_has_error(connection)) {
            xcb_disconnect(connection);
            return counts;
        }
        for (auto roots = xcb_setup_roots_iterator(xcb_get_setup(connection)); roots.rem;
             xcb_screen_next(&roots)) {
            int count = 0;
            xcb_query_tree_reply_t* tree =
                xcb_query_tree_reply(connection, xcb_query_tree(connection, roots.data->root), nullptr);
            const xcb_window_t* children = tree ? xcb_query_tree_children(tree) : nullptr;
            for (int i = 0; tree && i < xcb_query_tree_children_length(tree); ++i)
                count += isShownNotch(connection, children[i]) ? 1 : 0;
            free(tree);
            counts << count;
        }
        xcb_disconnect(connection);
        return counts;
    }

private:
    static bool isShownNotch(xcb_connection_t* connection, xcb_window_t window)
    {
        xcb_get_window_attributes_reply_t* attributes = xcb_get_window_attributes_reply(
            connection, xcb_get_window_attributes(connection, window), nullptr);
        const bool viewable = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        free(attributes);
        xcb_get_geometry_reply_t* geometry =
            xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr);
        const bool large = geometry && geometry->width > 1;
        free(geometry);
        xcb_get_property_reply_t* name = xcb_get_property_reply(
            connection, xcb_get_property(connection, 0, window, XCB_ATOM_WM_NAME, XCB_ATOM_ANY, 0, 64),
            nullptr);
        const bool norva = name && QByteArray(static_cast<const char*>(xcb_get_property_value(name)),
                                              xcb_get_property_value_length(name)) == "Norva";
        free(name);
        return viewable && large && norva;
    }
};

} // namespace

class TwoDisplaysTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty())
            QSKIP("needs Xvfb");
    }

    void eachChoiceFindsItsScreen_data()
    {
        QTest::addColumn<QString>("choice");
        QTest::addColumn<QByteArray>("logged");
        QTest::addColumn<QList<int>>("notches");
        QTest::newRow("the primary by default")
            << QString() << QByteArray("Norva: the notch shows on screen (1600 × 900)\n") << QList<int>{1, 0};
        QTest::newRow("all, one on each")
            << QStringLiteral("all")
            << QByteArray("Norva: the notch shows on screen (1600 × 900), screen (1280 × 800)\n")
            << QList<int>{1, 1};
        QTest::newRow("the second, chosen")
            << QStringLiteral("display:screen@1280x800+0,0|screen (1280 × 800)")
            << QByteArray("Norva: the notch shows on screen (1280 × 800)\n") << QList<int>{0, 1};
    }

    void eachChoiceFindsItsScreen()
    {
        QFETCH(QString, choice);
        QFETCH(QByteArray, logged);
        QFETCH(QList<int>, notches);
        TwoScreenServer server;
        QVERIFY(!server.display().isEmpty());
        TempHome home;
        if (!choice.isEmpty())
            home.write(QStringLiteral(".config/Norva/preferences.toml"),
                       QStringLiteral("\"displayChoice.v1\" = \"%1\"\n").arg(choice).toUtf8());
        auto norva = norva::test::startNorva(QStringLiteral(NORVA_EXECUTABLE),
                                             server.onThisDisplay(norva::test::norvaEnvironment(home)));
        QByteArray seen;
        QVERIFY2(waitForOutput(*norva, logged, seen), seen.constData());
        QTRY_COMPARE_WITH_TIMEOUT(server.notchesPerScreen(), notches, 10000);
        norva::test::stop(*norva);
    }
};

NORVA_TEST(TwoDisplaysTest)
#include "tst_TwoDisplays.moc"
