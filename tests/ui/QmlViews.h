#pragma once

#include "ManualClock.h"

#include "shell/AppFront.h"
#include "shell/Shell.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QVariantMap>

#include <memory>

namespace norva::test {

// Norva's QML files as the app loads them: copied from the source folders into one, beside a qmldir that
// makes Theme the singleton it is in the app's module, so a test creates the real views. The objects
// the views reach as singletons are a demo Norva's, every feature made and none started; a test
// offers its own (QmlInstances::offer) before it creates a view, and its own wins.
class QmlViews {
public:
    QmlViews();

    QQmlEngine& engine() { return m_engine; }
    Shell& shell() { return *m_shell; }
    ManualClock& clock() { return m_clock; }
    // Creates the view from `file` with the initial properties; null (with a warning) when it fails.
    std::unique_ptr<QQuickItem> create(const QString& file, const QVariantMap& properties);
    // Creates the view as create() does, puts it in `window` at `size` and shows the window.
    std::unique_ptr<QQuickItem> showIn(QQuickWindow& window, const QString& file, QSizeF size,
                                       const QVariantMap& properties = {});

    // Every text item drawn inside `root`, depth first.
    static QList<QQuickItem*> texts(QQuickItem* root);
    // The items inside `root` made from the given QML file name ("LiteralText").
    static QList<QQuickItem*> made(QQuickItem* root, const QString& typeName);
    // Every QML file of the app's module: the shell's in src/ui/qml and the features' in
    // src/<feature>/qml, as paths in the source tree.
    static QStringList sourceFiles();

private:
    QTemporaryDir m_folder;
    ManualClock m_clock;
    std::unique_ptr<Shell> m_shell;
    std::unique_ptr<AppFront> m_front;
    QQmlEngine m_engine;
};

} // namespace norva::test
