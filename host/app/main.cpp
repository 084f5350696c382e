// orlune-host: opens a camera, the plug-in on it, and the viewer's window; or runs a script on them.
//
// Exit codes: 0; 1 when the module, the camera or a file cannot be had; 2 when the command line or a command
// of the script is wrong. The reason is one sentence on the error output.

#include <cstdio>
#include <memory>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include "host/app/Appearance.h"
#include "host/app/CameraList.h"
#include "host/app/CommandLine.h"
#include "host/app/MainWindow.h"
#include "host/app/PluginModule.h"
#include "host/app/ScriptRunner.h"

namespace {

enum ExitCode { kDone = 0, kFailed = 1, kWrongInput = 2 };

int fail(ExitCode code, const QString& sentence)
{
    std::fprintf(stderr, "orlune-host: %s\n", sentence.toUtf8().constData());
    return code;
}

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

// A camera a line: key, then title.
int listCameras()
{
    const host::FoundCameras found = host::findRealCameras();
    for (const host::CameraEntry& entry : host::cameraEntries() + found.entries)
        std::printf("%-24s%s\n", entry.key.toUtf8().constData(), entry.title.toUtf8().constData());
    for (const QString& problem : found.problems)
        std::printf("%s\n", problem.toUtf8().constData());
    return kDone;
}

int printCommandLine(const host::ParsedCommandLine& parsed)
{
    using Outcome = host::ParsedCommandLine::Outcome;
    if (parsed.outcome == Outcome::Wrong)
        return fail(kWrongInput, parsed.text);
    if (parsed.outcome == Outcome::List)
        return listCameras();
    std::printf("%s\n", parsed.text.toUtf8().constData());
    return kDone;
}

int runScript(host::MainWindow& window, const host::Options& options, const QDir& directory)
{
    QFile file(options.scriptFile);
    const QString name = directory.relativeFilePath(options.scriptFile);
    if (!file.open(QIODevice::ReadOnly))
        return fail(kFailed, QString("The script %1 cannot be read: %2.").arg(name, file.errorString()));
    const host::Script script = host::parseScript(QString::fromUtf8(file.readAll()));
    if (!script.error.isEmpty())
        return fail(kWrongInput,
                    QString("%1, line %2: %3").arg(name).arg(script.errorLine).arg(script.error));

    // File dialogs keep a history of their own in the user's settings; a script neither reads nor writes it.
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());

    QFile out;
    // By its number: each line is out before the next thing happens.
    if (!out.open(fileno(stdout), QIODevice::WriteOnly | QIODevice::Unbuffered))
        return fail(kFailed, "The transcript cannot be written.");
    host::Transcript transcript(out, directory);
    host::ScriptRunner runner(window, transcript, directory);
    window.show();
    const QString error = window.openCamera(options.camera);
    if (!error.isEmpty())
        return fail(kFailed, error);
    if (!runner.run(script))
        return fail(kWrongInput, QString("%1, %2").arg(name, runner.error()));
    return kDone;
}

int runViewer(host::MainWindow& window, const host::Options& options)
{
    window.show();
    host::CameraRequest request = options.camera;
    if (request.camera.isEmpty()) { // the last one, unless it cannot be had any more
        request.camera = window.cameraRequest().camera;
        if (request.lutBytes < 0)
            request.lutBytes = window.cameraRequest().lutBytes;
    }
    QString error = window.openCamera(request);
    if (!error.isEmpty() && options.camera.camera.isEmpty()) {
        window.log(error);
        error = window.openCamera(options.camera);
    }
    if (!error.isEmpty())
        return fail(kFailed, error);
    window.showEditor();
    return QApplication::exec();
}

} // namespace

int main(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QFile::decodeName(argv[i]);
    int qtArguments = 1; // Qt would take --plugin for an option of its own
    const QDir directory = QDir::current();
    host::ParsedCommandLine parsed;
    {
        // What opens no window needs no display, not even one that is named and cannot be reached.
        const QCoreApplication app(qtArguments, argv);
        parsed = host::parseCommandLine(arguments, directory);
        if (parsed.outcome != host::ParsedCommandLine::Outcome::Run)
            return printCommandLine(parsed);
    }
    const host::Options& options = parsed.options;
    const bool scripted = !options.scriptFile.isEmpty();
    if (!hasDisplay()) {
        if (!scripted)
            return fail(kFailed, "There is no display to open the viewer on; --script runs without one.");
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QApplication app(qtArguments, argv);
    QApplication::setOrganizationName("Orlune");
    QApplication::setApplicationName("orlune-host");
    QApplication::setDesktopFileName("org.orlune.Host");

    // The plug-in finds its standard curves relative to the working directory.
    QDir::setCurrent(QApplication::applicationDirPath());
    const QString modulePath = options.pluginPath.isEmpty()
                                   ? QApplication::applicationDirPath() + "/Orlune.plx"
                                   : options.pluginPath;
    QString error;
    const std::unique_ptr<host::PluginModule> module = host::PluginModule::load(modulePath, &error);
    if (!module)
        return fail(kFailed, error);

    host::applyStyle();
    host::applyColours(host::Colours::Light);
    std::unique_ptr<QSettings> settings;
    if (!scripted)
        settings = std::make_unique<QSettings>();
    host::MainWindow window(*module, options.chinese, settings.get());
    return scripted ? runScript(window, options, directory) : runViewer(window, options);
}
