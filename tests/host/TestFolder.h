// A folder of a test's own, the files in it, and programs that run there.
#ifndef ORLUNE_TESTS_HOST_TESTFOLDER_H
#define ORLUNE_TESTS_HOST_TESTFOLDER_H

#include <QtTest>

class TestFolder
{
public:
    struct Run
    {
        int exitCode; // -1: crashed or stuck
        QString out;
        QString error;
    };

    QString path(const QString& name = {}) const { return m_folder.filePath(name); }

    void put(const QString& name, const QByteArray& bytes) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    QByteArray get(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // The arguments in one line, a blank between them.
    Run run(const QString& program, const QString& arguments,
            const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment()) const
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(path());
        process.start(program, arguments.split(' ', Qt::SkipEmptyParts));
        const bool ended = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
        return {ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

private:
    QTemporaryDir m_folder;
};

#endif
