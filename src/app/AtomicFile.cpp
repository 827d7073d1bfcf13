#include "app/AtomicFile.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace norva {

std::optional<QString> writeFileAtomically(const QString& path, const QByteArray& bytes)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return QStringLiteral("its folder could not be made");
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    if (file.write(bytes) != bytes.size()) {
        const QString why = file.errorString();
        file.cancelWriting();
        return why;
    }
    if (!file.commit())
        return file.errorString();
    return std::nullopt;
}

} // namespace norva
