// orlune-lut: the table tool. One command a call; --help tells the rest.
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>
#include <new>

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#endif

#include "tools/Apply.h"
#include "tools/Command.h"
#include "tools/Convert.h"
#include "tools/Diff.h"
#include "tools/Files.h"
#include "tools/Info.h"
#include "tools/Make.h"
#include "tools/Plot.h"

using namespace tools;

namespace {

const Command* const kCommands[] = {&kInfoCommand, &kMakeCommand,  &kConvertCommand,
                                    &kDiffCommand, &kApplyCommand, &kPlotCommand};

QString generalHelp()
{
    QString text = "Usage: orlune-lut COMMAND [options] ...\n\n"
                   "Makes, converts, compares and applies a camera's look-up tables.\n\nCommands:\n";
    for (const Command* command : kCommands)
        text += QString("  %1 %2\n").arg(command->name, -8).arg(command->summary);
    return text +
           "\norlune-lut COMMAND --help tells a command's options; orlune-lut --version the version.\n";
}

ExitStatus run(const Command* command, const QStringList& arguments)
{
    if (command)
        return command->run(arguments);
    const QString name = arguments.value(0);
    if (name == "-h" || name == "--help")
        throw HelpWanted{generalHelp()};
    if (name == "-v" || name == "--version")
        throw HelpWanted{"orlune-lut " ORLUNE_VERSION "\n"};
    const QString what =
        name.isEmpty() ? QString("A command is missing") : "There is no command " + quoted(name);
    throw Failure{kTrouble, what + " (see orlune-lut --help)."};
}

} // namespace

int main(int argc, char* argv[])
{
#ifdef Q_OS_WIN // streams of bytes, not of lines
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments += QFile::decodeName(argv[i]);
    const auto found = std::find_if(std::begin(kCommands), std::end(kCommands), [&](const Command* each) {
        return arguments.value(0) == QLatin1String(each->name);
    });
    const Command* command = found == std::end(kCommands) ? nullptr : *found;

    // What Qt and its plug-ins have to say of a file or of the surroundings is no sentence for a user.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});

    int ownArguments = 1; // Qt would take some for its own
    std::unique_ptr<QCoreApplication> app;
    if (command && command->draws) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QGuiApplication>(ownArguments, argv);
    } else {
        app = std::make_unique<QCoreApplication>(ownArguments, argv);
    }
    try {
        try {
            return run(command, arguments);
        } catch (const HelpWanted& help) {
            print(help.text.toLocal8Bit());
            return kGood;
        }
    } catch (const Failure& failure) {
        complain(failure.sentence);
        return failure.status;
    } catch (const std::bad_alloc&) {
        complain("There is not enough memory.");
        return kTrouble;
    }
}
