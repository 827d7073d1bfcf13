#include "FakeClipboard.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestMain.h"

#include "app/SettingsStore.h"
#include "shelf/ShelfActions.h"
#include "shelf/ShelfDesk.h"
#include "shelf/ShelfManager.h"
#include "shelf/ZipWriter.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QImageWriter>
#include <QMimeData>
#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>

using namespace norva;
using namespace norva::test;

namespace {

QString unzip(const QStringList& arguments, int* status = nullptr)
{
    QProcess process;
    process.start(QStringLiteral("unzip"), arguments);
    process.waitForFinished(30000);
    if (status)
        *status = process.exitCode();
    return QString::fromUtf8(process.readAllStandardOutput());
}

QByteArray picture(const char* format, bool alpha = false)
{
    QImage image(7, 3, alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    image.fill(alpha ? QColor(255, 0, 0, 0) : QColor(Qt::red));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// What an action gave back, as text: its failure's reason, or "" when it worked.
template <typename T> QString why(const ShelfActions::Result<T>& result)
{
    const auto* failure = std::get_if<ShelfActions::Failure>(&result);
    return failure ? failure->why : QString();
}

} // namespace

class ShelfActionsTest : public QObject {
    Q_OBJECT

private slots:
    void crcMatchesTheZipCheckValue()
    {
        QCOMPARE(ZipWriter::crc32("123456789", 9), 0xCBF43926u);
        // Fed in pieces, the same.
        const quint32 half = ZipWriter::crc32("12345", 5);
        QCOMPARE(ZipWriter::crc32("6789", 4, half), 0xCBF43926u);
    }

    void zipOpensWithUnzipAndHoldsEveryFileWhole()
    {
        TempHome home;
        QByteArray noise(200000, '\0');
        QRandomGenerator random(7);
        for (char& byte : noise)
            byte = char(random.bounded(256));
        const QString folder = home.file(QStringLiteral("Project"));
        home.write(QStringLiteral("Project/readme.md"), QByteArray("# Norva\n").repeated(500));
        home.write(QStringLiteral("Project/noise.bin"), noise);
        home.write(QStringLiteral("Project/empty.txt"), QByteArray());
        home.write(QStringLiteral("Project/Ünïcödé naïve.txt"), "utf-8 names");
        home.write(QStringLiteral("Project/src/deep/main.cpp"), "int main() {}\n");
        QDir().mkpath(home.file(QStringLiteral("Project/empty-folder")));
        const QString single = home.write(QStringLiteral("notes.txt"), "just one");
        const QString archive = home.file(QStringLiteral("out/Archive.zip"));
        QDir().mkpath(home.file(QStringLiteral("out")));

        QCOMPARE(ZipWriter::write({folder, single}, archive), std::optional<QString>());
        int status = -1;
        const QString test = unzip({QStringLiteral("-t"), archive}, &status);
        QVERIFY2(status == 0, qPrintable(test));
        QStringList names =
            unzip({QStringLiteral("-Z1"), archive}).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        names.sort();
        QCOMPARE(names,
                 (QStringList{"Project/", "Project/empty-folder/", "Project/empty.txt", "Project/noise.bin",
                              "Project/readme.md", "Project/src/", "Project/src/deep/",
                              "Project/src/deep/main.cpp", "Project/Ünïcödé naïve.txt", "notes.txt"}));
        const QString into = home.file(QStringLiteral("unzipped"));
        unzip({QStringLiteral("-q"), archive, QStringLiteral("-d"), into}, &status);
        QCOMPARE(status, 0);
        QCOMPARE(TempHome::read(into + QStringLiteral("/Project/noise.bin")), noise);
        QCOMPARE(TempHome::read(into + QStringLiteral("/Project/readme.md")),
                 QByteArray("# Norva\n").repeated(500));
        QCOMPARE(TempHome::read(into + QStringLiteral("/Project/Ünïcödé naïve.txt")),
                 QByteArray("utf-8 names"));
        QCOMPARE(TempHome::read(into + QStringLiteral("/notes.txt")), QByteArray("just one"));
        QVERIFY(QFileInfo(into + QStringLiteral("/Project/empty-folder")).isDir());
        // Text that compresses well is deflated: the archive is smaller than what it holds.
        QVERIFY(QFileInfo(archive).size() < noise.size() + 4000 + 20000);
        QVERIFY(unzip({QStringLiteral("-v"), archive}).contains(QStringLiteral("Defl:N")));
    }

    void largeFilesAreStoredWithoutBeingReadWhole()
    {
        TempHome home;
        const qint64 size = ZipWriter::kDeflateLimit + 1024;
        const QString big = home.file(QStringLiteral("big.bin"));
        QFile file(big);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QByteArray block(1 << 20, 'z');
        for (qint64 written = 0; written < size; written += block.size())
            file.write(block.left(int(std::min<qint64>(block.size(), size - written))));
        file.close();
        const QString archive = home.file(QStringLiteral("big.zip"));
        QCOMPARE(ZipWriter::write({big}, archive), std::optional<QString>());
        int status = -1;
        unzip({QStringLiteral("-t"), archive}, &status);
        QCOMPARE(status, 0);
        QVERIFY(unzip({QStringLiteral("-v"), archive}).contains(QStringLiteral("Stored")));
    }

    void zipOfSomethingGoneIsRefusedAndLeavesNoArchive()
    {
        TempHome home;
        const QString archive = home.file(QStringLiteral("gone.zip"));
        QCOMPARE(ZipWriter::write({home.file(QStringLiteral("nothing-here.txt"))}, archive),
                 std::optional<QString>(QStringLiteral("nothing-here.txt is gone")));
        QVERIFY(!QFile::exists(archive));
    }

    void dittoRunsWithItsArgumentsAndItsFailuresAreSaid_data()
    {
        QTest::addColumn<bool>("started");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("failure");
        QTest::newRow("zipped") << true << 0 << QString();
        QTest::newRow("would not start") << false << 0 << "ditto would not start: No such file or directory";
        QTest::newRow("stopped") << true << 3 << "ditto stopped with status 3";
    }
    void dittoRunsWithItsArgumentsAndItsFailuresAreSaid()
    {
        QFETCH(bool, started);
        QFETCH(int, status);
        QFETCH(QString, failure);
        QString program;
        QStringList arguments;
        const auto runner = [&](const QString& p, const QStringList& a) {
            program = p;
            arguments = a;
            return ShelfActions::ProcessRun{started, status, QStringLiteral("No such file or directory")};
        };
        const auto result = ShelfActions::compress({QStringLiteral("/Users/ana/Report")},
                                                   QStringLiteral("/Users/ana/Report.zip"), runner);
        QCOMPARE(program, QStringLiteral("/usr/bin/ditto"));
        QCOMPARE(arguments, (QStringList{"-c", "-k", "--sequesterRsrc", "--keepParent", "/Users/ana/Report",
                                         "/Users/ana/Report.zip"}));
        QCOMPARE(why(result), failure);
    }

    void convert_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("failure");
        QTest::newRow("png to jpeg") << picture("PNG", true) << "JPEG" << QString();
        QTest::newRow("jpeg to png") << picture("JPEG") << "PNG" << QString();
        // TIFF and HEIC writers are plug-ins that a system may lack; then Norva says so.
        const auto optional = [](const char* writer, const QString& name) {
            return QImageWriter::supportedImageFormats().contains(writer)
                       ? QString()
                       : QStringLiteral("this computer cannot write ") + name;
        };
        QTest::newRow("png to tiff") << picture("PNG") << "TIFF" << optional("tiff", QStringLiteral("TIFF"));
        QTest::newRow("png to heic") << picture("PNG") << "HEIC" << optional("heic", QStringLiteral("HEIC"));
        QTest::newRow("not a picture") << QByteArray("%PDF-1.4") << "PNG"
                                       << "it did not read as a picture";
    }
    void convert()
    {
        QFETCH(QByteArray, source);
        QFETCH(QString, format);
        QFETCH(QString, failure);
        TempHome home;
        const QString path = home.write(QStringLiteral("in/photo.img"), source);
        const auto imageFormat = ShelfActions::formatFrom(format);
        QVERIFY(imageFormat);
        const QString target = home.file(QStringLiteral("photo.") + ShelfActions::formatSuffix(*imageFormat));
        const auto result = ShelfActions::convert(path, *imageFormat, target);
        QCOMPARE(why(result), failure);
        if (!failure.isEmpty()) {
            QVERIFY(!QFile::exists(target));
            return;
        }
        QCOMPARE(std::get<QString>(result), target);
        QImage written;
        QVERIFY(written.load(target, format.toLatin1()));
        QCOMPARE(written.size(), QSize(7, 3));
        if (format == QLatin1String("JPEG")) // transparency lands on white, not black
            QVERIFY(qRed(written.pixel(3, 1)) > 240 && qGreen(written.pixel(3, 1)) > 240);
    }

    void moveAndCopyNeverOverwrite()
    {
        TempHome home;
        const QString a = home.write(QStringLiteral("shelf/report.pdf"), "new report");
        const QString existing = home.write(QStringLiteral("dest/report.pdf"), "old report");
        const QString folder = home.file(QStringLiteral("dest"));
        const auto moved = ShelfActions::moveToFolder({a}, folder);
        QCOMPARE(why(moved), QString());
        QCOMPARE(std::get<QStringList>(moved), QStringList{folder + QStringLiteral("/report 2.pdf")});
        QVERIFY(!QFile::exists(a));
        QCOMPARE(TempHome::read(existing), QByteArray("old report"));
        const auto copied = ShelfActions::copyToFolder({existing}, folder);
        QCOMPARE(why(copied), QString());
        QCOMPARE(std::get<QStringList>(copied), QStringList{folder + QStringLiteral("/report 3.pdf")});
        QVERIFY(QFile::exists(existing));
        QCOMPARE(why(ShelfActions::copyToFolder({existing}, home.file(QStringLiteral("nope")))),
                 QStringLiteral("nope is not a folder"));
    }
};
NORVA_TEST(ShelfActionsTest)

// The page's actions end to end: the file work, the rows that follow it and the toasts.
class ShelfDeskTest : public QObject {
    Q_OBJECT

