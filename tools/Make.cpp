// The road of a table through the window: a source puts a base table under the controls, with settings and
// the name of a standard curve if it brings them; a changed setting computes the table anew from the base.
#include "tools/Make.h"

#include <algorithm>

#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>

#include "curve/BezierCurve.h"
#include "lut/PlainString.h"
#include "lut/StandardCatalogue.h"
#include "tools/Files.h"
#include "tools/Settings.h"
#include "tools/TableIo.h"

namespace tools {

using orlune::kDefaultStandardName;
using orlune::LutImage;
using orlune::LutSettings;
using orlune::StandardCurve;

namespace {

// What a source of tables gives.
struct Source
{
    LutImage current{};
    LutImage base{};
    LutSettings settings;
    QString standard; // empty: no standard curve made the table, and no settings describe it
};

QString standardDirectory()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + '/' + orlune::kStandardDirectory);
}

class Catalogue
{
public:
    explicit Catalogue(const QString& directory)
        : m_directory(directory), m_curves(orlune::ScanStandardCatalogue(directory, "bin"))
    {
    }

    bool contains(const QString& name) const { return find(name) != m_curves.end(); }

    // Throws Failure.
    LutImage read(const QString& name) const
    {
        const auto found = find(name);
        if (found != m_curves.end())
            return readTable(found->Path, TableFormat::Bin).image;
        QStringList names;
        for (const StandardCurve& curve : m_curves)
            names += curve.Name;
        const QString others =
            names.isEmpty() ? "and no other; --standard-dir names the folder" : "only " + names.join(", ");
        throw Failure{kTrouble, QString("There is no standard curve %1 in %2, %3.")
                                    .arg(quoted(name), quoted(m_directory), others)};
    }

private:
    QVector<StandardCurve>::const_iterator find(const QString& name) const
    {
        return std::find_if(m_curves.begin(), m_curves.end(),
                            [&](const StandardCurve& curve) { return curve.Name == name; });
    }

    const QString m_directory;
    const QVector<StandardCurve> m_curves;
};

// A curve's name has no dot, and a file that has none either can be written as ./file.
bool isFile(const QString& base)
{
    return isStream(base) || base.contains('.') || base.contains('/') || base.contains(QDir::separator());
}

Source identity()
{
    Source source;
    orlune::MakeIdentity(source.base);
    source.current = source.base;
    source.standard = kDefaultStandardName;
    return source;
}

Source standardCurve(const QString& name, const Catalogue& catalogue)
{
    Source source;
    source.current = source.base = catalogue.read(name);
    source.standard = name;
    return source;
}

Source tableFile(const QString& path, const Table& table, const Catalogue& catalogue)
{
    Source source;
    source.current = source.base = table.image;
    const auto trailer = orlune::ReadTrailer(table.image);
    if (!trailer)
        return source;
    source.settings = trailer->Settings;
    source.standard = orlune::FromPlainString(trailer->StandardName);
    const bool isKnown = catalogue.contains(source.standard);
    if (!isKnown)
        source.standard = kDefaultStandardName;
    source.base = catalogue.read(source.standard);
    if (!isKnown)
        note(QString("There is no standard curve \"%1\", from which %2 was made; %3 takes its place.")
                 .arg(standardName(*trailer), quoted(path), source.standard));
    return source;
}

QCommandLineOption toneOption(const SettingRow& row)
{
    return {row.option,
            QString("The window's %1, %2 to %3; %4 is neutral.")
                .arg(row.label)
                .arg(row.limits.low)
                .arg(row.limits.high)
                .arg(LutSettings().*row.member),
            "N"};
}

