#include "TempHome.h"
#include "TestMain.h"

#include "agents/ApprovalsFolder.h"
#include "app/Paths.h"

#include <QFile>
#include <QFileInfo>
#include <QtTest>

#include <sys/stat.h>

using namespace norva;

// The approvals folder is where a local process can get a shell command approved: these tests pin
// its privacy (0700) and Norva's refusal to read or write through links planted in it.
class ApprovalsFolderTest : public QObject {
    Q_OBJECT
private slots:
    // A new folder is made private with its parents; an open one is tightened.
    void folderIsPrivate_data()
    {
        QTest::addColumn<bool>("existing");
        QTest::newRow("made with its parents") << false;
        QTest::newRow("an open folder") << true;
    }
    void folderIsPrivate()
    {
        QFETCH(bool, existing);
        test::TempHome home;
        const QString path = Paths::approvalsFolder();
        QVERIFY(path.endsWith(QStringLiteral("/.local/share/Norva/approvals")));
        if (existing) {
            QVERIFY(QDir().mkpath(path));
            QVERIFY(::chmod(QFile::encodeName(path).constData(), 0777) == 0);
        }
        QVERIFY(ApprovalsFolder(path).ensure().ok);
        struct stat info {};
        QCOMPARE(::stat(QFile::encodeName(path).constData(), &info), 0);
        QCOMPARE(int(info.st_mode & 07777), 0700);
    }

    void refusesAFolderThatIsALink()
    {
        test::TempHome home;
        const QString real = home.file(QStringLiteral("elsewhere"));
        QVERIFY(QDir().mkpath(real));
        const QString link = home.file(QStringLiteral("approvals"));
        QVERIFY(QFile::link(real, link));
        const FileResult result = ApprovalsFolder(link).ensure();
        QVERIFY(!result.ok);
        QCOMPARE(result.error, QStringLiteral("it is a link"));
    }

    // Touching at a given time is the heartbeat's, and its test holds it.
    void removeToleratesAMissingFile()
    {
        test::TempHome home;
        ApprovalsFolder folder(home.file(QStringLiteral("approvals")));
        QVERIFY(folder.ensure().ok);
        QVERIFY(folder.write(QStringLiteral("heartbeat"), QByteArray()).ok);
        QVERIFY(folder.remove(QStringLiteral("heartbeat")).ok);
        QVERIFY(folder.remove(QStringLiteral("heartbeat")).ok);
        QVERIFY(!folder.exists(QStringLiteral("heartbeat")));
    }
};
NORVA_TEST(ApprovalsFolderTest)
#include "tst_approvalsfolder.moc"
