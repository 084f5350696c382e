// Runs the viewer as a shell does.
#ifndef ORLUNE_TESTS_HOST_VIEWERFOLDER_H
#define ORLUNE_TESTS_HOST_VIEWERFOLDER_H

#include <QtTest>

#include "support/TestFolder.h"

// The folder that the viewer runs in.
class ViewerFolder : public TestFolder
{
public:
    struct Run
    {
        int exitCode; // -1: crashed or stuck
        QString out;
        QString error;
    };

    // The arguments in one line, a blank between them.
    Run run(const QString& arguments,
            const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment()) const
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(path());
        process.start(ORLUNE_HOST, arguments.split(' ', Qt::SkipEmptyParts));
        const bool ended = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
        return {ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
};

#endif
