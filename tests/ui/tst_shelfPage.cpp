#include "QmlViews.h"
#include "ShelfDeskRig.h"
#include "TestImages.h"
#include "TestMain.h"

#include "app/QmlInstances.h"
#include "app/SettingsStore.h"
#include "notch/NotchViewModel.h"
#include "shelf/ShelfDesk.h"
#include "shelf/ShelfManager.h"
#include "shelf/ShelfPlatform.h"

#include <QMimeData>
#include <QQuickWindow>
#include <QtTest>

using namespace norva;
using namespace norva::test;

namespace {

// The shelf page as the notch shows it: the real desk over a shelf in a temporary home, drawn in a
// window of the open panel's size.
struct PageRig : ShelfDeskRig {
    QmlViews views;
    QQuickWindow window;

    PageRig()
    {
        QmlInstances::offer(&desk);
        QmlInstances::offer(&settings);
        window.resize(700, 420);
    }
    std::unique_ptr<QQuickItem> show(const QString& file, const QVariantMap& properties = {})
    {
        return views.showIn(window, file, QSizeF(700, 420), properties);
    }
};

QQuickItem* child(QQuickItem* root, const QString& objectName)
{
    if (root->objectName() == objectName)
        return root;
    for (QQuickItem* item : root->childItems()) {
        if (QQuickItem* found = child(item, objectName))
            return found;
    }
    return nullptr;
}

QQuickItem* tileNamed(QQuickItem* page, const QString& name)
{
    for (QQuickItem* tile : QmlViews::made(page, QStringLiteral("ShelfTile"))) {
        if (tile->property("item").toMap().value(QStringLiteral("name")).toString() == name)
            return tile;
    }
    return nullptr;
}

QStringList shownTexts(QQuickItem* root)
{
    QStringList texts;
    for (QQuickItem* text : QmlViews::texts(root)) {
        if (text->isVisible())
            texts << text->property("text").toString();
    }
    return texts;
}

QRectF sceneRect(QQuickItem* item)
{
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
}

void click(QQuickWindow& window, QQuickItem* item)
{
    QTest::mouseClick(&window, Qt::LeftButton, {},
                      item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint());
}

QQuickItem* buttonLabelled(QQuickItem* root, const QString& label)
{
    for (QQuickItem* button : QmlViews::made(root, QStringLiteral("TextButton"))) {
        if (button->property("label").toString() == label)
            return button;
    }
    return nullptr;
}

} // namespace

class ShelfPageTest : public QObject {
    Q_OBJECT

private slots:
    // The tile's actions sit in a bar of their own under the name, never over the picture; the rest
    // open as a menu that offers only the formats the picture can become.
    void actionsLeaveThePictureClearAndConvertOffersOtherFormats()
    {
        PageRig rig;
        const QString photo = rig.home.write(QStringLiteral("Pictures/photo.png"), pngBytes(Qt::red, 40));
        rig.shelf.shelve(photo);
        auto page = rig.show(QStringLiteral("ShelfPage.qml"));
        QVERIFY(page);
        QQuickItem* tile = nullptr;
        QTRY_VERIFY((tile = tileNamed(page.get(), QStringLiteral("photo.png"))));
        QQuickItem* picture = child(tile, QStringLiteral("picture"));
        QQuickItem* bar = child(tile, QStringLiteral("actionBar"));
        QVERIFY(picture && bar);
        QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
        QTest::mouseMove(&rig.window, tile->mapToScene(QPointF(20, 20)).toPoint());
        QTRY_COMPARE(bar->opacity(), 1.0);
        QVERIFY(!sceneRect(bar).intersects(sceneRect(picture)));
        QVERIFY(sceneRect(tile).contains(sceneRect(bar)));

        click(rig.window, buttonLabelled(tile, QStringLiteral("More…")));
        QQuickItem* menu = QmlViews::made(page.get(), QStringLiteral("ShelfMenu")).value(0);
        QVERIFY(menu);
        QTRY_VERIFY(menu->isVisible());
        const QStringList entries = shownTexts(menu);
        QVERIFY2(entries.contains(QStringLiteral("Convert to JPEG")), qPrintable(entries.join(", ")));
        QVERIFY(entries.contains(QStringLiteral("Convert to PDF")));
        QVERIFY(!entries.contains(QStringLiteral("Convert to PNG")));
        QVERIFY(QRectF(0, 0, 700, 420).contains(sceneRect(menu)));
        QVERIFY(!sceneRect(menu).intersects(sceneRect(tile)));

        QQuickItem* toPdf = nullptr;
        for (QQuickItem* text : QmlViews::texts(menu)) {
            if (text->property("text").toString() == QLatin1String("Convert to PDF"))
                toPdf = text;
        }
        QTRY_VERIFY(toPdf->mapToItem(menu, QPointF()).y() > 100); // the menu's rows are laid out
        click(rig.window, toPdf);
        QTRY_VERIFY(!menu->isVisible());
        QTRY_COMPARE(rig.shelf.items().size(), 2);
        QCOMPARE(QFileInfo(rig.shelf.items().first().path).fileName(), QStringLiteral("photo.pdf"));
    }

