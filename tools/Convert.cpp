#include "tools/Convert.h"

#include "tools/Files.h"
#include "tools/TableIo.h"

namespace tools {

namespace {

ExitStatus run(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption from = fromOption(), to = toOption(), force = forceOption();
    parser.addOptions({from, to, force});
    parseArguments(parser, kConvertCommand, arguments);
    const QString in = parser.positionalArguments()[0];
    const QString out = parser.positionalArguments()[1];
    const TableFormat format = outputFormat(out, askedFormat(parser, to));
    const Table table = readTable(in, askedFormat(parser, from));
    writeBytes(out, tableBytes(table.image, format), parser.isSet(force));
    if (format == TableFormat::Csv && orlune::ReadTrailer(table.image))
        note("The settings are left out: the form csv has no place for them.");
    return kGood;
}

} // namespace

const Command kConvertCommand = {
    "convert",
    "IN OUT",
    2,
    2,
    "Converts a table between .lut, .bin, .csv and one-dimensional .cube.",
    "IN and OUT are files, or - for the standard input and output. A .lut or .bin\n"
    "file keeps the settings, a .cube file has them as a comment only. A .cube file\n"
    "with another number of values than 4096, or another domain than 0 to 1, is read\n"
    "along straight lines between its values; its three columns have to be equal.\n\n"
    "Exit status: 0, 1 when IN holds no table, 2 for other trouble.",
    run};

} // namespace tools
