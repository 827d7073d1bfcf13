#include "TestMain.h"

#include <QFileInfo>
#include <QImageReader>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

// cmake --install into a DESTDIR, as a package build does it: the programs, the menu entry and the
// icons land where a desktop looks for them, and the entry passes the freedesktop validator.
class InstallTest : public QObject {
    Q_OBJECT
    QTemporaryDir m_destination;
    QString m_root; // DESTDIR + prefix

    QString installed(const QString& relative) const { return m_root + QLatin1Char('/') + relative; }

private slots:
    void initTestCase()
    {
        QVERIFY(m_destination.isValid());
        QProcess cmake;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DESTDIR"), m_destination.path());
        cmake.setProcessEnvironment(environment);
        cmake.setProcessChannelMode(QProcess::MergedChannels);
        cmake.start(QStringLiteral("cmake"), {QStringLiteral("--install"), QStringLiteral(NORVA_BINARY_DIR),
                                              QStringLiteral("--prefix"), QStringLiteral("/usr")});
        QVERIFY(cmake.waitForFinished(60000));
        QVERIFY2(cmake.exitCode() == 0, cmake.readAll().constData());
        m_root = m_destination.path() + QStringLiteral("/usr");
    }

    void programsLandInTheBinaryFolder_data()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("norva") << QStringLiteral("norva");
        QTest::newRow("the now-playing helper, beside it") << QStringLiteral("norva-media");
    }
    void programsLandInTheBinaryFolder()
    {
        QFETCH(QString, program);
        const QFileInfo file(installed(QStringLiteral(NORVA_INSTALL_BINDIR "/") + program));
        QVERIFY2(file.isExecutable(), qPrintable(file.filePath()));
    }

    void iconsLandInTheHicolorTheme_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("size"); // 0: drawn at any size
        QTest::newRow("scalable") << QStringLiteral("scalable/apps/norva.svg") << 0;
        for (int size : {32, 48, 64, 128, 256}) {
            const QString folder = QStringLiteral("%1x%1").arg(size);
            QTest::newRow(qPrintable(folder)) << folder + QStringLiteral("/apps/norva.png") << size;
        }
    }
    void iconsLandInTheHicolorTheme()
    {
        QFETCH(QString, path);
        QFETCH(int, size);
        const QString file = installed(QStringLiteral(NORVA_INSTALL_DATADIR "/icons/hicolor/") + path);
        QVERIFY2(QFileInfo::exists(file), qPrintable(file));
        if (size > 0) // a PNG in the wrong size folder is scaled blurrily by every panel
            QCOMPARE(QImageReader(file).size(), QSize(size, size));
    }

    void desktopEntryValidatesAndStartsTheInstalledName()
    {
        const QString entry = installed(QStringLiteral(NORVA_INSTALL_DATADIR "/applications/norva.desktop"));
        QFile file(entry);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        QVERIFY(text.contains("\nExec=norva\n"));
        QVERIFY(text.contains("\nIcon=norva\n"));
        const QString validator = QStandardPaths::findExecutable(QStringLiteral("desktop-file-validate"));
        QVERIFY2(!validator.isEmpty(),
                 "desktop-file-validate is missing (tools/install-deps.sh --with-tests)");
        QProcess validate;
        validate.setProcessChannelMode(QProcess::MergedChannels);
        validate.start(validator, {entry});
        QVERIFY(validate.waitForFinished(20000));
        const QByteArray said = validate.readAll();
        QVERIFY2(validate.exitCode() == 0 && said.trimmed().isEmpty(), said.constData());
    }
};

NORVA_TEST(InstallTest)
#include "tst_Install.moc"
