// orlune-lut: the table tool. One command a call; --help tells the rest.
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>

#include <QCoreApplication>
#include <QFile>

#include "tools/Command.h"
#include "tools/Convert.h"
#include "tools/Diff.h"
#include "tools/Files.h"
#include "tools/Info.h"
#include "tools/Make.h"

using namespace tools;

namespace {

const Command* const kCommands[] = {&kInfoCommand, &kMakeCommand, &kConvertCommand, &kDiffCommand};

QString generalHelp()
{
    QString text = "Usage: orlune-lut COMMAND [options] ...\n\n"
                   "Makes, converts, compares and applies a camera's look-up tables.\n\nCommands:\n";
    for (const Command* command : kCommands)
        text += QString("  %1 %2\n").arg(command->name, -8).arg(command->summary);
    return text +
           "\norlune-lut COMMAND --help tells a command's options; orlune-lut --version the version.\n";
}

ExitStatus run(const QStringList& arguments)
{
    const QString name = arguments.value(0);
    if (name == "-h" || name == "--help")
        throw HelpWanted{generalHelp()};
    if (name == "-v" || name == "--version")
        throw HelpWanted{"orlune-lut " ORLUNE_VERSION "\n"};
    const auto command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                      [&](const Command* each) { return name == QLatin1String(each->name); });
    if (command == std::end(kCommands))
        throw Failure{kTrouble,
                      name.isEmpty()
                          ? QString("A command is missing (see orlune-lut --help).")
                          : QString("There is no command %1 (see orlune-lut --help).").arg(quoted(name))};
    return (*command)->run(arguments);
}

} // namespace

int main(int argc, char* argv[])
{
    int ownArguments = 1; // Qt would take some for its own
    const QCoreApplication app(ownArguments, argv);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments += QFile::decodeName(argv[i]);
    try {
        try {
            return run(arguments);
        } catch (const HelpWanted& help) {
            print(help.text);
            return kGood;
        }
    } catch (const Failure& failure) {
        std::fprintf(stderr, "orlune-lut: %s\n", failure.sentence.toLocal8Bit().constData());
        return failure.status;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "orlune-lut: There is not enough memory.\n");
        return kTrouble;
    }
}
