#include "LogCapture.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "ShelfDeskRig.h"
#include "TableRows.h"
#include "TempHome.h"
#include "TestImages.h"
#include "TestMain.h"

#include "app/SettingsStore.h"
#include "platform/linux/XdgFileOpener.h"
#include "shelf/SameNameHints.h"
#include "shelf/ShelfActions.h"
#include "shelf/ShelfDesk.h"
#include "shelf/ShelfManager.h"
#include "shelf/ShelfPlatform.h"
#include "shelf/ZipWriter.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QImageWriter>
#include <QMimeData>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStandardPaths>
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

// The page sizes of a PDF, in points, as its page objects state them ("/MediaBox [0 0 144 72]").
QList<QSizeF> mediaBoxes(const QString& pdf)
{
    static const QRegularExpression box(
        QStringLiteral("/MediaBox\\s*\\[\\s*0\\s+0\\s+([0-9.]+)\\s+([0-9.]+)\\s*\\]"));
    QList<QSizeF> boxes;
    const QString text = QString::fromLatin1(TempHome::read(pdf));
    for (auto it = box.globalMatch(text); it.hasNext();) {
        const auto match = it.next();
        boxes << QSizeF(match.captured(1).toDouble(), match.captured(2).toDouble());
    }
    return boxes;
}

