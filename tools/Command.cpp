#include "tools/Command.h"

#include <cstdio>

namespace tools {

void parseArguments(QCommandLineParser& parser, const Command& command, const QStringList& arguments)
{
    const QCommandLineOption help({"h", "help"}, "Prints this help.");
    parser.addOption(help);
    const QString name = QString("orlune-lut %1").arg(command.name);
    const bool isRight = parser.parse(arguments);
    if (parser.isSet(help)) {
        parser.setApplicationDescription(QString("%1\n\n%2").arg(command.summary, command.details));
        // The parser's own usage line knows nothing of commands.
        const QString text = parser.helpText();
        throw HelpWanted{QString("Usage: %1 [options] %2").arg(name, command.operands) + '\n' +
                         text.mid(text.indexOf('\n'))};
    }
    if (!isRight)
        throw Failure{kTrouble,
                      QString("%1 (see %2 --help).").arg(parser.errorText().remove(QRegExp("\\.$")), name)};
    const int operands = parser.positionalArguments().size();
    if (operands < command.minOperands || (command.maxOperands >= 0 && operands > command.maxOperands))
        throw Failure{
            kTrouble,
            QString("The command is: %1 [options] %2 (see %1 --help).").arg(name, command.operands)};
}

QCommandLineOption forceOption()
{
    return {{"f", "force"}, "Overwrites what exists."};
}

QCommandLineOption jsonOption()
{
    return {"json", "Prints JSON."};
}

void complain(const QString& sentence)
{
    std::fprintf(stderr, "orlune-lut: %s\n", sentence.toLocal8Bit().constData());
}

void note(const QString& sentence)
{
    complain("note: " + sentence);
}

} // namespace tools
