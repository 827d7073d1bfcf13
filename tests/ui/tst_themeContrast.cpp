#include "QmlViews.h"
#include "TestMain.h"

#include <QColor>
#include <QQmlContext>
#include <QQmlExpression>
#include <QtTest>

#include <cmath>

using namespace norva;

namespace {

// Relative luminance as the WCAG contrast formula defines it.
double luminance(const QColor& colour)
{
    const auto channel = [](double c) {
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(colour.redF()) + 0.7152 * channel(colour.greenF()) +
           0.0722 * channel(colour.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

} // namespace

class ThemeContrastTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        m_item = m_views.create(QStringLiteral("PlainText.qml"), {});
        QVERIFY(m_item);
    }

    // Every colour a text is drawn in reads against every surface a text sits on.
    void everyTextColourReadsOnEverySurface_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("surface");
        for (const char* text : {"text", "textDim", "textFaint", "accent", "good", "warn", "bad"})
            for (const char* surface : {"notch", "panel", "card", "cardHover"})
                QTest::addRow("%s on %s", text, surface)
                    << QString::fromLatin1(text) << QString::fromLatin1(surface);
    }

    void everyTextColourReadsOnEverySurface()
    {
        QFETCH(QString, text);
        QFETCH(QString, surface);
        const auto themeColour = [this](const QString& name) {
            QQmlExpression expression(qmlContext(m_item.get()), m_item.get(),
                                      QStringLiteral("Theme.") + name);
            return expression.evaluate().value<QColor>();
        };
        const QColor foreground = themeColour(text);
        const QColor background = themeColour(surface);
        QVERIFY(foreground.isValid() && background.isValid());
        const double ratio = contrast(foreground, background);
        QVERIFY2(ratio >= 4.5, qPrintable(QStringLiteral("%1:1").arg(ratio, 0, 'f', 2)));
    }

private:
    test::QmlViews m_views;
    std::unique_ptr<QQuickItem> m_item;
};

NORVA_TEST(ThemeContrastTest)
#include "tst_themeContrast.moc"