// Sets environment variables for as long as it lives, and puts back what was there.
class ScopedEnvironment {
public:
    ScopedEnvironment(const QMap<QByteArray, QByteArray>& values)
    {
        for (auto it = values.cbegin(); it != values.cend(); ++it) {
            m_before.insert(it.key(), qEnvironmentVariableIsSet(it.key().constData())
                                          ? std::optional<QByteArray>(qgetenv(it.key().constData()))
                                          : std::nullopt);
            if (it.value().isNull())
                qunsetenv(it.key().constData());
            else
                qputenv(it.key().constData(), it.value());
        }
    }
    ~ScopedEnvironment()
    {
        for (auto it = m_before.cbegin(); it != m_before.cend(); ++it) {
            if (it.value())
                qputenv(it.key().constData(), *it.value());
            else
                qunsetenv(it.key().constData());
        }
    }

private:
    QMap<QByteArray, std::optional<QByteArray>> m_before;
};

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
        QTest::newRow("png to webp") << picture("PNG", true) << "WebP"
                                     << optional("webp", QStringLiteral("WebP"));
        QTest::newRow("webp to png") << picture("WEBP") << "PNG" << QString();
        QTest::newRow("png to pdf") << picture("PNG") << "PDF" << QString();
        QTest::newRow("not a picture, to pdf") << QByteArray("%PDF-1.4") << "PDF"
                                               << "it did not read as a picture";
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
        if (format == QLatin1String("PDF")) {
            QCOMPARE(mediaBoxes(target).size(), 1);
            return;
        }
        QImage written;
        QVERIFY(written.load(target, format.toLatin1()));
        QCOMPARE(written.size(), QSize(7, 3));
        if (format == QLatin1String("JPEG")) // transparency lands on white, not black
            QVERIFY(qRed(written.pixel(3, 1)) > 240 && qGreen(written.pixel(3, 1)) > 240);
    }

    // A picture is offered the formats it is not, of those this system writes, in one order.
    void convertTargetsFitThePicture_data()
    {
        QTest::addColumn<QByteArray>("pictureFormat");
        QTest::addColumn<QStringList>("offered");
        QTest::newRow("png") << QByteArray("png") << QStringList{"JPEG", "WebP", "HEIC", "PDF"};
        QTest::newRow("jpeg") << QByteArray("jpeg") << QStringList{"PNG", "WebP", "HEIC", "PDF"};
        QTest::newRow("webp") << QByteArray("webp") << QStringList{"JPEG", "PNG", "HEIC", "PDF"};
        QTest::newRow("gif") << QByteArray("gif") << QStringList{"JPEG", "PNG", "WebP", "HEIC", "PDF"};
        QTest::newRow("PNG in capitals") << QByteArray("PNG") << QStringList{"JPEG", "WebP", "HEIC", "PDF"};
        QTest::newRow("no picture") << QByteArray() << QStringList{};
    }
    void convertTargetsFitThePicture()
    {
        QFETCH(QByteArray, pictureFormat);
        QFETCH(QStringList, offered);
        // WebP and HEIC come from plug-ins: a format this system cannot write is not offered.
        QStringList expected;
        for (const QString& name : offered) {
            if (ShelfActions::canWrite(*ShelfActions::formatFrom(name)))
                expected << name;
        }
        QStringList names;
        for (const auto format : ShelfActions::convertTargets(pictureFormat))
            names << ShelfActions::formatName(format);
        QCOMPARE(names, expected);
        QVERIFY(ShelfActions::canWrite(ShelfActions::ImageFormat::pdf));
    }

    void pdfHasAPageForEachPictureAtItsSize()
    {
        TempHome home;
        const QString wide = home.write(QStringLiteral("wide.png"), imageBytes(192, 96));
        const QString tall = home.write(QStringLiteral("tall.jpg"), imageBytes(48, 144, "JPEG"));
        const QString target = home.file(QStringLiteral("Pictures.pdf"));
        QCOMPARE(why(ShelfActions::pdfOf({wide, tall}, target)), QString());
        // At 96 pixels to the inch, 4 pixels are 3 points.
        QCOMPARE(mediaBoxes(target), (QList<QSizeF>{{144, 72}, {36, 108}}));
        // One that is no picture spoils the whole and leaves nothing behind.
        const QString text = home.write(QStringLiteral("notes.txt"), "notes");
        QCOMPARE(why(ShelfActions::pdfOf({wide, text}, target)),
                 QStringLiteral("notes.txt did not read as a picture"));
        QVERIFY(!QFile::exists(target));
    }

    void sameNamesAreToldApartByTheirFolders_data()
    {
        QTest::addColumn<QStringList>("paths");
        QTest::addColumn<QStringList>("hints");
        QTest::newRow("names of their own")
            << QStringList{"/home/ana/a.txt", "/home/ana/Downloads/b.txt"} << QStringList{"", ""};
        QTest::newRow("two folders") << QStringList{"/home/ana/Downloads/report.pdf",
                                                    "/home/ana/Documents/report.pdf", "/home/ana/notes.txt"}
                                     << QStringList{"Downloads", "Documents", ""};
        QTest::newRow("same last folder")
            << QStringList{"/home/ana/work/Docs/r.pdf", "/home/ana/play/Docs/r.pdf"}
            << QStringList{"work/Docs", "play/Docs"};
        QTest::newRow("three, two alike at the end")
            << QStringList{"/a/x/Docs/r.pdf", "/a/y/Docs/r.pdf", "/a/Downloads/r.pdf"}
            << QStringList{"x/Docs", "y/Docs", "Downloads"};
        QTest::newRow("one folder the end of the other")
            << QStringList{"/srv/Docs/r.pdf", "/Docs/r.pdf"} << QStringList{"Docs", "/Docs"};
        QTest::newRow("the root") << QStringList{"/r.pdf", "/tmp/r.pdf"} << QStringList{"/", "/tmp"};
    }
    void sameNamesAreToldApartByTheirFolders()
    {
        QFETCH(QStringList, paths);
        QFETCH(QStringList, hints);
        QCOMPARE(SameNameHints::of(paths), hints);
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

    using Rig = ShelfDeskRig;

private slots:
    // An action on shelved files (pictures by their suffix): its toast and log line, the row it puts
    // first on the shelf, every row's file where the row says, and the shelf's own folder holding only
    // what the action made. A row that fails does so because its files were deleted once shelved.
    void actionsPutTheirResultFirstOnTheShelf_data()
    {
        for (const char* column : {"files", "action", "argument", "toast", "firstRow", "log"})
            QTest::addColumn<QString>(column);
        textRow("zip",
                {"Photos/a.jpg", "compress", "", "Zipped into a.jpg.zip.", "data/Shelf/a.jpg.zip", ""});
        textRow("zip of a gone file", {"a.txt", "compress", "", "That didn't zip.", "",
                                       "Norva shelf: a.txt was not zipped (a.txt is gone)"});
        textRow("convert",
                {"Pictures/photo.png", "convert", "JPEG", "Converted to JPEG.", "data/Shelf/photo.jpg", ""});
        textRow("pdf of two",
                {"a.png b.jpg", "convert", "PDF", "Converted to PDF.", "data/Shelf/Pictures.pdf", ""});
        textRow("move", {"Downloads/invoice.pdf", "moveToFolder", "Documents", "Moved to Documents.",
                         "Documents/invoice.pdf", ""});
    }
    void actionsPutTheirResultFirstOnTheShelf()
    {
        QFETCH(QString, action);
        QFETCH(QString, argument);
        QFETCH(QString, toast);
        QFETCH(QString, firstRow);
        QFETCH(QString, log);
        QFETCH(QString, files);
        using A = ShelfDesk::Action;
        const A act = QMap<QString, A>{{"compress", A::compress},
                                       {"convert", A::convert},
                                       {"moveToFolder", A::moveToFolder}}
                          .value(action);
        const QStringList shelved = files.split(QLatin1Char(' '));
        Rig rig;
        QDir().mkpath(rig.home.file(QStringLiteral("Documents")));
        QList<QUuid> ids;
        for (const QString& name : shelved) {
            const bool png = name.endsWith(QLatin1String(".png")),
                       jpeg = name.endsWith(QLatin1String(".jpg"));
            const QString path =
                rig.home.write(name, png || jpeg ? imageBytes(96, 96, png ? "PNG" : "JPEG") : "text");
            QVERIFY(rig.shelf.shelve(path));
            ids << rig.idOf(path);
        }
        QCOMPARE(rig.desk.pictureIds().size(),
                 shelved.filter(QRegularExpression(QStringLiteral("\\.(png|jpg)$"))).size());
        for (const QString& name : log.isEmpty() ? QStringList() : shelved)
            QVERIFY(QFile::remove(rig.home.file(name)));
        LogCapture logged;
        const auto outcome =
            rig.perform(act, ids, act == A::moveToFolder ? rig.home.file(argument) : argument);
        QCOMPARE(outcome.toast.value_or(QString()), toast);
        QCOMPARE(outcome.failed, !log.isEmpty());
        QCOMPARE(logged.lines(), log.isEmpty() ? QStringList() : QStringList{log});
        const QString first = rig.home.file(firstRow);
        const QStringList made = firstRow.startsWith(QLatin1String("data/Shelf/"))
                                     ? QStringList{QFileInfo(first).fileName()}
                                     : QStringList();
        QCOMPARE(QDir(rig.home.file(QStringLiteral("data/Shelf"))).entryList(QDir::Files | QDir::Hidden),
                 made);
        if (outcome.failed)
            return;
        QCOMPARE(rig.shelf.items().first().path, first);
        QCOMPARE(rig.shelf.items().size(), shelved.size() + made.size());
        for (const auto& item : rig.shelf.items())
            QVERIFY2(QFile::exists(item.path), qPrintable(item.path));
        int status = 0;
        if (act == A::compress)
            unzip({QStringLiteral("-t"), first}, &status);
        QCOMPARE(status, 0);
        if (argument == QLatin1String("PDF")) // one document, with a page for each picture
            QCOMPARE(mediaBoxes(first).size(), shelved.size());
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

    // Opening goes through xdg-open as the desktop answers it; where nothing opens the file, the
    // toast names its type and the line that sets an app for it, and stays long enough to read.
    void openingSaysWhatToInstallOrSetWhenNothingOpens_data()
    {
        QTest::addColumn<bool>("reveal");
        QTest::addColumn<bool>("xdgUtils");
        QTest::addColumn<bool>("appSet");
        QTest::addColumn<QString>("toast");
        QTest::newRow("an app is set") << false << true << true << QString();
        QTest::newRow("no app for the type") << false << true << false
                                             << "Nothing here opens “PDF document” files (application/pdf). "
                                                "Install an app for them, or choose "
                                                "one: xdg-mime default APP.desktop application/pdf";
        QTest::newRow("no file manager") << true << true << false
                                         << "Nothing here opens folders. Install a file manager, or choose "
                                            "one: xdg-mime default APP.desktop "
                                            "inode/directory";
        QTest::newRow("no xdg-utils")
            << false << false << false << "Norva opens files with xdg-open: install the xdg-utils package.";
    }
    void openingSaysWhatToInstallOrSetWhenNothingOpens()
    {
        QFETCH(bool, reveal);
        QFETCH(bool, xdgUtils);
        QFETCH(bool, appSet);
        QFETCH(QString, toast);
        QVERIFY2(!QStandardPaths::findExecutable(QStringLiteral("xdg-open")).isEmpty(),
                 "xdg-utils is not installed (tools/install-deps.sh --with-tests)");
        Rig rig(xdgUtils ? std::make_shared<XdgFileOpener>()
                         : std::make_shared<XdgFileOpener>(QStringLiteral("/nonexistent/xdg-open")));
        // Only the apps of this home: the system's folder lends its MIME database and nothing else.
        const QString system = rig.home.file(QStringLiteral("system"));
        QDir().mkpath(system);
        QFile::link(QStringLiteral("/usr/share/mime"), system + QStringLiteral("/mime"));
        const ScopedEnvironment environment(
            {{"XDG_DATA_DIRS", system.toUtf8()},
             {"XDG_CURRENT_DESKTOP", QByteArray()},
             {"DESKTOP_SESSION", QByteArray()},
             {"DBUS_SESSION_BUS_ADDRESS",
              QByteArray("unix:path=") + rig.home.file(QStringLiteral("no-bus")).toUtf8()},
             {"BROWSER", rig.home.file(QStringLiteral("no/browser")).toUtf8()},
             {"DISPLAY", qEnvironmentVariableIsSet("DISPLAY") ? qgetenv("DISPLAY") : QByteArray(":0")}});
        const QString marker = rig.home.file(QStringLiteral("opened.txt"));
        if (appSet) {
            const QString viewer = rig.home.write(
                QStringLiteral("viewer.sh"), "#!/bin/sh\nprintf '%s' \"$1\" > '" + marker.toUtf8() + "'\n");
            QFile::setPermissions(viewer, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            rig.home.write(QStringLiteral(".local/share/applications/norva-viewer.desktop"),
                           "[Desktop Entry]\nType=Application\nName=Viewer\nExec=" + viewer.toUtf8() +
                               " %f\nMimeType=application/pdf;\n");
            rig.home.write(QStringLiteral(".config/mimeapps.list"),
                           "[Default Applications]\napplication/pdf=norva-viewer.desktop\n");
        }
        const QString invoice = rig.home.write(QStringLiteral("Downloads/invoice.pdf"), "%PDF-1.4\n%%EOF\n");
        rig.shelf.shelve(invoice);
        LogCapture log;
        const auto outcome =
            rig.perform(reveal ? ShelfDesk::Action::reveal : ShelfDesk::Action::open, {rig.idOf(invoice)});
        QCOMPARE(outcome.toast.value_or(QString()), toast);
        QCOMPARE(outcome.failed, !toast.isEmpty());
        if (toast.isEmpty()) {
            QCOMPARE(TempHome::read(marker), invoice.toUtf8());
            return;
        }
        QCOMPARE(rig.desk.toastMs(), ShelfDesk::kAdviceMs);
        QCOMPARE(log.lines().size(), 1);
        QVERIFY2(log.lines().first().startsWith(QStringLiteral("Norva shelf: invoice.pdf was not ") +
                                                (reveal ? "shown (" : "opened (")),
                 qPrintable(log.lines().first()));
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
