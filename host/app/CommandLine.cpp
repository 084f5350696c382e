#include "host/app/CommandLine.h"

#include <QCommandLineParser>
#include <QRegularExpression>

#include "host/app/CameraList.h"
#include "host/frames/FrameSource.h"

namespace host {

namespace {

ParsedCommandLine wrong(const QString& sentence)
{
    ParsedCommandLine result;
    result.outcome = ParsedCommandLine::Outcome::Wrong;
    result.text = sentence;
    return result;
}

QSize parseSize(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
    const QRegularExpressionMatch match = form.match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    const bool good = size.width() > 0 && size.width() <= kMaxFrameSide && size.height() > 0 &&
                      size.height() <= kMaxFrameSide;
    return good ? size : QSize();
}

} // namespace

QString sceneName(const QString& text, const QDir& directory)
{
    const bool isPath = !text.isEmpty() && text != "chart" && text != "ramp";
    return isPath ? QDir::cleanPath(directory.absoluteFilePath(text)) : text;
}

ParsedCommandLine parseCommandLine(const QStringList& arguments, const QDir& directory)
{
    const QCommandLineOption camera("camera", "Camera to open: " + cameraKeys() + ".", "CAMERA");
    const QCommandLineOption list("list", "Prints the cameras, the real ones in reach among them.");
    const QCommandLineOption lutBytes("lut-bytes", "Length of the camera's LUT register.", "BYTES");
    const QCommandLineOption language("language", "Language of the plug-in: en or zh.", "LANGUAGE", "en");
    const QCommandLineOption plugin("plugin", "Module to load instead of Orlune.plx beside the application.",
                                    "PATH");
    const QCommandLineOption frames(
        "frames", "What the camera sees: chart, ramp, a picture, or a folder of pictures.", "SCENE");
    const QCommandLineOption pixelFormat("pixel-format", "Format of the frames, for instance BayerRG12.",
                                         "NAME");
    const QCommandLineOption size("size", "Size of the frames in pixels.", "WxH");
    const QCommandLineOption state("state", "File that keeps the camera's stored user set.", "FILE");
    const QCommandLineOption script("script", "Commands to run instead of a person; see host/scripts.",
                                    "FILE");

    QCommandLineParser parser;
    parser.setApplicationDescription("A camera viewer that loads the Orlune plug-in.");
    const QCommandLineOption help({"h", "help"}, "Prints this help.");
    parser.addOptions(
        {camera, list, lutBytes, language, plugin, frames, pixelFormat, size, state, script, help});
    const QCommandLineOption version = parser.addVersionOption();

    if (!parser.parse(arguments))
        return wrong(parser.errorText());

    ParsedCommandLine result;
    if (parser.isSet(help)) {
        result.outcome = ParsedCommandLine::Outcome::Help;
        result.text = parser.helpText();
        return result;
    }
    if (parser.isSet(version)) {
        result.outcome = ParsedCommandLine::Outcome::Version;
        result.text = QStringLiteral("orlune-host " ORLUNE_VERSION);
        return result;
    }
    if (!parser.positionalArguments().isEmpty())
        return wrong(QString("\"%1\" is not understood.").arg(parser.positionalArguments().constFirst()));

    if (parser.isSet(list)) {
        result.outcome = ParsedCommandLine::Outcome::List;
        return result;
    }

    const auto path = [&](const QCommandLineOption& option) {
        const QString value = parser.value(option);
        return value.isEmpty() ? QString() : QDir::cleanPath(directory.absoluteFilePath(value));
    };
    Options& options = result.options;
    options.camera.camera = parser.value(camera);
    options.camera.frames = sceneName(parser.value(frames), directory);
    options.camera.pixelFormat = parser.value(pixelFormat);
    options.camera.stateFile = path(state);
    options.pluginPath = path(plugin);
    options.scriptFile = path(script);

    if (parser.isSet(camera) && !cameraEntry(options.camera.camera))
        return wrong(
            QString("There is no camera \"%1\"; there are %2.").arg(options.camera.camera, cameraKeys()));
    for (const QCommandLineOption& option : {lutBytes, frames, state}) {
        if (isRealCamera(options.camera.camera) && parser.isSet(option))
            return wrong(QString("--%1 is for simulated cameras.").arg(option.names().constFirst()));
    }
    if (parser.isSet(lutBytes)) {
        bool number = false;
        options.camera.lutBytes = parser.value(lutBytes).toInt(&number);
        if (!number || options.camera.lutBytes < 0)
            return wrong("--lut-bytes takes a number of bytes.");
    }
    if (parser.isSet(size)) {
        options.camera.size = parseSize(parser.value(size));
        if (options.camera.size.isEmpty())
            return wrong(
                QString("--size takes a width and a height from 1 to %1, as in 640x480.").arg(kMaxFrameSide));
    }
    const QString languageName = parser.value(language);
    if (languageName != "en" && languageName != "zh")
        return wrong("--language takes en or zh.");
    options.chinese = languageName == "zh";
    return result;
}

} // namespace host
