// The text of a script, looked at as a whole before its first command is run. The commands are described in
// host/scripts/README.md.
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
    Reconnect,
    Plugin,
    Scene,
    Choose,
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
