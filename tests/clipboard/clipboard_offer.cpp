// Test helper: puts several targets on the X11 clipboard at once (xclip offers one per run), or
// shows a window under a program name for the front-window tests. Runs until it is killed.
// Usage: clipboard_offer [--app Name] [format=value ...]
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QWindow>

#include <cstdio>

int main(int argc, char* argv[])
{
    QGuiApplication app(argc, argv);
    QStringList arguments = app.arguments().mid(1);
    QWindow window;
    const qsizetype named = arguments.indexOf(QStringLiteral("--app"));
    if (named >= 0 && named + 1 < arguments.size()) {
        QGuiApplication::setApplicationName(arguments.at(named + 1));
        arguments.remove(named, 2);
        window.resize(40, 40);
        window.show();
        std::printf("window %llu\n", static_cast<unsigned long long>(window.winId()));
    }
    if (!arguments.isEmpty()) {
        auto* content = new QMimeData;
        for (const QString& pair : arguments) {
            const qsizetype at = pair.indexOf(QLatin1Char('='));
            content->setData(pair.left(at), pair.mid(at + 1).toUtf8());
        }
        QGuiApplication::clipboard()->setMimeData(content);
        std::printf("offered\n");
    }
    std::fflush(stdout);
    return app.exec();
}
