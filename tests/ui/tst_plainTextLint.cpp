#include "TestMain.h"

#include <QDir>
#include <QFile>
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
        const QDir folder(QStringLiteral(NORVA_SOURCE_DIR "/src/ui/qml"));
        const QStringList files = folder.entryList({QStringLiteral("*.qml")}, QDir::Files);
        QVERIFY(files.contains(QStringLiteral("PlainText.qml")));
        static const QRegularExpression bareText(QStringLiteral(R"((^|[:\s])(Text|Label|StyledText)\s*\{)"));
        static const QRegularExpression format(QStringLiteral(R"(\btextFormat\s*:)"));
        QStringList offences;
        for (const QString& name : files) {
            if (name == QLatin1String("PlainText.qml"))
                continue;
            QFile file(folder.filePath(name));
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
