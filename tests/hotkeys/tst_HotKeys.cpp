#include "LogCapture.h"
#include "MemoryPreferences.h"
#include "TestMain.h"

#include "app/SettingsStore.h"
#include "hotkeys/HotKeys.h"

#include <QSignalSpy>
#include <QtTest>

using namespace norva;

namespace {

// A desktop whose answer to every grab is set by the test.
class StatedGrab final : public HotKeyGrab {
public:
    Result answer = Result::grabbed;
    QHash<QString, QKeyCombination> held;

    Result grab(const QString& name, QKeyCombination key) override
    {
        if (answer == Result::grabbed)
            held.insert(name, key);
        return answer;
    }
    void release(const QString& name) override { held.remove(name); }
};

const QString kJotKey = QStringLiteral("hotkeys.jot.v1");

} // namespace

class HotKeysTest : public QObject {
    Q_OBJECT
private slots:
    void eachKeyIsGrabbedOrItsTroubleTold_data()
    {
        QTest::addColumn<QVariant>("stored"); // invalid: the key is absent
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("trouble");
        QTest::addColumn<QString>("logged");
        using R = HotKeyGrab::Result;
        QTest::newRow("the default, free") << QVariant() << int(R::grabbed) << ""
                                           << "";
        QTest::newRow("switched off") << QVariant("") << int(R::taken) << ""
                                      << "";
        QTest::newRow("held by another program") << QVariant("Ctrl+Alt+J") << int(R::taken)
                                                 << "Ctrl+Alt+J is taken by another program. Choose another "
                                                    "key, or bind \u201Cnorva --jot\u201D in your "
                                                    "desktop's keyboard settings."
                                                 << "Norva keys: could not take Ctrl+Alt+J for the jot sheet "
                                                    "(another program holds it); norva --jot "
                                                    "still opens it";
        QTest::newRow("a desktop that keeps its keys")
            << QVariant("Meta+J") << int(R::notOffered)
            << "This desktop keeps its keys to itself. Bind \u201Cnorva --jot\u201D in your desktop's "
               "keyboard "
               "settings."
            << "Meta+J for the jot sheet (this desktop lets no program take keys)";
        QTest::newRow("not a key")
            << QVariant("Ctrl+Banana") << int(R::grabbed)
            << "Norva can't read \u201CCtrl+Banana\u201D as a key. Write one such as Ctrl+Alt+J."
            << "(it is not a key)";
        QTest::newRow("a bare letter")
            << QVariant("J") << int(R::grabbed)
            << "J alone would be taken from every program. Add Ctrl, Alt or Super to it."
            << "(it needs Ctrl, Alt or Super with it)";
        QTest::newRow("the notch's own key") << QVariant("Ctrl+Alt+N") << int(R::grabbed)
                                             << "Ctrl+Alt+N already opens the notch. Choose another key."
                                             << "(it already opens the notch)";
        QTest::newRow("the wrong type") << QVariant(7) << int(R::grabbed) << ""
                                        << "reading hotkeys.jot.v1 failed";
    }
    void eachKeyIsGrabbedOrItsTroubleTold()
    {
        QFETCH(QVariant, stored);
        QFETCH(int, answer);
        QFETCH(QString, trouble);
        QFETCH(QString, logged);
        test::MemoryPreferences preferences;
        if (stored.isValid())
            preferences.setValue(kJotKey, stored);
        SettingsStore settings(preferences);
        StatedGrab grab;
        grab.answer = HotKeyGrab::Result(answer);
        test::LogCapture log;
        HotKeys keys(settings, grab);
        keys.start();
        QCOMPARE(keys.trouble(HotKeys::jotName), trouble);
        if (!logged.isEmpty())
            QCOMPARE(log.count(logged), 1);
        QCOMPARE(grab.held.contains(HotKeys::jotName),
                 trouble.isEmpty() && answer == int(HotKeyGrab::Result::grabbed) && stored != QVariant(""));
    }

    void aChangedSettingRegrabsAndATroubleIsLoggedOnce()
    {
        test::MemoryPreferences preferences;
        SettingsStore settings(preferences);
        StatedGrab grab;
        HotKeys keys(settings, grab);
        keys.start();
        QCOMPARE(grab.held.value(HotKeys::jotName),
                 QKeyCombination(Qt::ControlModifier | Qt::AltModifier, Qt::Key_J));

        QSignalSpy told(&keys, &HotKeys::keysChanged);
        keys.setKey(HotKeys::jotName, QStringLiteral("ctrl+shift+k"));
        QCOMPARE(settings.storedText(kJotKey), QStringLiteral("Ctrl+Shift+K"));
        QCOMPARE(grab.held.value(HotKeys::jotName),
                 QKeyCombination(Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_K));
        QCOMPARE(told.count(), 1);

        test::LogCapture log;
        grab.answer = HotKeyGrab::Result::taken;
        keys.setKey(HotKeys::jotName, QStringLiteral("Ctrl+Alt+K"));
        settings.write(true,
                       QStringLiteral("notch.peekOnHover.v1")); // an unrelated change binds nothing again
        QVERIFY(!grab.held.contains(HotKeys::jotName));
        QCOMPARE(log.count(QStringLiteral("could not take Ctrl+Alt+K")), 1);
        QVERIFY(keys.keys()
                    ->get(1)
                    .value(QStringLiteral("trouble"))
                    .toString()
                    .startsWith("Ctrl+Alt+K is taken"));
    }
};

NORVA_TEST(HotKeysTest)
#include "tst_HotKeys.moc"
