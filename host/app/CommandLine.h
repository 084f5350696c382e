// What the viewer's command line asks for.
#ifndef ORLUNE_HOST_APP_COMMANDLINE_H
#define ORLUNE_HOST_APP_COMMANDLINE_H

#include <QDir>
#include <QSize>
#include <QString>
#include <QStringList>

namespace host {

// What opens a camera. Empty values and lengths below 0 mean "as the camera has it".
struct CameraRequest
{
    QString camera; // key of the camera list, see CameraList.h; empty: the last one used, or the first
    int lutBytes = -1;
    QString frames; // "chart", "ramp", or the absolute path of a picture or of a folder of pictures
    QString pixelFormat;
    QSize size;
    QString stateFile; // keeps the stored user set, absolute
};

struct Options
{
    CameraRequest camera;
    bool chinese = false;
    QString pluginPath; // absolute; empty: Orlune.plx beside the application
    QString scriptFile; // absolute; empty: a person sits in front of the viewer
};

struct ParsedCommandLine
{
    enum class Outcome { Run, Help, Version, List, Wrong };

    Outcome outcome = Outcome::Run;
    Options options;
    QString text; // the help, the version, or one sentence that says what is wrong
};

// Paths are taken as relative to directory.
ParsedCommandLine parseCommandLine(const QStringList& arguments, const QDir& directory);

// What a camera looks at: a scene's name as it is, a path made absolute.
QString sceneName(const QString& text, const QDir& directory);

} // namespace host

#endif
