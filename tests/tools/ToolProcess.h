// Runs the tool as a shell does.
#ifndef ORLUNE_TESTS_TOOLS_TOOLPROCESS_H
#define ORLUNE_TESTS_TOOLS_TOOLPROCESS_H

#include <QProcess>

#include "support/TestFolder.h"

struct ToolRun
{
    int status; // -1: crashed or stuck
    QByteArray out;
    QByteArray err;
};

// The folder that the tool runs in.
class ToolFolder : public TestFolder
{
public:
    // The arguments in one line, a blank between them.
    ToolRun run(const QString& line, const QByteArray& in = {}, const QString& outFile = {}) const
    {
        return runProgram(ORLUNE_LUT, line.split(' ', Qt::SkipEmptyParts), in, outFile);
    }

    // Whether the tool does it and has nothing to add.
    bool works(const QString& line) const { return isRight(line, run(line), 0, ""); }

    // Whether the tool refuses, with one sentence that has these words in it.
    bool refuses(const QString& line, const char* words, int status = 2) const
    {
        return isRight(line, run(line), status, words);
    }

    static bool isRight(const QString& line, const ToolRun& run, int status, const char* words)
    {
        const bool isSentence =
            run.err.startsWith("orlune-lut: ") && run.err.endsWith('\n') && run.err.count('\n') == 1;
        const bool isRefusal = isSentence && run.err.contains(words) && run.out.isEmpty();
        const bool right = run.status == status && (status == 0 ? run.err.isEmpty() : isRefusal);
        if (!right)
            qWarning("%s: %d %s", qPrintable(line), run.status, run.err.constData());
        return right;
    }

    ToolRun runProgram(const QString& program, const QStringList& arguments, const QByteArray& in = {},
                       const QString& outFile = {}) const
    {
        QProcess process;
        process.setWorkingDirectory(path());
        if (!outFile.isEmpty())
            process.setStandardOutputFile(outFile);
        process.start(program, arguments);
        process.write(in);
        process.closeWriteChannel();
        const bool ended = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
        return {ended ? process.exitCode() : -1, process.readAllStandardOutput(),
                process.readAllStandardError()};
    }
};

#endif
