#include "LogCapture.h"
#include "ManualClock.h"
#include "SmallDisk.h"
#include "TempHome.h"
#include "TestMain.h"

#include "notes/MarkdownNote.h"
#include "notes/NotesMirror.h"
#include "notes/QuickNotesStore.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace norva;
using norva::test::ManualClock;

namespace {

// Reads every Markdown file's front matter with PyYAML, as another tool would.
const char* kFrontMatterReader = R"(
import json, os, sys, yaml
out = {}
for name in sorted(os.listdir(sys.argv[1])):
    if not name.endswith('.md'):
        continue
    text = open(os.path.join(sys.argv[1], name), encoding='utf-8').read()
    if not text.startswith('---\n'):
        out[name] = None
        continue
    matter = yaml.safe_load(text.split('---\n')[1])
    out[name] = {k: (v if isinstance(v, str) else str(v)) for k, v in matter.items()}
print(json.dumps(out))
)";

struct MirrorRig {
    QTemporaryDir data;
    QTemporaryDir chosen;
    ManualClock clock;
    QuickNotesStore store{clock, data.path()};
    LocalNotesFileOps files;
    NotesMirror mirror{clock, store, files, data.path()};
    explicit MirrorRig(const QString& folder = {})
    {
        store.load();
        mirror.setConfig({true, folder.isEmpty() ? chosen.path() : folder});
    }
    QString folder() const { return mirror.config().folder; }
    QStringList files_() const
    {
        return QDir(folder()).entryList({QStringLiteral("*.md")}, QDir::Files, QDir::Name);
    }
    QByteArray read(const QString& name) const { return test::TempHome::read(QDir(folder()).filePath(name)); }
    QJsonObject frontMatter() const
    {
        QProcess python;
        python.start(QStringLiteral("python3"),
                     {QStringLiteral("-c"), QString::fromUtf8(kFrontMatterReader), folder()});
        python.waitForFinished(30000);
        return QJsonDocument::fromJson(python.readAllStandardOutput()).object();
    }
};

} // namespace

class NotesMirrorTest : public QObject {
    Q_OBJECT
private slots:
    void categoriesReadBackThroughARealYamlParser_data()
    {
        QTest::addColumn<QString>("category");
        QTest::addColumn<bool>("quoted");
        QTest::newRow("plain") << "Errands" << false;
        QTest::newRow("empty") << "" << true;
        for (const char* special :
             {":", "#", "{", "}", "[", "]", ",", "&", "*", "!", "|", ">", "'", "\"", "%", "@", "`", "\\"})
            QTest::newRow(special) << QStringLiteral("Work %1 home").arg(QLatin1String(special)) << true;
        QTest::newRow("leading dash") << "- list" << true;
        QTest::newRow("a word YAML reads as true") << "yes" << true;
        QTest::newRow("a number") << "2026" << true;
        QTest::newRow("accents") << "Bücher und Café" << false;
    }
    void categoriesReadBackThroughARealYamlParser()
    {
        QFETCH(QString, category);
        QTEST(MarkdownNote::yamlScalar(category).startsWith(QLatin1Char('"')), "quoted");
        MirrorRig rig;
        const QUuid id = rig.store.add(QStringLiteral("Call the bank"), category);
        QVERIFY(rig.mirror.sync());
        const QJsonObject matter = rig.frontMatter();
        QVERIFY2(!matter.isEmpty(), "python3 with PyYAML (python3-yaml) is needed");
        const QJsonObject file = matter.value(QStringLiteral("Call the bank.md")).toObject();
        QCOMPARE(file.value(QStringLiteral("category")).toString(), category);
        QCOMPARE(file.value(QStringLiteral("norva")).toString(), id.toString(QUuid::WithoutBraces));
        QCOMPARE(file.value(QStringLiteral("created")).toString().left(10), QStringLiteral("2026-11-18"));
    }

