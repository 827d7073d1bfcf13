#include "LogCapture.h"
#include "TempHome.h"
#include "TestMain.h"

#include "storage/OwnedFolder.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QtTest>

#include <unistd.h>

using namespace norva;
using namespace norva::test;

namespace {

// Makes a file that this user cannot delete: a read-only folder for a normal user, the immutable
// flag for root (who ignores permissions). Returns an undo, or nothing when neither works here.
std::optional<std::function<void()>> pin(const QString& folder, const QString& file)
{
    if (geteuid() != 0) {
        QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        return [folder] {
            QFile::setPermissions(folder,
                                  QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        };
    }
    if (QProcess::execute(QStringLiteral("chattr"), {QStringLiteral("+i"), file}) != 0)
        return std::nullopt;
    return [file] { QProcess::execute(QStringLiteral("chattr"), {QStringLiteral("-i"), file}); };
}

} // namespace

class OwnedFolderTest : public QObject {
    Q_OBJECT

private slots:
    void writesLandWholeUnderTheirName()
    {
        TempHome home;
        OwnedFolder folder(home.file(QStringLiteral("Norva/Drops")), QStringLiteral("Norva shelf"),
                           QStringLiteral("file"), QStringLiteral("the shelf"));
        const auto written = folder.write(QStringLiteral("a.png"), "bytes");
        QVERIFY(written.path);
        QCOMPARE(*written.path, home.file(QStringLiteral("Norva/Drops/a.png")));
        QCOMPARE(TempHome::read(*written.path), QByteArray("bytes"));
        QCOMPARE(folder.files(), QStringList{*written.path});
        // A name already taken is never overwritten.
        const auto again = folder.write(QStringLiteral("a.png"), "other");
        QVERIFY(!again.path);
        QCOMPARE(again.error, QStringLiteral("a.png is already there"));
        QCOMPARE(TempHome::read(*written.path), QByteArray("bytes"));
        QCOMPARE(QDir(folder.url()).entryList(QDir::Files | QDir::Hidden).size(), 1);
        QCOMPARE(folder.freeName(QStringLiteral("a"), QStringLiteral(".png")), QStringLiteral("a 2.png"));
    }

    void halfWrittenFilesAreClearedAtLaunch()
    {
        TempHome home;
        LogCapture log;
        home.write(QStringLiteral("Images/.partial-Xy12Zq"), "half a pic");
        home.write(QStringLiteral("Images/.partial-Qq34Rr"), "half another");
        // A folder under the half-written name cannot be removed as a file.
        home.write(QStringLiteral("Images/.partial-Aa56Bb/inside"), "x");
        const QString whole = home.write(QStringLiteral("Images/kept.png"), "whole");
        OwnedFolder folder(home.file(QStringLiteral("Images")), QStringLiteral("Norva clipboard"),
                           QStringLiteral("picture"), QStringLiteral("the clipboard history"));
        folder.prepare();
        QCOMPARE(QDir(folder.url()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("kept.png")});
        QCOMPARE(TempHome::read(whole), QByteArray("whole"));
        QCOMPARE(folder.files(), QStringList{whole}); // what stays is hidden: never shown as a picture
        QCOMPARE(log.count(QStringLiteral(
                     "Norva clipboard: removed 2 pictures that a quit left half written in Images")),
                 1);
        QCOMPARE(
            log.count(QStringLiteral(
                "Norva clipboard: could not remove 1 picture that a quit left half written in Images (")),
            1);
        QVERIFY(log.contains(QStringLiteral("); they are hidden and are tried again at the next launch")));
        QCOMPARE(log.lines().size(), 2);
    }

    void failedDeletionIsTriedAgainAtTheNextLaunch()
    {
        TempHome home;
        LogCapture log;
        const QString path = home.write(QStringLiteral("Shelf/Image.png"), "png");
        OwnedFolder folder(home.file(QStringLiteral("Shelf")), QStringLiteral("Norva shelf"),
                           QStringLiteral("file"), QStringLiteral("the shelf"));
        const auto undo = pin(folder.url(), path);
        if (!undo)
            QSKIP("this system lets no file be kept from deletion (no chattr as root)");
        QVERIFY(!folder.remove(path));
        (*undo)();
        QVERIFY(QFile::exists(path));
        QCOMPARE(log.count(QStringLiteral(
                     "Norva shelf: could not delete the file Image.png from Shelf; it stays and "
                     "comes up for deletion again at the next launch")),
                 1);

        // The next launch deletes it.
        log.clear();
        OwnedFolder nextLaunch(home.file(QStringLiteral("Shelf")), QStringLiteral("Norva shelf"),
                               QStringLiteral("file"), QStringLiteral("the shelf"));
        nextLaunch.prepare();
        QVERIFY(!QFile::exists(path));
        QCOMPARE(log.lines(), QStringList{QStringLiteral(
                                  "Norva shelf: deleted the file Image.png that would not go last time")});
        QVERIFY(!QFile::exists(home.file(QStringLiteral("Shelf/.delete-later"))));
        // And the launch after that has nothing left to do.
        log.clear();
        nextLaunch.prepare();
        QCOMPARE(log.lines(), QStringList());
    }
};
NORVA_TEST(OwnedFolderTest)
#include "tst_OwnedFolder.moc"