    struct Rig {
        TempHome home;
        ManualClock clock;
        MemoryPreferences preferences;
        SettingsStore settings{preferences};
        FakeClipboard clipboard;
        ShelfManager shelf{settings, clock, home.file(QStringLiteral("data"))};
        ShelfDesk desk{shelf, clipboard};

        Rig() { shelf.start(); }
        ShelfDesk::Outcome perform(ShelfDesk::Action action, const QList<QUuid>& ids,
                                   const QString& argument = {})
        {
            std::optional<ShelfDesk::Outcome> outcome;
            desk.perform(action, ids, argument, [&](ShelfDesk::Outcome o) { outcome = o; });
            QDeadlineTimer deadline(10000);
            while (!outcome && !deadline.hasExpired())
                QTest::qWait(5);
            return outcome.value_or(ShelfDesk::Outcome{QStringLiteral("no outcome in time"), true});
        }
        QUuid idOf(const QString& path) const
        {
            for (const auto& item : shelf.items()) {
                if (item.path == path)
                    return item.id;
            }
            return {};
        }
    };

private slots:
    void zippingPutsTheArchiveOnTheShelf()
    {
        Rig rig;
        const QString folder = rig.home.file(QStringLiteral("Photos"));
        rig.home.write(QStringLiteral("Photos/a.jpg"), picture("JPEG"));
        rig.shelf.shelve(folder);
        const auto outcome = rig.perform(ShelfDesk::Action::compress, {rig.idOf(folder)});
        QCOMPARE(outcome.toast, std::optional<QString>(QStringLiteral("Zipped into Photos.zip.")));
        QCOMPARE(rig.desk.toast(), QStringLiteral("Zipped into Photos.zip."));
        const QString archive = rig.home.file(QStringLiteral("data/Shelf/Photos.zip"));
        QCOMPARE(rig.shelf.items().first().path, archive);
        int status = -1;
        unzip({QStringLiteral("-t"), archive}, &status);
        QCOMPARE(status, 0);
        // Nothing half written is left behind.
        QCOMPARE(QDir(rig.home.file(QStringLiteral("data/Shelf"))).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("Photos.zip")});
    }