// The settings of the command line over those of the source.
LutSettings askedSettings(const QCommandLineParser& parser, const QCommandLineOption& range,
                          LutSettings settings)
{
    for (const SettingRow& row : kSettingRows) {
        if (!row.option || !parser.isSet(row.option))
            continue;
        const QString value = parser.value(row.option);
        bool isNumber = false;
        settings.*row.member = value.toInt(&isNumber);
        if (!isNumber)
            throw Failure{kTrouble, QString("--%1 takes a whole number from %2 to %3, not %4.")
                                        .arg(row.option)
                                        .arg(row.limits.low)
                                        .arg(row.limits.high)
                                        .arg(quoted(value))};
    }
    if (parser.isSet(range)) {
        static const QRegularExpression form("^(-?\\d{1,9}):(-?\\d{1,9})$");
        const auto match = form.match(parser.value(range));
        if (!match.hasMatch())
            throw Failure{
                kTrouble,
                QString("--range takes MIN:MAX, as in 0:4095, not %1.").arg(quoted(parser.value(range)))};
        settings.RangeMin = match.captured(1).toInt();
        settings.RangeMax = match.captured(2).toInt();
    }
    return settings;
}

// The table after the settings were changed to these. Without a change it stays as the source gave it.
LutImage adjusted(const Source& source, const LutSettings& settings)
{
    LutImage image = source.current;
    if (!sameSettings(settings, source.settings)) {
        const QString problem = settingsProblem(settings);
        if (!problem.isEmpty())
            throw Failure{kTrouble, problem};
        image = source.base;
        const int code =
            CBezierCurve().AdjustLutRange(settings.Brightness, settings.Contrast, settings.Gamma / 100.0,
                                          settings.RangeMin, settings.RangeMax, image.Entries);
        if (code != CBezierCurve::kSuccess)
            throw Failure{kTrouble, "There is not enough memory for the table."};
    }
    if (!source.standard.isEmpty())
        orlune::StampTrailer(image, settings, source.standard);
    return image;
}

ExitStatus run(const QStringList& arguments)
{
    const QCommandLineOption base("base", "Standard curve or file to start from, - for the standard input.",
                                  "NAME|FILE");
    const QCommandLineOption range("range", "Entries that the controls shape, at least 64.", "MIN:MAX");
    const QCommandLineOption output({"o", "output"}, "File to write, - for the standard output.", "OUT");
    const QCommandLineOption from = fromOption(), to = toOption(), force = forceOption();
    const QCommandLineOption directory(
        "standard-dir", "Folder of the standard curves, instead of the one beside the program.", "FOLDER");
    QCommandLineParser parser;
    parser.addOption(base);
    for (const SettingRow& row : kSettingRows) {
        if (row.option)
            parser.addOption(toneOption(row));
    }
    parser.addOptions({range, output, from, to, force, directory});
    parseArguments(parser, kMakeCommand, arguments);
    if (!parser.isSet(output))
        throw Failure{kTrouble, "--output names the file to write."};
    const QString out = parser.value(output);
    const TableFormat format = outputFormat(out, askedFormat(parser, to));

    const Catalogue catalogue(parser.isSet(directory) ? parser.value(directory) : standardDirectory());
    const QString start = parser.value(base);
    Source source;
    bool isAdjustable = true;
    if (!parser.isSet(base)) {
        source = identity();
    } else if (isFile(start)) {
        const Table table = readTable(start, askedFormat(parser, from));
        isAdjustable = holdsSettings(table.format);
        source = tableFile(start, table, catalogue);
    } else {
        source = standardCurve(start, catalogue);
    }
    const LutSettings asked = askedSettings(parser, range, source.settings);
    if (!isAdjustable && !sameSettings(asked, source.settings))
        throw Failure{kTrouble, QString("The settings of a .csv or .cube table can't be changed, as in the "
                                        "window; convert %1 to .lut first.")
                                    .arg(quoted(start))};
    writeBytes(out, tableBytes(adjusted(source, asked), format), parser.isSet(force));
    return kGood;
}

} // namespace

const Command kMakeCommand = {
    "make",
    "-o OUT",
    0,
    0,
    "Makes the table that the window would save for the same settings.",
    "Without --base it starts from the identity. From a file with settings it takes\n"
    "those that are not given, and when one changes it computes the table anew from\n"
    "the standard curve that the file names. A file without settings is adjusted as\n"
    "it stands and saved without settings. A name with a dot or a slash is a file's.\n\n"
    "Exit status: 0, 1 when the base holds no table, 2 for other trouble.",
    run};

} // namespace tools
