// What the commands have in common: a row that describes each, and the reading of its command line.
#ifndef ORLUNE_TOOLS_COMMAND_H
#define ORLUNE_TOOLS_COMMAND_H

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include "tools/Failure.h"

namespace tools {

struct Command
{
    const char* name;
    const char* operands; // as the usage line shows them
    int minOperands;
    int maxOperands; // -1: any number
    const char* summary;
    const char* details; // the rest of its --help
    // arguments[0] is the command's name. Throws Failure and HelpWanted.
    ExitStatus (*run)(const QStringList& arguments);
    bool draws = false; // needs a QGuiApplication
};

// Leaves a command whose help is asked for.
struct HelpWanted
{
    QString text;
};

// Reads the command's line into the parser, which has the command's options already. Throws HelpWanted, or
// Failure when an option or the number of operands is wrong.
void parseArguments(QCommandLineParser& parser, const Command& command, const QStringList& arguments);

// Options of several commands.
QCommandLineOption forceOption();
QCommandLineOption jsonOption();

// A sentence on the error output, about a failure or about something to know.
void complain(const QString& sentence);
void note(const QString& sentence);

} // namespace tools

#endif
