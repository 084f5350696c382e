#include "tools/TableIo.h"

#include <algorithm>
#include <iterator>

#include <QBuffer>
#include <QFileInfo>

#include "lut/LutFiles.h"
#include "lut/ResultCodes.h"
#include "tools/Cube.h"
#include "tools/Failure.h"
#include "tools/Files.h"

namespace tools {

using orlune::kImageBytes;
using orlune::kLutEntries;
using orlune::kLutMaxOutput;
using orlune::kTableBytes;
using orlune::LutImage;

namespace {

constexpr qint64 kMaxTableFile = 1 << 23; // a .cube file of 65536 lines fits twice
constexpr int kPaletteBytes = 3 * 256;
constexpr int kLooksBytes = 4096; // of a file, to see whether it is text

struct FormatRow
{
    TableFormat format;
    const char* name;
};
constexpr FormatRow kFormats[] = {{TableFormat::Lut, "lut"},
                                  {TableFormat::Bin, "bin"},
                                  {TableFormat::Csv, "csv"},
                                  {TableFormat::Cube, "cube"}};

// No byte of an image's upper halves is anything but zero, so an image never looks like text.
bool isText(const QByteArray& bytes)
{
    const int size = std::min(bytes.size(), kLooksBytes);
    return std::all_of(bytes.begin(), bytes.begin() + size, [](char c) {
        return uchar(c) >= ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
    });
}

bool looksLikeCube(const QByteArray& text)
{
    return text.contains("LUT_1D_SIZE") || text.contains("LUT_3D_SIZE");
}

TableFormat guess(const QByteArray& bytes)
{
    if (!isText(bytes))
        return TableFormat::Lut;
    return looksLikeCube(bytes) ? TableFormat::Cube : TableFormat::Csv;
}

QString readableAs(const QByteArray& text)
{
    if (looksLikeCube(text))
        return "; --from cube may read it";
    const QByteArray first = text.trimmed().left(1);
    return first >= "0" && first <= "9" ? "; --from csv may read it" : "";
}

LutImage parseImage(const QByteArray& bytes, const QString& name)
{
    const int size = bytes.size();
    QString what;
    if (isText(bytes)) {
        what = "is text, as some other programs' tables are, and no camera table" + readableAs(bytes);
    } else if (size == kTableBytes || size == kImageBytes) {
        LutImage image{};
        orlune::FromBytes(image, bytes.constData(), std::size_t(size));
        return image;
    } else if (size == kPaletteBytes) {
        what = "has 768 bytes, as other programs' colour palettes of 256 red, green and blue values "
               "have, and is no camera table";
    } else {
        what = QString("has %1 bytes and is no camera table, which has %2, or %3 with its settings")
                   .arg(size)
                   .arg(kTableBytes)
                   .arg(kImageBytes);
    }
    throw Failure{kNoTable, QString("%1 %2.").arg(quoted(name), what)};
}

LutImage parseCsv(QByteArray& bytes, const QString& name)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    LutImage image;
    int badLine = 0;
    if (orlune::ReadCsv(buffer, image, &badLine) != orlune::kSuccess)
        throw Failure{kNoTable,
                      quoted(name) +
                          QString(", line %1: there is no number from 0 to %2; a table has %3 such lines.")
                              .arg(badLine)
                              .arg(kLutMaxOutput)
                              .arg(kLutEntries)};
    return image;
}

LutImage parse(QByteArray& bytes, TableFormat format, const QString& name)
{
    switch (format) {
    case TableFormat::Csv:
        return parseCsv(bytes, name);
    case TableFormat::Cube:
        return parseCube(bytes, name);
    default:
        return parseImage(bytes, name);
    }
}

} // namespace

std::optional<TableFormat> formatByName(const QString& name)
{
    const auto row = std::find_if(std::begin(kFormats), std::end(kFormats),
                                  [&](const FormatRow& each) { return name == QLatin1String(each.name); });
    return row == std::end(kFormats) ? std::nullopt : std::optional(row->format);
}

std::optional<TableFormat> formatByPath(const QString& path)
{
    return formatByName(QFileInfo(path).suffix().toLower());
}

bool holdsSettings(TableFormat format)
{
    return format == TableFormat::Lut || format == TableFormat::Bin;
}

QCommandLineOption fromOption()
{
    return {"from", "Form of what is read: lut, bin, csv or cube, whatever the name says.", "FORMAT"};
}

QCommandLineOption toOption()
{
    return {"to", "Form of what is written: lut, bin, csv or cube, whatever the name says.", "FORMAT"};
}

std::optional<TableFormat> askedFormat(const QCommandLineParser& parser, const QCommandLineOption& option)
{
    if (!parser.isSet(option))
        return {};
    const QString value = parser.value(option);
    const auto format = formatByName(value);
    if (!format)
        throw Failure{kTrouble, QString("--%1 takes lut, bin, csv or cube, not %2.")
                                    .arg(option.names().constFirst(), quoted(value))};
    return format;
}

TableFormat outputFormat(const QString& path, std::optional<TableFormat> asked)
{
    const auto format = asked ? asked : formatByPath(path);
    if (!format)
        throw Failure{kTrouble, QString("--to has to tell the form of %1: lut, bin, csv or cube.")
                                    .arg(isStream(path) ? "the standard output" : quoted(path))};
    return *format;
}

Table readTable(const QString& path, std::optional<TableFormat> asked)
{
    QByteArray bytes = readBytes(path, kMaxTableFile);
    if (bytes.isEmpty())
        throw Failure{kNoTable, QString("%1 is empty.").arg(quoted(path))};
    if (bytes.size() > kMaxTableFile)
        throw Failure{kNoTable, QString("%1 is too long for a camera table.").arg(quoted(path))};
    if (!asked)
        asked = formatByPath(path);
    Table table;
    table.format = asked.value_or(guess(bytes));
    table.image = parse(bytes, table.format, path);
    const auto& entries = table.image.Entries;
    const auto wrong = std::find_if(std::begin(entries), std::end(entries),
                                    [](qint32 entry) { return entry < 0 || entry > kLutMaxOutput; });
    if (wrong != std::end(entries))
        throw Failure{kNoTable,
                      quoted(path) +
                          QString(" is no camera table: entry %1 is %2, and outputs go from 0 to %3.")
                              .arg(wrong - std::begin(entries))
                              .arg(*wrong)
                              .arg(kLutMaxOutput)};
    return table;
}

QByteArray tableBytes(const LutImage& image, TableFormat format)
{
    if (format == TableFormat::Csv)
        return orlune::CsvText(image);
    if (format == TableFormat::Cube)
        return cubeText(image);
    const auto bytes = orlune::ToBytes(image);
    return QByteArray(reinterpret_cast<const char*>(bytes.data()),
                      orlune::ReadTrailer(image) ? kImageBytes : kTableBytes);
}

} // namespace tools
