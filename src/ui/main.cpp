#include "app/Log.h"
#include "app/Paths.h"
#include "notch/SessionPlatform.h"
#include "notch/WindowSystemChoice.h"
#include "ui/CommandDoor.h"
#include "ui/NorvaApp.h"
#include "ui/QuitOnSignals.h"
#include "ui/SingleInstance.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QGuiApplication>

#include <cstdio>

namespace {

// Norva's command line, set up the same way for the early answer and for the real start.
struct CommandLine {
    QCommandLineParser parser;
    const QCommandLineOption demo{
        QStringLiteral("demo"),
        QStringLiteral("Show sample live activities; nothing of your own data is touched.")};
    const QCommandLineOption firstFrame{
        QStringLiteral("exit-after-first-frame"),
        QStringLiteral("Print the time to the first drawn frame and exit (benchmark).")};
    const QCommandLineOption openPage{
        QStringLiteral("open-page"),
        QStringLiteral("Start with the notch open on this page (music, agents, ...)."),
        QStringLiteral("page")};
    const QCommandLineOption demoScene{
        QStringLiteral("demo-scene"),
        QStringLiteral("Which samples the demo shows: all, one, two, three or prompts."),
        QStringLiteral("scene"), QStringLiteral("all")};
    const QCommandLineOption jot{
        QStringLiteral("jot"),
        QStringLiteral("Open the jot sheet (in the running Norva, or in this one as it starts).")};
    const QCommandLineOption settings{
        QStringLiteral("settings"),
        QStringLiteral("Open the settings window (in the running Norva, or in this one as it starts).")};
    const QCommandLineOption introStep{
        QStringLiteral("intro-step"),
        QStringLiteral("Start with the notch open on this step of the introduction (0-4)."),
        QStringLiteral("step")};
    const QCommandLineOption open{
        QStringLiteral("open"),
        QStringLiteral("Open the notch, on the page named after it if one is (in the running "
                       "Norva, or in this one as it starts).")};

    CommandLine()
    {
        parser.setApplicationDescription(
            QStringLiteral("Norva turns the notch at the top of the screen into a live surface."));
        parser.addHelpOption();
        parser.addVersionOption();
        parser.addOptions({jot, open, settings, demo, demoScene, firstFrame, openPage, introStep});
        parser.addPositionalArgument(QStringLiteral("page"),
                                     QStringLiteral("The page --open opens (music, notes, ...)."),
                                     QStringLiteral("[page]"));
    }
};

void nameTheApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("Norva"));
    QCoreApplication::setApplicationVersion(QStringLiteral(NORVA_VERSION));
}

// Help and version are answered before any display is opened, so they work over ssh, in a
// console or in a script that has no display.
bool asksOnlyForWords(int argc, char* argv[])
{
    for (int i = 1; i < argc; ++i) {
        const QByteArray word(argv[i]);
        if (word == "-h" || word == "--help" || word == "--help-all" || word == "-v" || word == "--version" ||
            word == "-?")
            return true;
    }
    return false;
}

} // namespace

int main(int argc, char* argv[])
{
    if (asksOnlyForWords(argc, argv)) {
        QCoreApplication words(argc, argv);
        nameTheApplication();
        CommandLine commandLine;
        commandLine.parser.process(words); // prints the words asked for and exits
        return 0;
    }
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
    nameTheApplication();
    QGuiApplication::setQuitOnLastWindowClosed(false);

    CommandLine commandLine;
    QCommandLineParser& parser = commandLine.parser;
    parser.process(app);

    norva::Paths::ensureFolder(norva::Paths::stateFolder());
    norva::SingleInstance instance(norva::Paths::stateFolder() + QStringLiteral("/norva.lock"));
    const QString door = norva::Paths::stateFolder() + QStringLiteral("/norva.door");
    const QString pageToOpen = parser.positionalArguments().value(0);
    if (!instance.isFirst() && parser.isSet(commandLine.jot) &&
        norva::CommandDoor::send(door, norva::CommandDoor::jotWord))
        return 0;
    if (!instance.isFirst() && parser.isSet(commandLine.settings) &&
        norva::CommandDoor::send(door, norva::CommandDoor::settingsWord))
        return 0;
    const QByteArray openWord = pageToOpen.isEmpty()
                                    ? norva::CommandDoor::openWord
                                    : norva::CommandDoor::openWord + ' ' + pageToOpen.toUtf8();
    if (!instance.isFirst() && parser.isSet(commandLine.open) && norva::CommandDoor::send(door, openWord))
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

    norva::NorvaApp norvaApp(
        {.demo = parser.isSet(commandLine.demo) || parser.isSet(commandLine.demoScene),
         .exitAfterFirstFrame = parser.isSet(commandLine.firstFrame),
         .openPage = parser.value(commandLine.openPage),
         .demoScene = parser.value(commandLine.demoScene),
         .session = session,
         .jot = parser.isSet(commandLine.jot),
         .settings = parser.isSet(commandLine.settings),
         .introStep = parser.isSet(commandLine.introStep)
                          ? std::optional<int>(parser.value(commandLine.introStep).toInt())
                          : std::nullopt,
         .open = parser.isSet(commandLine.open),
         .pageToOpen = pageToOpen});
    if (!norvaApp.start())
        return 1;
    return QGuiApplication::exec();
}
