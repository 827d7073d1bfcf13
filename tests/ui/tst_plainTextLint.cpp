#include "QmlViews.h"
#include "TestMain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QtTest>

// Texts from outside Norva must never be read as markup. Every QML text is drawn through
// PlainText.qml, so no one has to remember it: this lint fails on a bare Text or Label, and on any
// textFormat set outside PlainText.qml.
class PlainTextLintTest : public QObject {
    Q_OBJECT
private slots:
    void everyTextIsDrawnPlain()
    {
        const QStringList files = norva::test::QmlViews::sourceFiles();
        QVERIFY(files.contains(QStringLiteral(NORVA_SOURCE_DIR "/src/ui/qml/PlainText.qml")));
        static const QRegularExpression bareText(QStringLiteral(R"((^|[:\s])(Text|Label|StyledText)\s*\{)"));
        static const QRegularExpression format(QStringLiteral(R"(\btextFormat\s*:)"));
        QStringList offences;
        for (const QString& path : files) {
            const QString name = QFileInfo(path).fileName();
            if (name == QLatin1String("PlainText.qml"))
                continue;
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
            for (int i = 0; i < lines.size(); ++i) {
                const QString code = lines.at(i).section(QStringLiteral("//"), 0, 0);
                if (bareText.match(code).hasMatch())
                    offences << name + QLatin1Char(':') + QString::number(i + 1) +
                                    QStringLiteral(": use PlainText");
                if (format.match(code).hasMatch())
                    offences << name + QLatin1Char(':') + QString::number(i + 1) +
                                    QStringLiteral(": textFormat is PlainText's alone");
            }
        }
        QVERIFY2(offences.isEmpty(), qPrintable(offences.join(QLatin1Char('\n'))));
    }
};

NORVA_TEST(PlainTextLintTest)
#include "tst_plainTextLint.moc"