    void fileNamesAreSafeAndUntitledNotesAreStamped_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("name");
        QTest::newRow("first line") << "Shopping\nmilk" << QStringLiteral("Shopping");
        QTest::newRow("blank lines first") << "\n\n  Ideas  \nmore" << QStringLiteral("Ideas");
        QTest::newRow("slashes and colons") << "a/b: c\\d" << QStringLiteral("a b c d");
        QTest::newRow("heading marks") << "## Plan" << QStringLiteral("Plan");
        QTest::newRow("hidden name") << "..env" << QStringLiteral("env");
        QTest::newRow("nothing usable") << "   \n" << QStringLiteral("2026-11-18 10.00");
    }
    void fileNamesAreSafeAndUntitledNotesAreStamped()
    {
        QFETCH(QString, text);
        qputenv("TZ", "UTC");
        QuickNote note{
            QUuid::createUuid(), text, {}, {}, QDateTime(QDate(2026, 11, 18), QTime(10, 0), Qt::UTC)};
        QTEST(MarkdownNote::baseName(note), "name");
    }

    void renamingANoteMovesItsFileAndLeavesThePersonsOwnAlone()
    {
        MirrorRig rig;
        const QByteArray own = "# Groceries\n\nmy own list, not Norva's\n";
        QFile mine(QDir(rig.folder()).filePath(QStringLiteral("Groceries.md")));
        QVERIFY(mine.open(QIODevice::WriteOnly));
        mine.write(own);
        mine.close();
        const QUuid id = rig.store.add(QStringLiteral("Groceries\neggs"));
        QVERIFY(rig.mirror.sync());
        QCOMPARE(rig.files_(), (QStringList{"Groceries 2.md", "Groceries.md"}));
        rig.store.setText(id, QStringLiteral("Market\neggs"));
        QVERIFY(rig.mirror.sync());
        QCOMPARE(rig.files_(), (QStringList{"Groceries.md", "Market.md"}));
        QVERIFY(rig.read(QStringLiteral("Market.md")).endsWith("Market\neggs\n"));
        rig.store.remove(id);
        QVERIFY(rig.mirror.sync());
        QCOMPARE(rig.files_(), QStringList{"Groceries.md"});
        QCOMPARE(rig.read(QStringLiteral("Groceries.md")), own);
    }

    void theFolderMapAndStatusFollowTheWrites()
    {
        MirrorRig rig;
        QCOMPARE(rig.mirror.status(), QStringLiteral("No notes saved yet."));
        const QUuid a = rig.store.add(QStringLiteral("One"));
        rig.store.add(QStringLiteral("Two"));
        rig.clock.advance(NotesMirror::kSyncDelay);
        QCOMPARE(rig.mirror.status(), QStringLiteral("2 saved · 2 updated"));
        rig.store.append(a, QStringLiteral("more"));
        rig.clock.advance(NotesMirror::kSyncDelay);
        QCOMPARE(rig.mirror.status(), QStringLiteral("2 saved · 1 updated"));
        QFile map(rig.data.filePath(NotesMirror::stateFileName));
        QVERIFY(map.open(QIODevice::ReadOnly));
        const QJsonObject json = QJsonDocument::fromJson(map.readAll()).object();
        QCOMPARE(json.value(QStringLiteral("folders")).toObject().value(rig.folder()).toObject().size(), 2);
        QVERIFY(json.contains(QStringLiteral("lastWrite")));
    }

    void troublesAreToldInPlainWords_data()
    {
        QTest::addColumn<QString>("mount");
        QTest::addColumn<QString>("status");
        QTest::newRow("read-only")
            << "ro,size=64k"
            << QStringLiteral("Not mirrored: the disk is read-only. Your notes are still safe in Norva.");
        QTest::newRow("full") << "size=8k"
                              << QStringLiteral(
                                     "Not mirrored: the disk is full. Your notes are still safe in Norva.");
        QTest::newRow("missing")
            << ""
            << QStringLiteral("Not mirrored: the folder is missing. Your notes are still safe in Norva.");
    }
    void troublesAreToldInPlainWords()
    {
        QFETCH(QString, mount);
        std::unique_ptr<test::SmallDisk> disk;
        QString folder = QStringLiteral("/nonexistent/norva-notes");
        if (!mount.isEmpty()) {
            disk = std::make_unique<test::SmallDisk>(mount);
            if (!disk->isMounted())
                QSKIP("no small disk could be mounted here (mounting needs root)");
            folder = disk->path();
        }
        MirrorRig rig(folder);
        test::LogCapture log;
        rig.store.add(QString(32 * 1024, QLatin1Char('x')));
        QVERIFY(!rig.mirror.sync());
        QTEST(rig.mirror.status(), "status");
        QVERIFY(log.contains(QStringLiteral("Norva notes: ")));
        QCOMPARE(rig.store.notes().size(), 1);
    }
};

NORVA_TEST(NotesMirrorTest)
#include "tst_NotesMirror.moc"
