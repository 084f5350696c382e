#include "tools/Plot.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSvgGenerator>

#include "tools/Apply.h"
#include "tools/Chart.h"
#include "tools/Files.h"
#include "tools/Pictures.h"
#include "tools/TableIo.h"

namespace tools {

using orlune::kLutEntries;
using orlune::kLutMaxOutput;
using orlune::LutImage;

namespace {

constexpr int kBins = 256;
constexpr int kMinSide = 200; // pixels
constexpr int kMaxSide = 8192;
constexpr int kLettersPerHeight = 45; // of the curves' chart

// Colours that people with any colour vision tell apart; the dashes begin anew with each round of them.
constexpr QRgb kColours[] = {0xff0072b2, 0xffd55e00, 0xff009e73, 0xffcc79a7,
                             0xffe69f00, 0xff56b4e9, 0xff000000};
constexpr Qt::PenStyle kStyles[] = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine};
constexpr int kColourCount = int(std::size(kColours));
constexpr int kMaxCurves = kColourCount * int(std::size(kStyles));
const QColor kBeforeColour(200, 200, 200);

struct Curve
{
    QString name;
    LutImage table;
    QPen pen;
};

QVector<Curve> readCurves(const QStringList& paths, std::optional<TableFormat> format)
{
    if (paths.size() > kMaxCurves)
        throw Failure{kTrouble,
                      QString("There is room for %1 curves, not for %2.").arg(kMaxCurves).arg(paths.size())};
    if (paths.count("-") > 1)
        throw Failure{kTrouble, "The standard input holds one table only."};
    QVector<Curve> curves;
    for (const QString& path : paths) {
        const int i = curves.size();
        curves.append({isStream(path) ? path : QFileInfo(path).fileName(), readTable(path, format).image,
                       QPen(QColor(kColours[i % kColourCount]), 1.5, kStyles[i / kColourCount])});
    }
    return curves;
}

Chart curveChart(const QVector<Curve>& curves)
{
    Chart chart{"input", "output", kLutMaxOutput, kLutMaxOutput, {}};
    for (const Curve& curve : curves) {
        ChartLine line{curve.name, curve.pen, QVector<double>(kLutEntries)};
        std::transform(std::begin(curve.table.Entries), std::end(curve.table.Entries), line.values.begin(),
                       [](qint32 entry) { return entry / double(kLutMaxOutput); });
        chart.lines.append(line);
    }
    return chart;
}

// Counts of all channels but alpha.
QVector<double> histogram(const Picture& picture)
{
    QVector<double> counts(kBins);
    const int channels = picture.channels();
    const int samples = picture.image.width() * channels;
    for (int y = 0; y < picture.image.height(); ++y) {
        const uchar* line = picture.image.constScanLine(y);
        for (int i = 0; i < samples; ++i) {
            if (channels == 4 && i % 4 == 3)
                continue;
            const qint64 sample = picture.isDeep() ? reinterpret_cast<const quint16*>(line)[i] : line[i];
            ++counts[int(sample * kBins / (picture.maximum + 1))];
        }
    }
    return counts;
}

// Square roots, so that a bin of clipped samples doesn't flatten the rest.
Chart histogramChart(const QVector<Curve>& curves, const QString& path, std::optional<int> askedBits)
{
    Picture picture = readPicture(path);
    const int bits = pictureBits(picture, askedBits, path);
    picture.maximum = (1 << bits) - 1;
    Chart chart{"sample", "number of samples (square root)", picture.maximum, 0, {}};
    chart.lines.append(
        {isStream(path) ? path : QFileInfo(path).fileName(), QPen(kBeforeColour), histogram(picture), true});
    for (const Curve& curve : curves) {
        Picture mapped = picture;
        mapPicture(mapped, curve.table, bits);
        chart.lines.append({"through " + curve.name, curve.pen, histogram(mapped)});
    }
    double highest = 1;
    for (const ChartLine& line : chart.lines)
        highest = std::max(highest, *std::max_element(line.values.begin(), line.values.end()));
    for (ChartLine& line : chart.lines)
        std::transform(line.values.begin(), line.values.end(), line.values.begin(),
                       [highest](double count) { return std::sqrt(count / highest); });
    return chart;
}

void draw(QPainter& painter, const QSize& size, const QVector<Chart>& charts)
{
    const double height = double(size.height()) / charts.size();
    for (int i = 0; i < charts.size(); ++i)
        drawChart(painter, QRectF(0, i * height, size.width(), height),
                  std::max(8, std::min(size.width() * 3 / 4, int(height)) / kLettersPerHeight), charts[i]);
}

QByteArray svg(const QSize& size, const QVector<Chart>& charts)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(), size));
    generator.setTitle("Look-up tables");
    QPainter painter(&generator);
    draw(painter, size, charts);
    painter.end();
    return bytes;
}

