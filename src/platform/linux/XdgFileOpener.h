#pragma once

#include "shelf/FileOpener.h"

#include <QStandardPaths>

namespace norva {

// Opens files through xdg-open, as every Linux desktop answers it. Where xdg-open fails, the
// advice names the file's type and the xdg-mime line that sets an app for it; where xdg-open
// itself is missing, it names the package that brings it.
class XdgFileOpener final : public FileOpener {
public:
    // How long xdg-open has to fail before the file counts as opened, in tenths of a second. Without
    // a desktop of its own, xdg-open runs the chosen app in its own process and returns only when
    // the app is closed: an xdg-open still running after this long is an app showing the file.
    static constexpr int kVerdictTenths = 20;

    explicit XdgFileOpener(QString xdgOpen = QStandardPaths::findExecutable(QStringLiteral("xdg-open")),
                           QString xdgMime = QStandardPaths::findExecutable(QStringLiteral("xdg-mime")));

    std::optional<Refusal> open(const QString& path) override;

    // The advice for a type no app opens, or whose app did not: `app` is the one set for it, if any.
    static QString adviceFor(const QString& type, const QString& description, const QString& app);

private:
    QString defaultAppFor(const QString& type) const;

    QString m_xdgOpen;
    QString m_xdgMime;
};

} // namespace norva
