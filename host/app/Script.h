// The text of a script: one command a line, words apart by blanks, "#" starts a comment line. Every line is
// looked at before the first one is run.
//
//   show, hide                 the plug-in's window
//   set NAME VALUE             a slider to a number, a combo box to an entry, a button to on or off
//   click NAME [X Y]           in the middle of the widget, or at a position inside it
//   type NAME [TEXT]           replaces the text of a line edit and presses Return
//   tab                        presses Tab
//   wheel NAME STEPS           turns the wheel over the widget, away from the user for steps above 0
//   file [PATH]                answers the next file dialog; without a path it is cancelled
//   get NAME                   value and state of a widget
//   register FILE              writes the bytes of the camera's LUT register to a file
//   userset FILE               the same for its copy in the stored user set
//   poke FILE                  loads a file's bytes into the register, below the camera's nodes
//   frame FILE                 writes the first frame of the stream, mapped, as a PGM file
//   fault NAME on|off          lets the camera play a fault
//   lock on|off                locks the camera's parameters, as another program would
//   stream on|off              starts or stops the stream
//   camera KEY [BYTES]         opens another camera, with a register of so many bytes
//   plugin                     ends the plug-in object and starts a new one on the same camera
//   screenshot FILE            the open windows as a picture
//   wait MILLISECONDS
//   quit
//
// NAME is a widget's object name. PATH and FILE are relative to the directory that the viewer was started in,
// and may hold blanks.
#ifndef ORLUNE_HOST_APP_SCRIPT_H
#define ORLUNE_HOST_APP_SCRIPT_H

#include <QString>
#include <QStringList>
#include <QVector>

namespace host {

enum class Verb {
    Show,
    Hide,
    Set,
    Click,
    Type,
    Tab,
    Wheel,
    File,
    Get,
    Register,
    UserSet,
    Poke,
    Frame,
    Fault,
    Lock,
    Stream,
    Camera,
    Plugin,
    Screenshot,
    Wait,
    Quit
};

struct ScriptCommand
{
    int line; // counted from 1
    Verb verb;
    QStringList words; // behind the verb
    QString text;      // the whole command, blanks trimmed
};

struct Script
{
    QVector<ScriptCommand> commands;
    QString error;     // empty, or what is wrong
    int errorLine = 0; // where
};

// Stops at the first wrong line.
Script parseScript(const QString& text);

} // namespace host

#endif
