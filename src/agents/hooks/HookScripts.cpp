#include "agents/hooks/HookScripts.h"

#include <QFile>

namespace norva {
namespace {

const QByteArray folderPlaceholder = QByteArrayLiteral("@NORVA_APPROVALS@");
const QByteArray commonPlaceholder = QByteArrayLiteral("@NORVA_COMMON@\n");

QByteArray shipped(const QString& name)
{
    QFile file(QStringLiteral(":/agents/scripts/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
constexpr int scriptMode = 0755;

} // namespace

QByteArray HookScripts::text(const QString& name, const QString& approvalsFolder)
{
    if (name.contains(QLatin1Char('/')) || name == QLatin1String("common.sh"))
        return {};
    QByteArray script = shipped(name);
    // The functions every hook shares are written into each script, so it stands on its own.
    script.replace(commonPlaceholder, shipped(QStringLiteral("common.sh")));
    script.replace(folderPlaceholder, shellQuoted(approvalsFolder).toUtf8());
    return script;
}

FileResult HookScripts::write(const QString& name, const ApprovalsFolder& folder)
{
    if (const FileResult ready = folder.ensure(); !ready)
        return ready;
    const QByteArray script = text(name, folder.path());
    if (script.isEmpty())
        return FileResult::failed(QStringLiteral("Norva has no script named ") + name);
    return folder.write(name, script, scriptMode);
}

QString HookScripts::shellQuoted(const QString& text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('\''), QStringLiteral("'\\''"));
    return QLatin1Char('\'') + escaped + QLatin1Char('\'');
}

QString HookScripts::command(const QString& scriptPath)
{
    return QStringLiteral("sh ") + shellQuoted(scriptPath);
}

} // namespace norva
