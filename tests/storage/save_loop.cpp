// Saves one of two large lists, in turn, forever, through the stored list file that the clipboard
// history and the shelf save through. The test kills it at a random moment and reads the file.
// Usage: storage_save_loop <path> clipboard|shelf <count>
#include "app/Clock.h"
#include "clipboard/ClipboardItem.h"
#include "shelf/ShelfItem.h"
#include "storage/StoredList.h"

#include <QCoreApplication>
#include <QJsonArray>

#include <cstdio>

using namespace norva;

namespace {

const QUuid kNamespace = QUuid::fromString(QStringLiteral("{3d1f6a52-7f8e-4c47-9d3a-0b8f1a2c5e61}"));

QJsonArray list(const QString& which, const QString& round, int count)
{
    QJsonArray array;
    const QDateTime date(QDate(2026, 11, 18), QTime(10, 0), Qt::UTC);
    for (int i = 0; i < count; ++i) {
        const QString name = round + QLatin1Char('-') + QString::number(i);
        const QUuid id = QUuid::createUuidV5(kNamespace, name);
        if (which == QLatin1String("shelf")) {
            array.append(ShelfItem{id, QStringLiteral("/tmp/") + name + QStringLiteral(".png"), date, i % 7 == 0}.toJson());
        } else {
            ClipboardItem clip;
            clip.id = id;
            clip.date = date.addSecs(i);
            clip.text = name + QStringLiteral(" ") + QString(200, QLatin1Char('x'));
            clip.contentHash = qint64(i);
            array.append(clip.toJson());
        }
    }
    return array;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (argc < 4)
        return 2;
    const QString path = QString::fromLocal8Bit(argv[1]);
    const QString which = QString::fromLocal8Bit(argv[2]);
    const int count = QString::fromLocal8Bit(argv[3]).toInt();
    const QJsonArray old = list(which, QStringLiteral("old"), count);
    const QJsonArray fresh = list(which, QStringLiteral("new"), count);
    bool useNew = false;
    StoredList stored(path, QStringLiteral("Norva test"), systemClock());
    stored.setSnapshot([&] { return useNew ? fresh : old; });
    stored.saveNow();
    std::fputs("ready\n", stdout);
    std::fflush(stdout);
    for (;;) {
        useNew = !useNew;
        stored.saveNow();
    }
}