    void filesOfTheSameNameShowTheirFolders()
    {
        PageRig rig;
        rig.shelf.shelve(rig.home.write(QStringLiteral("Downloads/report.pdf"), "%PDF-1.4 a"));
        rig.shelf.shelve(rig.home.write(QStringLiteral("Documents/report.pdf"), "%PDF-1.4 b"));
        rig.shelf.shelve(rig.home.write(QStringLiteral("Documents/notes.txt"), "notes"));
        auto page = rig.show(QStringLiteral("ShelfPage.qml"));
        QVERIFY(page);
        QTRY_COMPARE(QmlViews::made(page.get(), QStringLiteral("ShelfTile")).size(), 3);
        const QStringList texts = shownTexts(page.get());
        QVERIFY2(texts.contains(QStringLiteral("Downloads")), qPrintable(texts.join(", ")));
        QVERIFY(texts.contains(QStringLiteral("Documents")));
        // A name of its own needs no folder: notes.txt shows its size.
        QVERIFY(texts.contains(QStringLiteral("5 bytes")));
    }

    // Whatever the source proposes (Shift asks a file manager to move), the notch answers with a
    // copy, so the source never deletes the file it dragged; the notch is told of the drag throughout.
    void dropIsTakenAsACopyAndTheNotchSeesTheDrag()
    {
        PageRig rig;
        NotchViewModel notch(rig.clock, rig.settings);
        const QString file = rig.home.write(QStringLiteral("Downloads/invoice.pdf"), "%PDF-1.4");
        auto area = rig.show(QStringLiteral("ShelfDropArea.qml"),
                             {{QStringLiteral("notchModel"), QVariant::fromValue(&notch)},
                              {QStringLiteral("overNotch"), true}});
        QVERIFY(area);
        QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file)});
        const QPointF at(100, 100);
        const Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction;

        QDragEnterEvent enter(at.toPoint(), offered, &data, Qt::LeftButton, Qt::ShiftModifier);
        QCOMPARE(enter.proposedAction(), Qt::MoveAction);
        QCoreApplication::sendEvent(&rig.window, &enter);
        QVERIFY(enter.isAccepted());
        QVERIFY(notch.dragOver());
        QCOMPARE(notch.state(), NotchViewModel::State::peek);

        // Qt answers the drag's source with the move that follows each enter, as the platform sends it.
        QDragMoveEvent move(QPoint(120, 110), offered, &data, Qt::LeftButton, Qt::ShiftModifier);
        QCoreApplication::sendEvent(&rig.window, &move);
        QVERIFY(move.isAccepted());
        QCOMPARE(move.dropAction(), Qt::CopyAction);

        QDropEvent drop(QPointF(120, 110), offered, &data, Qt::LeftButton, Qt::ShiftModifier);
        QCoreApplication::sendEvent(&rig.window, &drop);
        QVERIFY(drop.isAccepted());
        QCOMPARE(drop.dropAction(), Qt::CopyAction);
        QCOMPARE(rig.shelf.items().size(), 1);
        QCOMPARE(rig.shelf.items().first().path, file);
        QVERIFY(QFile::exists(file));
        QVERIFY(!notch.dragOver());
        QCOMPARE(notch.state(), NotchViewModel::State::closed);
    }
};

NORVA_TEST(ShelfPageTest)
#include "tst_shelfPage.moc"
