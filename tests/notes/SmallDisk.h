#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace norva::test {

// A tiny tmpfs of its own for as long as it lives, to fill up or to make read-only. Mounting needs
// root (the test machine's containers run as root); elsewhere isMounted() is false and the test skips.
class SmallDisk {
public:
    explicit SmallDisk(const QString& options = QStringLiteral("size=64k"))
    {
        m_mounted = QProcess::execute(QStringLiteral("mount"),
                                      {QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("-o"),
                                       options, QStringLiteral("tmpfs"), m_dir.path()}) == 0;
    }
    ~SmallDisk()
    {
        if (m_mounted)
            QProcess::execute(QStringLiteral("umount"), {QStringLiteral("-l"), m_dir.path()});
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool isMounted() const { return m_mounted; }
    QString path() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
    bool m_mounted = false;
};

} // namespace norva::test
