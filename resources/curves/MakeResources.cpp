// orlune-make-resources: writes the table files that are delivered with Orlune, and their page in docs/.
//
//   curve NAME FILE   the standard curve of that name, without a trailer
//   example FILE      the example of that file name
//   docs FOLDER       the page and its plots
//   check FOLDER      whether the folder holds just what docs would write: exit status 1 and a list if not
#include <cstdio>
#include <functional>
#include <stdexcept>

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include "curve/BezierCurve.h"
#include "curves/CurveDocs.h"
#include "curves/StandardCurves.h"
#include "lut/LutFiles.h"

namespace orlune {

namespace {

struct Failure : std::runtime_error
{
    using std::runtime_error::runtime_error;
    explicit Failure(const QString& what) : std::runtime_error(what.toStdString()) {}
};

LutImage StandardTable(const QString& name)
{
    const CurveSource* curve = FindStandardCurve(name.toLatin1().constData());
    if (!curve)
        throw Failure("no standard curve " + name);
    return TableOf(*curve);
}

void MakeCurve(const QString& name, const QString& path)
{
    if (WriteLutFile(path, StandardTable(name), false) != 0)
        throw Failure("can't write " + path);
}

void MakeExample(const QString& path)
{
    const QFileInfo file(path);
    for (const ExampleSource& example : Examples()) {
        if (file.fileName() != example.File)
            continue;
        const LutSettings& settings = example.Settings;
        LutImage image = StandardTable(example.Standard);
        if (CBezierCurve().AdjustLutRange(settings.Brightness, settings.Contrast, settings.Gamma / 100.0,
                                          settings.RangeMin, settings.RangeMax, image.Entries) != 0)
            throw Failure(QString("bad settings in %1").arg(example.File));
        StampTrailer(image, settings, example.Standard);
        const bool isCsv = file.suffix() == "csv";
        if ((isCsv ? WriteCsvFile(path, image) : WriteLutFile(path, image, true)) != 0)
            throw Failure("can't write " + path);
        return;
    }
    throw Failure("no example " + file.fileName());
}

void MakeDocs(const QDir& folder)
{
    const auto files = CurveDocs();
    for (auto file = files.begin(); file != files.end(); ++file) {
        const QString path = folder.filePath(file.key());
        QSaveFile out(path);
        if (!QFileInfo(path).dir().mkpath(".") || !out.open(QIODevice::WriteOnly) ||
            out.write(file.value()) != file.value().size() || !out.commit())
            throw Failure("can't write " + path);
    }
}

void CheckDocs(const QDir& folder)
{
    const auto files = CurveDocs();
    QStringList wrong;
    for (auto file = files.begin(); file != files.end(); ++file) {
        QFile committed(folder.filePath(file.key()));
        if (!committed.open(QIODevice::ReadOnly) || committed.readAll() != file.value())
            wrong += file.key();
    }
    for (const QString& name : QDir(folder.filePath("curves")).entryList(QDir::Files)) {
        if (!files.contains("curves/" + name))
            wrong += "curves/" + name;
    }
    if (!wrong.isEmpty())
        throw Failure("out of date, build the target orlune_curve_docs: " + wrong.join(' '));
}

struct Command
{
    QString Name;
    int Arguments;
    std::function<void(const QStringList&)> Run;
};

int Main(const QStringList& arguments)
{
    const Command commands[] = {
        {"curve", 2, [](const QStringList& given) { MakeCurve(given[0], given[1]); }},
        {"example", 1, [](const QStringList& given) { MakeExample(given[0]); }},
        {"docs", 1, [](const QStringList& given) { MakeDocs(given[0]); }},
        {"check", 1, [](const QStringList& given) { CheckDocs(given[0]); }},
    };
    for (const Command& command : commands) {
        if (arguments.value(1) == command.Name && arguments.size() == 2 + command.Arguments) {
            command.Run(arguments.mid(2));
            return 0;
        }
    }
    throw Failure("usage: curve NAME FILE | example FILE | docs FOLDER | check FOLDER");
}

} // namespace

} // namespace orlune

int main(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
    try {
        return orlune::Main(arguments);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "orlune-make-resources: %s\n", failure.what());
        return 1;
    }
}
