#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QTemporaryDir>

namespace norva::test {

// Points HOME and the XDG folders at a fresh temporary folder for as long as it lives, so a test
// never touches the person's own files. Restores the environment afterwards.
class TempHome {
public:
    TempHome();
    ~TempHome();
    TempHome(const TempHome&) = delete;
    TempHome& operator=(const TempHome&) = delete;

    QString path() const { return m_dir.path(); }
    QString file(const QString& relative) const { return m_dir.path() + QLatin1Char('/') + relative; }
    // Writes a file under the home (parents made); returns its absolute path.
    QString write(const QString& relative, const QByteArray& content) const;
    static QByteArray read(const QString& absolutePath);

private:
    QTemporaryDir m_dir;
    QMap<QByteArray, QByteArray> m_saved;
    QList<QByteArray> m_unset;
};

} // namespace norva::test
