#include "TempHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace norva::test {
namespace {
const QList<QByteArray> kVariables = {"HOME",           "XDG_DATA_HOME",  "XDG_CONFIG_HOME",
                                      "XDG_STATE_HOME", "XDG_CACHE_HOME", "COPILOT_HOME"};
}

TempHome::TempHome()
{
    for (const QByteArray& name : kVariables) {
        if (qEnvironmentVariableIsSet(name.constData()))
            m_saved.insert(name, qgetenv(name.constData()));
        else
            m_unset.append(name);
    }
    qputenv("HOME", QFile::encodeName(m_dir.path()));
    for (const QByteArray& name : kVariables.mid(1))
        qunsetenv(name.constData());
}

TempHome::~TempHome()
{
    for (auto it = m_saved.cbegin(); it != m_saved.cend(); ++it)
        qputenv(it.key().constData(), it.value());
    for (const QByteArray& name : m_unset)
        qunsetenv(name.constData());
}

QString TempHome::write(const QString& relative, const QByteArray& content) const
{
    const QString path = file(relative);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile out(path);
    if (out.open(QIODevice::WriteOnly | QIODevice::Truncate))
        out.write(content);
    return path;
}

QByteArray TempHome::read(const QString& absolutePath)
{
    QFile in(absolutePath);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

} // namespace norva::test