    void failedZipSaysSoAndLogsWhy()
    {
        Rig rig;
        const QString file = rig.home.write(QStringLiteral("a.txt"), "a");
        rig.shelf.shelve(file);
        QFile::remove(file);
        LogCapture log;
        const auto outcome = rig.perform(ShelfDesk::Action::compress, {rig.idOf(file)});
        QVERIFY(outcome.failed);
        QCOMPARE(outcome.toast, std::optional<QString>(QStringLiteral("That didn't zip.")));
        QCOMPARE(log.lines(),
                 QStringList{QStringLiteral("Norva shelf: a.txt was not zipped (a.txt is gone)")});
    }

    void convertingAddsTheNewPicture()
    {
        Rig rig;
        const QString photo = rig.home.write(QStringLiteral("Pictures/photo.png"), picture("PNG"));
        rig.shelf.shelve(photo);
        const auto outcome =
            rig.perform(ShelfDesk::Action::convert, {rig.idOf(photo)}, QStringLiteral("JPEG"));
        QVERIFY(!outcome.failed);
        QCOMPARE(rig.shelf.items().size(), 2);
        QCOMPARE(rig.shelf.items().first().path, rig.home.file(QStringLiteral("data/Shelf/photo.jpg")));
        QVERIFY(QFile::exists(photo));
    }

