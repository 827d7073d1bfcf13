#include "LogCapture.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestImages.h"
#include "TestMain.h"

#include "app/SettingsStore.h"
#include "clipboard/ClipboardManager.h"
#include "clipboard/ClipboardSettings.h"
#include "platform/linux/QtClipboardSource.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QProcess>
#include <QtTest>

using namespace norva;
using namespace norva::test;

namespace {

// Sets the X11 clipboard through xclip, as a person's program would (xclip stays behind to serve it).
bool xclip(const QString& target, const QByteArray& content)
{
    QProcess process;
    process.start(QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard"),
                                            QStringLiteral("-t"), target, QStringLiteral("-i")});
    if (!process.waitForStarted())
        return false;
    process.write(content);
    process.closeWriteChannel();
    return process.waitForFinished(5000) && process.exitCode() == 0;
}

QByteArray xclipOut(const QString& target)
{
    // Norva owns the clipboard now: the event loop must run for it to answer xclip's request.
    QProcess process;
    process.start(QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard"),
                                            QStringLiteral("-t"), target, QStringLiteral("-o")});
    QDeadlineTimer deadline(5000);
    while (process.state() != QProcess::NotRunning && !deadline.hasExpired())
        QTest::qWait(20);
    return process.readAllStandardOutput();
}

} // namespace

// The history against the real X11 clipboard (Xvfb in CI), with copies made by other programs.
class X11ClipboardTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TempHome> m_home;
    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<MemoryPreferences> m_preferences;
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<ClipboardSettings> m_settings;
    std::unique_ptr<QtClipboardSource> m_source;
    std::unique_ptr<ClipboardManager> m_manager;
    QList<QProcess*> m_helpers;

    // Starts the helper that offers several targets at once (or shows a named window).
    QByteArray offer(const QStringList& arguments)
    {
        auto* helper = new QProcess(this);
        helper->start(QStringLiteral(CLIPBOARD_OFFER), arguments);
        m_helpers << helper;
        if (!helper->waitForReadyRead(10000))
            return {};
        return helper->readAll();
    }

    // Waits until the desktop has told of the change and the clipboard offers what was put there
    // (a helper that quits empties the clipboard first), then lets a poll run.
    void settle(quint64 before, const QString& offered)
    {
        QTRY_VERIFY_WITH_TIMEOUT(m_source->changeCount() != before && m_source->formats().contains(offered),
                                 5000);
        m_clock->advance(ClipboardManager::kPollInterval);
    }

