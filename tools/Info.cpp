#include "tools/Info.h"

#include <algorithm>
#include <iterator>

#include <QJsonDocument>
#include <QJsonObject>

#include "tools/Files.h"
#include "tools/Settings.h"
#include "tools/TableIo.h"

namespace tools {

using orlune::kLutEntries;
using orlune::kLutMaxOutput;
using orlune::LutImage;

namespace {

QString shapeInWords(const TableFacts& facts, const LutImage& image)
{
    if (facts.rises == 0 && facts.falls == 0)
        return "constant";
    if (facts.falls == 0)
        return "monotonic, rising";
    if (facts.rises == 0)
        return "monotonic, falling";
    return QString("not monotonic: falls at %1 entries, the first is %2 (%3 to %4)")
        .arg(facts.falls)
        .arg(facts.firstFall)
        .arg(image.Entries[facts.firstFall - 1])
        .arg(image.Entries[facts.firstFall]);
}

QString words(const QString& path, const Table& table)
{
    const LutImage& image = table.image;
    const TableFacts facts = examine(image);
    const auto trailer = orlune::ReadTrailer(image);
    QString noSettings = "none";
    if (!holdsSettings(table.format))
        noSettings += " (this form holds none)";
    const QPair<const char*, QString> lines[] = {
        {"Table", quoted(path)},
        {"Settings", trailer ? settingsInWords(*trailer) : noSettings},
        {"Outputs", QString("%1 to %2").arg(facts.minimum).arg(facts.maximum)},
        {"Shape", shapeInWords(facts, image)},
        {"Lost codes",
         QString("%1 of %2 outputs are reached by no input").arg(facts.lostCodes).arg(kLutEntries)},
        {"Clipped codes", QString("%1 inputs at 0 and %2 at %3, besides the one that belongs there")
                              .arg(facts.clippedLow)
                              .arg(facts.clippedHigh)
                              .arg(kLutMaxOutput)},
    };
    QString text;
    for (const auto& line : lines)
        text += QString("%1%2\n").arg(QString(line.first) + ':', -15).arg(line.second);
    return text;
}

QByteArray json(const QString& path, const LutImage& image)
{
    const TableFacts facts = examine(image);
    const QJsonObject object{
        {"file", path},
        {"settings", settingsAsJson(image)},
        {"minimum", facts.minimum},
        {"maximum", facts.maximum},
        {"monotonic", facts.rises == 0 || facts.falls == 0},
        {"rises", facts.rises},
        {"falls", facts.falls},
        {"lostCodes", facts.lostCodes},
        {"clippedLow", facts.clippedLow},
        {"clippedHigh", facts.clippedHigh},
    };
    return QJsonDocument(object).toJson();
}

ExitStatus run(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption asJson = jsonOption();
    const QCommandLineOption from = fromOption();
    parser.addOptions({asJson, from});
    parseArguments(parser, kInfoCommand, arguments);
    const QString path = parser.positionalArguments().constFirst();
    const Table table = readTable(path, askedFormat(parser, from));
    print(parser.isSet(asJson) ? json(path, table.image) : words(path, table).toLocal8Bit());
    return kGood;
}

} // namespace

const Command kInfoCommand = {"info",
                              "FILE",
                              1,
                              1,
                              "Tells what a table is: its settings, range, shape, and what it loses.",
                              "FILE is a .lut, .bin, .csv or .cube file, or - for the standard input.\n\n"
                              "Exit status: 0, 1 when FILE holds no table, 2 for other trouble.",
                              run};

TableFacts examine(const LutImage& image)
{
    const auto& entries = image.Entries;
    const auto [least, most] = std::minmax_element(std::begin(entries), std::end(entries));
    TableFacts facts{};
    facts.minimum = *least;
    facts.maximum = *most;
    for (int i = 1; i < kLutEntries; ++i) {
        if (entries[i] > entries[i - 1])
            ++facts.rises;
        else if (entries[i] < entries[i - 1] && facts.falls++ == 0)
            facts.firstFall = i;
    }
    facts.lostCodes = orlune::LostCodes(image);
    const auto besidesOne = [&](int output) {
        return std::max(0, int(std::count(std::begin(entries), std::end(entries), output)) - 1);
    };
    facts.clippedLow = besidesOne(0);
    facts.clippedHigh = besidesOne(kLutMaxOutput);
    return facts;
}

} // namespace tools
