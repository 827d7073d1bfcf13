#include "TestMain.h"

#include "notch/WindowSystemChoice.h"

#include <QtTest>

using namespace norva;

Q_DECLARE_METATYPE(norva::DrawingPath)

class WindowSystemChoiceTest : public QObject {
    Q_OBJECT
private slots:
    void choosesThePlatformFromTheSession_data()
    {
        QTest::addColumn<QString>("waylandDisplay");
        QTest::addColumn<QString>("chosenPlatform");
        QTest::addColumn<bool>("xDisplayAnswers");
        QTest::addColumn<bool>("notchLayerOffered");
        QTest::addColumn<QByteArray>("platform");
        QTest::addColumn<QString>("logLine");
        const QString xwayland =
            QStringLiteral("Norva: drawing through XWayland (this desktop offers no layer for the notch)");
        const QString layer =
            QStringLiteral("Norva: drawing on this desktop's layer for the notch (wlr-layer-shell)");
        QTest::newRow("X11 desktop: Qt's own choice")
            << "" << QString() << true << false << QByteArray() << "";
        QTest::newRow("no desktop at all") << "" << QString() << false << false << QByteArray() << "";
        QTest::newRow("Wayland with XWayland: through XWayland")
            << "wayland-0" << QString() << true << false << QByteArray("xcb") << xwayland;
        QTest::newRow("Wayland with a layer: the layer first")
            << "wayland-0" << QString() << true << true << QByteArray("wayland") << layer;
        QTest::newRow("Wayland with a layer, no XWayland")
            << "wayland-1" << QString() << false << true << QByteArray("wayland") << layer;
        QTest::newRow("Wayland alone: Qt's own choice, told after start")
            << "wayland-0" << QString() << false << false << QByteArray() << "";
        QTest::newRow("the person chose wayland")
            << "wayland-0" << QStringLiteral("wayland") << true << false << QByteArray()
            << "Norva: drawing through the platform you chose (wayland)";
        QTest::newRow("the person chose offscreen on X11")
            << "" << QStringLiteral("offscreen") << true << false << QByteArray()
            << "Norva: drawing through the platform you chose (offscreen)";
    }

    void choosesThePlatformFromTheSession()
    {
        QFETCH(QString, waylandDisplay);
        QFETCH(QString, chosenPlatform);
        QFETCH(bool, xDisplayAnswers);
        QFETCH(bool, notchLayerOffered);
        const auto decision =
            WindowSystemChoice::decide({waylandDisplay, chosenPlatform, xDisplayAnswers, notchLayerOffered});
        QTEST(decision.platform, "platform");
        QTEST(decision.logLine, "logLine");
    }

    void readsThePlatformThePersonChose_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("environment");
        QTest::addColumn<QString>("chosen");
        QTest::newRow("nothing chosen") << QStringList{"norva", "--demo"} << "" << QString();
        QTest::newRow("the environment") << QStringList{"norva"} << "wayland" << QStringLiteral("wayland");
        QTest::newRow("the argument wins")
            << QStringList{"norva", "-platform", "xcb"} << "wayland" << QStringLiteral("xcb");
        QTest::newRow("double dash") << QStringList{"norva", "--platform", "offscreen"} << ""
                                     << QStringLiteral("offscreen");
        QTest::newRow("the last argument counts")
            << QStringList{"norva", "-platform", "xcb", "-platform", "wayland"} << ""
            << QStringLiteral("wayland");
        QTest::newRow("no name after it") << QStringList{"norva", "-platform"} << "" << QString();
        QTest::newRow("a page named platform")
            << QStringList{"norva", "--open-page", "-platform"} << "" << QString();
    }

    void readsThePlatformThePersonChose()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, environment);
        QTEST(WindowSystemChoice::chosenPlatform(arguments, environment), "chosen");
    }

    void namesThePathTaken_data()
    {
        QTest::addColumn<QString>("platformName");
        QTest::addColumn<QString>("waylandDisplay");
        QTest::addColumn<bool>("layerInUse");
        QTest::addColumn<DrawingPath>("path");
        QTest::addColumn<bool>("limitsShown");
        QTest::addColumn<bool>("limitsLogged");
        QTest::newRow("X11") << "xcb" << QString() << false << DrawingPath::x11 << false << false;
        QTest::newRow("XWayland") << "xcb" << QStringLiteral("wayland-0") << false << DrawingPath::xwayland
                                  << true << false;
        QTest::newRow("layer") << "wayland" << QStringLiteral("wayland-0") << true << DrawingPath::notchLayer
                               << true << false;
        QTest::newRow("Wayland window") << "wayland" << QStringLiteral("wayland-0") << false
                                        << DrawingPath::waylandWindow << true << true;
        QTest::newRow("Wayland with EGL named") << "wayland-egl" << QStringLiteral("wayland-0") << false
                                                << DrawingPath::waylandWindow << true << true;
        QTest::newRow("offscreen") << "offscreen" << QStringLiteral("wayland-0") << false
                                   << DrawingPath::other << false << false;
    }

    void namesThePathTaken()
    {
        QFETCH(QString, platformName);
        QFETCH(QString, waylandDisplay);
        QFETCH(bool, layerInUse);
        const DrawingPath taken =
            WindowSystemChoice::pathTaken(platformName, {waylandDisplay, {}, false, false}, layerInUse);
        QTEST(taken, "path");
        QTEST(!WindowSystemChoice::limitsText(taken).isEmpty(), "limitsShown");
        QTEST(!WindowSystemChoice::limitsLogLine(taken).isEmpty(), "limitsLogged");
    }
};

NORVA_TEST(WindowSystemChoiceTest)
#include "tst_WindowSystemChoice.moc"
