// Runs the tool as a shell does.
#ifndef ORLUNE_TESTS_TOOLS_TOOLPROCESS_H
#define ORLUNE_TESTS_TOOLS_TOOLPROCESS_H

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

struct ToolRun
{
    int status; // -1: crashed or stuck
    QByteArray out;
    QByteArray err;
    // One sentence and nothing else.
    bool complains() const
    {
        return err.startsWith("orlune-lut: ") && err.endsWith('\n') && err.count('\n') == 1;
    }
};

// A folder that the tool runs in, and the files in it.
class ToolFolder
{
public:
    QString path(const QString& name) const { return m_dir.filePath(name); }

    void put(const QString& name, const QByteArray& bytes) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("no file to test with");
    }

    QByteArray get(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

    ToolRun run(const QStringList& arguments, const QByteArray& in = {}, const QString& outFile = {}) const
    {
        return runProgram(ORLUNE_LUT, arguments, in, outFile);
    }

    ToolRun runProgram(const QString& program, const QStringList& arguments, const QByteArray& in = {},
                       const QString& outFile = {}) const
    {
        QProcess process;
        process.setWorkingDirectory(m_dir.path());
        if (!outFile.isEmpty())
            process.setStandardOutputFile(outFile);
        process.start(program, arguments);
        process.write(in);
        process.closeWriteChannel();
        const bool ended = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
        return {ended ? process.exitCode() : -1, process.readAllStandardOutput(),
                process.readAllStandardError()};
    }

private:
    QTemporaryDir m_dir;
};

#endif
