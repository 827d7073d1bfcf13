// The floor for Norva's footprint benchmark: one frameless 760 x 300 Qt Quick window with a
// Rectangle and a Text, built with the same Qt and flags, doing nothing else. With
// --exit-after-first-frame it prints the time to its first drawn frame and leaves, as Norva does.
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <cstdio>
#include <cstring>

namespace {

const char* const kWindow = R"(
import QtQuick
Window {
    width: 760; height: 300; visible: true; color: "transparent"
    flags: Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    Rectangle {
        anchors.fill: parent; radius: 16; color: "black"
        Text { anchors.centerIn: parent; text: "A bare Qt Quick window"; color: "white" }
    }
}
)";

} // namespace

int main(int argc, char* argv[])
{
    QElapsedTimer sinceStart;
    sinceStart.start();
    QGuiApplication app(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData(kWindow);
    if (engine.rootObjects().isEmpty())
        return 1;
    if (argc > 1 && std::strcmp(argv[1], "--exit-after-first-frame") == 0) {
        auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().first());
        QObject::connect(
            window, &QQuickWindow::frameSwapped, &app,
            [&sinceStart] {
                std::printf("first frame after %lld ms\n", static_cast<long long>(sinceStart.elapsed()));
                std::fflush(stdout);
                QCoreApplication::exit(0);
            },
            Qt::SingleShotConnection);
    }
    return QGuiApplication::exec();
}