QByteArray png(const QSize& size, const QVector<Chart>& charts)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    draw(painter, size, charts);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

QSize parseSize(const QString& text)
{
    static const QRegularExpression form("^(\\d{1,5})x(\\d{1,5})$");
    const auto match = form.match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    if (std::min(size.width(), size.height()) < kMinSide || std::max(size.width(), size.height()) > kMaxSide)
        throw Failure{kTrouble,
                      QString("--size takes a width and a height from %1 to %2, as in 800x600, not %3.")
                          .arg(kMinSide)
                          .arg(kMaxSide)
                          .arg(quoted(text))};
    return size;
}

ExitStatus run(const QStringList& arguments)
{
    const QCommandLineOption output({"o", "output"},
                                    "File to write, .png or .svg, - for the standard output.", "OUT");
    const QCommandLineOption to("to", "Form of what is written: png or svg, whatever the name says.",
                                "FORMAT");
    const QCommandLineOption imageOption("image", "Shows this picture's histogram too, before and after.",
                                         "PICTURE");
    const QCommandLineOption bitsOption = pictureBitsOption();
    const QCommandLineOption sizeOption("size", "Width and height in pixels.", "WxH");
    const QCommandLineOption from = fromOption(), force = forceOption();
    QCommandLineParser parser;
    parser.addOptions({output, imageOption, bitsOption, sizeOption, from, to, force});
    parseArguments(parser, kPlotCommand, arguments);
    if (!parser.isSet(output))
        throw Failure{kTrouble, "--output names the file to write."};
    const QString out = parser.value(output);
    const QString form = parser.isSet(to) ? parser.value(to) : QFileInfo(out).suffix().toLower();
    if (form != "png" && form != "svg")
        throw Failure{kTrouble, QString("The form of %1 has to be png or svg; --to tells it.")
                                    .arg(isStream(out) ? "the standard output" : quoted(out))};
    const bool hasImage = parser.isSet(imageOption);
    const QSize size =
        parser.isSet(sizeOption) ? parseSize(parser.value(sizeOption)) : QSize(800, hasImage ? 1000 : 600);

    const QStringList paths = parser.positionalArguments();
    if (hasImage && isStream(parser.value(imageOption)) && paths.contains("-"))
        throw Failure{kTrouble, "The standard input holds a table or a picture, not both."};
    const QVector<Curve> curves = readCurves(paths, askedFormat(parser, from));
    QVector<Chart> charts{curveChart(curves)};
    if (hasImage)
        charts.append(histogramChart(curves, parser.value(imageOption), askedBits(parser, bitsOption)));
    writeBytes(out, form == "svg" ? svg(size, charts) : png(size, charts), parser.isSet(force));
    return kGood;
}

} // namespace

const Command kPlotCommand = {"plot",
                              "FILE... -o OUT",
                              1,
                              -1,
                              "Draws tables as curves, and what they do to a picture's histogram.",
                              "FILE is a .lut, .bin, .csv or .cube file, or - for the standard input.\n\n"
                              "Exit status: 0, 1 when a FILE holds no table, 2 for other trouble.",
                              run,
                              true};

} // namespace tools
