// A temporary folder and the files in it.
#ifndef ORLUNE_TESTS_SUPPORT_TESTFOLDER_H
#define ORLUNE_TESTS_SUPPORT_TESTFOLDER_H

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

class TestFolder
{
public:
    QString path(const QString& name = {}) const { return m_dir.filePath(name); }

    // With the folders on the way to it. Gives its path.
    QString put(const QString& name, const QByteArray& bytes = {}) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("no file to test with");
        return file.fileName();
    }

    QByteArray get(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

    QStringList names() const
    {
        return QDir(path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private:
    QTemporaryDir m_dir;
};

#endif
