#include "TableRows.h"
#include "TestMain.h"

#include "clipboard/ClipboardHistory.h"

#include <QtTest>

using namespace norva;

namespace {

const QDateTime kStart(QDate(2026, 11, 18), QTime(10, 0), Qt::UTC);

ClipboardItem textClip(const QString& text, int second, bool pinned = false)
{
    ClipboardItem clip;
    clip.id = QUuid::createUuid();
    clip.kind = ClipboardHistory::classify(text);
    clip.date = kStart.addSecs(second);
    clip.text = text;
    clip.contentHash = ClipboardHistory::stableHash(ClipboardHistory::hashedBytes(text));
    clip.pinned = pinned;
    return clip;
}

QStringList texts(const QList<ClipboardItem>& clips)
{
    QStringList list;
    for (const auto& clip : clips)
        list << clip.text.value_or(QStringLiteral("?"));
    return list;
}

} // namespace

class ClipboardHistoryTest : public QObject {
    Q_OBJECT

private slots:
    void copyingTheSameTextTwiceBringsTheClipBack()
    {
        ClipboardHistory history;
        const auto first = history.record(textClip(QStringLiteral("hello"), 0));
        history.record(textClip(QStringLiteral("world"), 1));
        ClipboardItem again = textClip(QStringLiteral("hello"), 2);
        again.app = QStringLiteral("Kate");
        const auto second = history.record(again);
        QCOMPARE(second.kind, ClipboardHistory::Recorded::Kind::broughtBack);
        QCOMPARE(second.id, first.id);
        QCOMPARE(texts(history.recency()), (QStringList{QStringLiteral("hello"), QStringLiteral("world")}));
        QCOMPARE(history.recency().first().date, kStart.addSecs(2));
        QCOMPARE(history.recency().first().app, std::optional<QString>(QStringLiteral("Kate")));
    }

    void contentIsKindAndHash()
    {
        ClipboardHistory history;
        ClipboardItem text = textClip(QStringLiteral("a"), 0);
        ClipboardItem file;
        file.id = QUuid::createUuid();
        file.kind = ClipboardKind::file;
        file.date = kStart.addSecs(1);
        file.filePaths = QStringList{QStringLiteral("a")};
        file.contentHash = text.contentHash; // the same bytes, another kind: another clip
        history.record(text);
        QCOMPARE(history.record(file).kind, ClipboardHistory::Recorded::Kind::added);
        QCOMPARE(history.recency().size(), 2);
        // A clip without a hash never matches anything.
        ClipboardItem unhashed = textClip(QStringLiteral("a"), 2);
        unhashed.contentHash.reset();
        QCOMPARE(history.record(unhashed).kind, ClipboardHistory::Recorded::Kind::added);
    }

    void trimLimits_data()
    {
        QTest::addColumn<int>("limit");
        QTest::addColumn<QStringList>("kept");
        // Held newest first: d, c (pinned), b, a.
        QTest::newRow("roomy") << 10 << QStringList{"d", "c", "b", "a"};
        QTest::newRow("exact") << 3 << QStringList{"d", "c", "b", "a"};
        QTest::newRow("one") << 1 << QStringList{"d", "c"};
        QTest::newRow("zero keeps pins") << 0 << QStringList{"c"};
        QTest::newRow("negative counts as zero") << -1 << QStringList{"c"};
    }
    void trimLimits()
    {
        QFETCH(int, limit);
        QFETCH(QStringList, kept);
        ClipboardHistory history;
        history.record(textClip(QStringLiteral("a"), 0));
        history.record(textClip(QStringLiteral("b"), 1));
        history.record(textClip(QStringLiteral("c"), 2, true));
        history.record(textClip(QStringLiteral("d"), 3));
        QCOMPARE(history.trim(limit).size(), 4 - kept.size()); // the clips let go, oldest first
        QCOMPARE(texts(history.recency()), kept);
    }

    void orderedShowsPinsFirst()
    {
        ClipboardHistory history;
        history.replaceAll({textClip(QStringLiteral("old pin"), 0, true), textClip(QStringLiteral("old"), 1),
                            textClip(QStringLiteral("new pin"), 2, true),
                            textClip(QStringLiteral("new"), 3)});
        QCOMPARE(texts(history.ordered()), (QStringList{"new pin", "old pin", "new", "old"}));
    }

