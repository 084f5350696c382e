// Tables in files and streams: which form they have there, and the tests that a window does without. A table
// is read only if it is one: the right length, and every entry from 0 to 4095.
#ifndef ORLUNE_TOOLS_TABLEIO_H
#define ORLUNE_TOOLS_TABLEIO_H

#include <optional>

#include <QByteArray>
#include <QCommandLineParser>
#include <QString>

#include "lut/LutImage.h"

namespace tools {

enum class TableFormat { Lut, Bin, Csv, Cube };

// "lut", "bin", "csv" or "cube"; in a file's name the suffix, in letters of any size.
std::optional<TableFormat> formatByName(const QString& name);
std::optional<TableFormat> formatByPath(const QString& path);

// True for the forms that hold a whole image, settings included.
bool holdsSettings(TableFormat format);

// --from FORMAT and --to FORMAT, and what one of them asks for, if it is given. Throws Failure for a form
// that is none.
QCommandLineOption fromOption();
QCommandLineOption toOption();
std::optional<TableFormat> askedFormat(const QCommandLineParser& parser, const QCommandLineOption& option);

// The form to write to path: what was asked for, or what the name tells. Throws Failure when neither does.
TableFormat outputFormat(const QString& path, std::optional<TableFormat> asked);

struct Table
{
    orlune::LutImage image; // with a trailer if the file has one
    TableFormat format;
};

// Reads what was asked for or what the name tells, and else what the contents look like. Throws Failure:
// kTrouble for a file that can't be read, kNoTable for one that holds no table.
Table readTable(const QString& path, std::optional<TableFormat> asked = {});

// The bytes of a file: in Lut and Bin 16424 when the image has a trailer, otherwise 16384.
QByteArray tableBytes(const orlune::LutImage& image, TableFormat format);

} // namespace tools

#endif