    void movingLetsTheRowFollowTheFile()
    {
        Rig rig;
        const QString file = rig.home.write(QStringLiteral("Downloads/invoice.pdf"), "pdf");
        rig.home.write(QStringLiteral("Documents/invoice.pdf"), "an older one");
        rig.shelf.shelve(file);
        const auto outcome = rig.perform(ShelfDesk::Action::moveToFolder, {rig.idOf(file)},
                                         rig.home.file(QStringLiteral("Documents")));
        QCOMPARE(outcome.toast, std::optional<QString>(QStringLiteral("Moved to Documents.")));
        QCOMPARE(rig.shelf.items().first().path, rig.home.file(QStringLiteral("Documents/invoice 2.pdf")));
        QVERIFY(!QFile::exists(file));
    }

    void copyPutsTheFilesOnTheClipboard()
    {
        Rig rig;
        const QString a = rig.home.write(QStringLiteral("a.txt"), "a");
        const QString b = rig.home.write(QStringLiteral("b.txt"), "b");
        rig.shelf.shelve(a);
        rig.shelf.shelve(b);
        const auto outcome = rig.perform(ShelfDesk::Action::copy, {rig.idOf(a), rig.idOf(b)});
        QCOMPARE(outcome.toast, std::optional<QString>(QStringLiteral("Copied.")));
        QCOMPARE(rig.clipboard.data(QStringLiteral("text/uri-list")),
                 QUrl::fromLocalFile(a).toEncoded() + "\r\n" + QUrl::fromLocalFile(b).toEncoded() + "\r\n");
    }

    void removingAndClearingDeleteOnlyTheShelfsOwnFiles()
    {
        Rig rig;
        const QString mine = rig.home.write(QStringLiteral("Documents/mine.txt"), "mine");
        const QString own = rig.home.write(QStringLiteral("data/Shelf/Image.png"), picture("PNG"));
        rig.shelf.shelve(mine);
        rig.shelf.shelve(own);
        rig.perform(ShelfDesk::Action::remove, {rig.idOf(mine)});
        QVERIFY(QFile::exists(mine));
        QCOMPARE(rig.desk.count(), 1);
        rig.perform(ShelfDesk::Action::clearAll, {});
        QVERIFY(!QFile::exists(own));
        QCOMPARE(rig.desk.count(), 0);
    }

    void actionOnAFileThatLeftTheShelf()
    {
        Rig rig;
        LogCapture log;
        const auto outcome = rig.perform(ShelfDesk::Action::open, {QUuid::createUuid()});
        QVERIFY(outcome.failed);
        QCOMPARE(log.lines(),
                 QStringList{QStringLiteral("Norva shelf: nothing was done (the file left the shelf)")});
    }
};
NORVA_TEST(ShelfDeskTest)
#include "tst_ShelfActions.moc"