private slots:
    void initTestCase()
    {
        if (qEnvironmentVariableIsEmpty("DISPLAY"))
            QSKIP("no X display (CI runs this under xvfb-run)");
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
        QVERIFY2(QProcess::execute(QStringLiteral("xclip"), {QStringLiteral("-version")}) == 0,
                 "xclip is needed");
    }

    void init()
    {
        m_home = std::make_unique<TempHome>();
        m_clock = std::make_unique<ManualClock>();
        m_preferences = std::make_unique<MemoryPreferences>();
        m_store = std::make_unique<SettingsStore>(*m_preferences);
        m_settings = std::make_unique<ClipboardSettings>(*m_store);
        m_source = std::make_unique<QtClipboardSource>();
        m_manager = std::make_unique<ClipboardManager>(*m_source, *m_settings, *m_clock,
                                                       m_home->file(QStringLiteral("data")));
        QSignalSpy loaded(m_manager.get(), &ClipboardManager::loaded);
        m_manager->start();
        QVERIFY(loaded.wait(5000));
    }

    void cleanup()
    {
        for (QProcess* helper : std::as_const(m_helpers)) {
            helper->kill();
            helper->waitForFinished(2000);
            delete helper;
        }
        m_helpers.clear();
        QProcess::execute(QStringLiteral("xprop"), {QStringLiteral("-root"), QStringLiteral("-remove"),
                                                    QStringLiteral("_NET_ACTIVE_WINDOW")});
        m_manager.reset();
        m_source.reset();
        m_settings.reset();
        m_store.reset();
        m_preferences.reset();
    }

    void copyCarryingThePasswordManagerHintIsNeverKept_data()
    {
        QTest::addColumn<QStringList>("targets");
        QTest::addColumn<bool>("kept");
        QTest::newRow("text with the KDE secret hint")
            << QStringList{"text/plain=s3cret-pass", "x-kde-passwordManagerHint=secret"} << false;
        QTest::newRow("text with the concealed type")
            << QStringList{"text/plain=s3cret-pass", "org.nspasteboard.ConcealedType="} << false;
        QTest::newRow("plain text") << QStringList{"text/plain=s3cret-pass"} << true;
        QTest::newRow("the KDE secret hint alone")
            << QStringList{"x-kde-passwordManagerHint=secret"} << false;
    }
    void copyCarryingThePasswordManagerHintIsNeverKept()
    {
        QFETCH(QStringList, targets);
        QFETCH(bool, kept);
        const quint64 before = m_source->changeCount();
        QCOMPARE(offer(targets).trimmed(), QByteArray("offered"));
        settle(before, targets.last().section(QLatin1Char('='), 0, 0));
        // A kept copy shows up at once; for a refused one, give it the same time to be wrongly filed.
        QTest::qWait(kept ? 0 : 200);
        QTRY_COMPARE(m_manager->items().size(), kept ? 1 : 0);
        m_manager->flush();
        QCOMPARE(TempHome::read(m_home->file(QStringLiteral("data/clipboard.json"))).contains("s3cret"),
                 kept);
    }

    void pictureAndFilesFromOtherPrograms()
    {
        const QByteArray red = pngBytes(Qt::red);
        quint64 before = m_source->changeCount();
        QVERIFY(xclip(QStringLiteral("image/png"), red));
        QSignalSpy handled(m_manager.get(), &ClipboardManager::imageCopyHandled);
        settle(before, QStringLiteral("image/png"));
        QVERIFY(handled.count() > 0 || handled.wait(5000));
        QCOMPARE(m_manager->items().size(), 1);
        QCOMPARE(TempHome::read(m_manager->imagePath(m_manager->items().first())), red);

        const QString file = m_home->write(QStringLiteral("docs/plan.txt"), "plan");
        before = m_source->changeCount();
        QVERIFY(xclip(QStringLiteral("text/uri-list"), QUrl::fromLocalFile(file).toEncoded() + "\n"));
        settle(before, QStringLiteral("text/uri-list"));
        QTRY_COMPARE(m_manager->items().size(), 2);
        QCOMPARE(m_manager->items().first().filePaths, std::optional<QStringList>(QStringList{file}));
    }

    void clipCopiedAgainIsOnTheClipboardForOtherPrograms()
    {
        quint64 before = m_source->changeCount();
        QVERIFY(xclip(QStringLiteral("UTF8_STRING"), "first"));
        settle(before, QStringLiteral("text/plain"));
        before = m_source->changeCount();
        QVERIFY(xclip(QStringLiteral("UTF8_STRING"), "second"));
        settle(before, QStringLiteral("text/plain"));
        QTRY_COMPARE(m_manager->items().size(), 2);
        const auto first = m_manager->items().last();
        QVERIFY(m_manager->copy(first.id).copied);
        QCOMPARE(xclipOut(QStringLiteral("UTF8_STRING")), QByteArray("first"));
        QCOMPARE(m_manager->items().first().id, first.id);
        m_clock->advance(ClipboardManager::kPollInterval);
        QCOMPARE(m_manager->items().size(), 2);
    }

    void textFromTheProgramInFrontIsFiledWithItsName()
    {
        const QByteArray shown = offer({QStringLiteral("--app"), QStringLiteral("Gedit")});
        QVERIFY2(shown.startsWith("window "), shown.constData());
        const QString window = QString::fromLatin1(shown.mid(7).trimmed());
        QCOMPARE(QProcess::execute(QStringLiteral("xprop"),
                                   {QStringLiteral("-root"), QStringLiteral("-f"),
                                    QStringLiteral("_NET_ACTIVE_WINDOW"), QStringLiteral("32x"),
                                    QStringLiteral("-set"), QStringLiteral("_NET_ACTIVE_WINDOW"), window}),
                 0);
        QTRY_COMPARE_WITH_TIMEOUT(m_source->frontmostApplication(),
                                  std::optional<QString>(QStringLiteral("Gedit")), 5000);
        const quint64 before = m_source->changeCount();
        QVERIFY(xclip(QStringLiteral("UTF8_STRING"), "  Grüße aus Xvfb \n"));
        settle(before, QStringLiteral("text/plain"));
        QTRY_COMPARE(m_manager->items().size(), 1);
        QCOMPARE(m_manager->items().first().text, std::optional<QString>(QStringLiteral("Grüße aus Xvfb")));
        QCOMPARE(m_manager->items().first().app, std::optional<QString>(QStringLiteral("Gedit")));
    }
};
NORVA_TEST(X11ClipboardTest)
#include "tst_X11Clipboard.moc"
