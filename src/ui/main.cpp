#include "app/Log.h"
#include "app/Paths.h"
#include "notch/SessionPlatform.h"
#include "notch/WindowSystemChoice.h"
#include "ui/CommandDoor.h"
#include "ui/NorvaApp.h"
#include "ui/QuitOnSignals.h"
#include "ui/SingleInstance.h"

#include <QCommandLineParser>
#include <QGuiApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    // Chosen before Qt picks a platform of its own: on a Wayland desktop without a layer for the
    // notch, only XWayland lets the notch sit at the top centre above other windows.
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const norva::SessionEnvironment session = norva::Platform::readSessionEnvironment(arguments);
    const norva::WindowSystemChoice::Decision drawing = norva::WindowSystemChoice::decide(session);
    if (!drawing.platform.isEmpty())
        qputenv("QT_QPA_PLATFORM", drawing.platform);
    QGuiApplication app(argc, argv);
    // Programs Norva starts (players, terminals, hooks) make their own choice, as before.
    if (!drawing.platform.isEmpty())
        qunsetenv("QT_QPA_PLATFORM");
    QGuiApplication::setApplicationName(QStringLiteral("Norva"));
    QGuiApplication::setApplicationVersion(QStringLiteral(NORVA_VERSION));
    QGuiApplication::setQuitOnLastWindowClosed(false);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Norva turns the notch at the top of the screen into a live surface."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption demo(QStringLiteral("demo"),
                                  QStringLiteral("Show sample live activities; nothing of your own data is touched."));
    const QCommandLineOption firstFrame(QStringLiteral("exit-after-first-frame"),
                                        QStringLiteral("Print the time to the first drawn frame and exit (benchmark)."));
    const QCommandLineOption openPage(QStringLiteral("open-page"),
                                      QStringLiteral("Start with the notch open on this page (music, agents, ...)."),
                                      QStringLiteral("page"));
    const QCommandLineOption demoScene(QStringLiteral("demo-scene"),
                                       QStringLiteral("Which samples the demo shows: all, one, two, pinned or three."),
                                       QStringLiteral("scene"), QStringLiteral("all"));
    const QCommandLineOption jot(QStringLiteral("jot"),
                                 QStringLiteral("Open the jot sheet (in the running Norva, or in this one as it starts)."));
    parser.addOption(jot);
    parser.addOption(demo);
    parser.addOption(demoScene);
    parser.addOption(firstFrame);
    parser.addOption(openPage);
    parser.process(app);

    norva::Paths::ensureFolder(norva::Paths::stateFolder());
    norva::SingleInstance instance(norva::Paths::stateFolder() + QStringLiteral("/norva.lock"));
    const QString door = norva::Paths::stateFolder() + QStringLiteral("/norva.door");
    if (!instance.isFirst() && parser.isSet(jot) && norva::CommandDoor::send(door, norva::CommandDoor::jotWord))
        return 0;
    if (!instance.isFirst()) {
        std::fprintf(stderr, "Norva is already running.\n");
        norva::logLine(QStringLiteral("Norva: another Norva is already running (") + instance.lockPath() +
                       QStringLiteral(" is held); this one exits"));
        return 0;
    }
    norva::setLogFile(norva::Paths::stateFolder() + QStringLiteral("/norva.log"));
    // Declared before the app, so it runs after the app's own last lines: a streak of repeated
    // lines still open at quit gets its count.
    struct LogFileCloser {
        ~LogFileCloser() { norva::closeLogFile(); }
    } logFileCloser;
    const norva::QuitOnSignals quitOnSignals;
    if (!drawing.logLine.isEmpty())
        norva::logLine(drawing.logLine);

    norva::NorvaApp norvaApp({.demo = parser.isSet(demo) || parser.isSet(demoScene),
                              .exitAfterFirstFrame = parser.isSet(firstFrame),
                              .openPage = parser.value(openPage),
                              .demoScene = parser.value(demoScene),
                              .session = session,
                              .jot = parser.isSet(jot)});
    if (!norvaApp.start())
        return 1;
    return QGuiApplication::exec();
}
