#include "platform/linux/XdgFileOpener.h"

#include "app/ProcessRun.h"

#include <QFileInfo>
#include <QMimeDatabase>

namespace norva {
namespace {

// Starts the opener in the background and waits for its verdict: its own status when it ends
// within the verdict time, success when it is still running then (the app it started is showing
// the file). Leaving it running is the point: when this shell ends, the app lives on.
const QString kOpenAndWait = QStringLiteral("\"$1\" \"$2\" </dev/null >/dev/null 2>&1 & opener=$!\n"
                                            "tenths=0\n"
                                            "while kill -0 \"$opener\" 2>/dev/null; do\n"
                                            "    [ \"$tenths\" -ge \"$3\" ] && exit 0\n"
                                            "    sleep 0.1\n"
                                            "    tenths=$((tenths + 1))\n"
                                            "done\n"
                                            "wait \"$opener\"\n");
constexpr int kSlackMs = 5000;        // beyond the verdict time, for a machine under load
constexpr int kQueryTimeoutMs = 5000; // xdg-mime reads a few small files

const QString kFolderType = QStringLiteral("inode/directory");
const QString kUnknownType = QStringLiteral("application/octet-stream");

} // namespace

XdgFileOpener::XdgFileOpener(QString xdgOpen, QString xdgMime)
    : m_xdgOpen(std::move(xdgOpen)), m_xdgMime(std::move(xdgMime))
{}

QString XdgFileOpener::adviceFor(const QString& type, const QString& description, const QString& app)
{
    const QString choose = QStringLiteral("xdg-mime default APP.desktop ") + type;
    if (!app.isEmpty())
        return app + QStringLiteral(" did not open it. Choose another app: ") + choose;
    if (type == kFolderType)
        return QStringLiteral("Nothing here opens folders. Install a file manager, or choose one: ") + choose;
    const QString kind = type == kUnknownType || description.isEmpty()
                             ? QStringLiteral("files like this one")
                             : QStringLiteral("“") + description + QStringLiteral("” files");
    return QStringLiteral("Nothing here opens ") + kind + QStringLiteral(" (") + type +
           QStringLiteral("). Install an app for them, or choose one: ") + choose;
}

QString XdgFileOpener::defaultAppFor(const QString& type) const
{
    if (m_xdgMime.isEmpty())
        return {};
    const ProcessResult query = runProcess(
        m_xdgMime, {QStringLiteral("query"), QStringLiteral("default"), type}, {}, kQueryTimeoutMs);
    return query.succeeded() ? QString::fromUtf8(query.output).trimmed() : QString();
}

std::optional<FileOpener::Refusal> XdgFileOpener::open(const QString& path)
{
    if (m_xdgOpen.isEmpty() || !QFileInfo(m_xdgOpen).isExecutable())
        return Refusal{QStringLiteral("xdg-open is not installed"),
                       QStringLiteral("Norva opens files with xdg-open: install the xdg-utils package.")};
    const ProcessResult run = runProcess(QStringLiteral("/bin/sh"),
                                         {QStringLiteral("-c"), kOpenAndWait, QStringLiteral("sh"), m_xdgOpen,
                                          path, QString::number(kVerdictTenths)},
                                         {}, kVerdictTenths * 100 + kSlackMs);
    if (run.succeeded())
        return std::nullopt;
    const QMimeType type = QMimeDatabase().mimeTypeForFile(path);
    const QString app = defaultAppFor(type.name());
    const QString why = (app.isEmpty() ? QStringLiteral("no app is set for ") + type.name()
                                       : app + QStringLiteral(" is set for ") + type.name()) +
                        QStringLiteral("; ") + run.failureReason(QStringLiteral("xdg-open"));
    return Refusal{why, adviceFor(type.name(), type.comment(), app)};
}

} // namespace norva