    void search_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QStringList>("found");
        const QStringList all{"pinned note", "Crème brûlée recipe", "https://example.org/path",
                              "grocery list: milk, eggs"};
        QTest::newRow("empty gives all") << QString() << all;
        QTest::newRow("blank gives all") << "  \t" << all;
        QTest::newRow("case folded") << "CREME" << QStringList{"Crème brûlée recipe"};
        QTest::newRow("accents folded") << "brulee" << QStringList{"Crème brûlée recipe"};
        QTest::newRow("every word must match") << "milk eggs" << QStringList{"grocery list: milk, eggs"};
        QTest::newRow("words in any order") << "eggs   grocery" << QStringList{"grocery list: milk, eggs"};
        QTest::newRow("one word missing") << "milk butter" << QStringList{};
        QTest::newRow("inside a link") << "example.org" << QStringList{"https://example.org/path"};
        QTest::newRow("pins come first") << "e" << all;
        QTest::newRow("the app counts") << "firefox" << QStringList{"https://example.org/path"};
    }
    void search()
    {
        QFETCH(QString, query);
        ClipboardHistory history;
        history.record(textClip(QStringLiteral("grocery list: milk, eggs"), 0));
        ClipboardItem link = textClip(QStringLiteral("https://example.org/path"), 1);
        link.app = QStringLiteral("Firefox");
        history.record(link);
        history.record(textClip(QStringLiteral("Crème brûlée recipe"), 2));
        history.record(textClip(QStringLiteral("pinned note"), -5, true));
        QTEST(texts(history.search(query)), "found");
    }

    void searchFindsFilesByName()
    {
        ClipboardHistory history;
        ClipboardItem files;
        files.id = QUuid::createUuid();
        files.kind = ClipboardKind::file;
        files.date = kStart;
        files.filePaths = QStringList{QStringLiteral("/home/ana/Documents/Quarterly Report.pdf")};
        files.contentHash = 1;
        history.record(files);
        QCOMPARE(history.search(QStringLiteral("quarterly")).size(), 1);
        QCOMPARE(history.search(QStringLiteral("documents")).size(), 0); // the folder is not the file's name
    }

    void classification_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("kind");
        test::textRow("plain words", {"Meet at noon tomorrow", "text"});
        test::textRow("https link", {"https://norva.app/docs?page=2", "link"});
        test::textRow("www host", {"www.example.com/about", "link"});
        test::textRow("mail link", {"mailto:ana@example.org", "link"});
        test::textRow("words with a link", {"see https://example.org please", "text"});
        test::textRow("short hex colour", {"#fff", "color"});
        test::textRow("long hex colour", {"#7AA2FFcc", "color"});
        test::textRow("not hex", {"#ggg", "text"});
        test::textRow("rgb colour", {"rgb(12, 34, 56)", "color"});
        test::textRow("hsl colour", {"hsl(210deg 50% 40%)", "color"});
        test::textRow("hashtag", {"#release", "text"});
        test::textRow("c statement", {"int count = items.size();", "code"});
        test::textRow("function", {"function add(a, b) {\n  return a + b;\n}", "code"});
        test::textRow("python", {"def area(r):\n    return 3.14 * r * r", "code"});
        test::textRow("include", {"#include <QString>", "code"});
        test::textRow("two prose lines", {"Dear Ana,\nthanks for the notes.", "text"});
        test::textRow("prose with a semicolon", {"It rained; we stayed in.", "text"});
    }
    void classification()
    {
        QFETCH(QString, text);
        QTEST(ClipboardItem::kindName(ClipboardHistory::classify(text)), "kind");
    }

    void hashIsStableAcrossRuns_data()
    {
        // FNV-1a 64 reference values, kept to 53 bits: a change here would orphan every stored hash.
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<qint64>("hash");
        QTest::newRow("empty") << QByteArray() << qint64(0xcbf29ce484222325ULL & 0x1FFFFFFFFFFFFFULL);
        QTest::newRow("a") << QByteArray("a") << qint64(0xaf63dc4c8601ec8cULL & 0x1FFFFFFFFFFFFFULL);
        QTest::newRow("foobar") << QByteArray("foobar")
                                << qint64(0x85944171f73967e8ULL & 0x1FFFFFFFFFFFFFULL);
    }
    void hashIsStableAcrossRuns()
    {
        QFETCH(QByteArray, bytes);
        QTEST(ClipboardHistory::stableHash(bytes), "hash");
    }

    void duplicatesMergeIntoTheOneCopiedLast()
    {
        ClipboardHistory history;
        ClipboardItem older = textClip(QStringLiteral("same"), 0, true);
        ClipboardItem newer = textClip(QStringLiteral("same"), 5);
        ClipboardItem other = textClip(QStringLiteral("other"), 3);
        history.replaceAll({older, other, newer});
        const auto folded = history.mergeDuplicates();
        QCOMPARE(folded.size(), 1);
        QCOMPARE(folded.first().id, older.id);
        QCOMPARE(history.recency().size(), 2);
        QCOMPARE(history.recency().first().id, newer.id);
        QVERIFY(history.recency().first().pinned); // the pin moved onto the clip kept
    }

    void jsonKeepsEveryKeyAndRefusesBrokenClips()
    {
        ClipboardItem clip = textClip(QStringLiteral("x"), 0);
        clip.app = QStringLiteral("Kate");
        clip.caption = ClipboardCaption{kStart, QStringLiteral("Kate")};
        clip.pinned = true;
        QCOMPARE(ClipboardItem::fromJson(clip.toJson()), std::optional<ClipboardItem>(clip));
        const QStringList keys = clip.toJson().keys();
        QCOMPARE(keys,
                 (QStringList{"app", "caption", "contentHash", "date", "id", "kind", "pinned", "text"}));
        QJsonObject noText = clip.toJson();
        noText.remove(QStringLiteral("text"));
        QVERIFY(!ClipboardItem::fromJson(noText));
        QJsonObject badKind = clip.toJson();
        badKind.insert(QStringLiteral("kind"), QStringLiteral("sound"));
        QVERIFY(!ClipboardItem::fromJson(badKind));
    }
};
NORVA_TEST(ClipboardHistoryTest)
#include "tst_ClipboardHistory.moc"
