#include "tools/Apply.h"

#include <algorithm>
#include <array>

#include <QDir>
#include <QFileInfo>

#include "plugin/FrameKernels.h"
#include "tools/Files.h"
#include "tools/ProgressBar.h"
#include "tools/TableIo.h"

namespace tools {

using orlune::kLutEntries;
using orlune::LutImage;

namespace {

constexpr int kTableBits = 12;
constexpr int kFullScaleBits = 16;

bool hasFourth(const Picture& picture)
{
    return picture.channels() == 4;
}

quint16* deepLine(QImage& image, int y)
{
    return reinterpret_cast<quint16*>(image.scanLine(y));
}

int largestSample(const Picture& picture)
{
    const int channels = picture.channels();
    int largest = 0;
    for (int y = 0; y < picture.image.height(); ++y) {
        const auto* line = reinterpret_cast<const quint16*>(picture.image.constScanLine(y));
        for (int i = 0; i < channels * picture.image.width(); ++i) {
            if (channels < 4 || i % 4 != 3)
                largest = std::max<int>(largest, line[i]);
        }
    }
    return largest;
}

// As many entries as the depth has values, as the frame path makes them.
std::array<qint32, kLutEntries> frameTable(const LutImage& table, int bits)
{
    std::array<qint32, kLutEntries> entries{};
    const int tableBits = std::min(bits, kTableBits);
    orlune::ResampleLut(table.Entries, kLutEntries, entries.data(), 1 << tableBits, kTableBits - tableBits);
    if (bits == kFullScaleBits) {
        for (qint32& entry : entries)
            entry = entry << 4 | entry >> 8;
    }
    return entries;
}

template <typename Sample>
void restoreFourth(Sample* line, const Sample* original, int pixels)
{
    for (int i = 3; i < 4 * pixels; i += 4)
        line[i] = original[i];
}

void mapFile(const LutImage& table, std::optional<int> bits, const QString& in, const QString& out,
             bool force)
{
    Picture picture = readPicture(in);
    mapPicture(picture, table, pictureBits(picture, bits, in));
    if (!isStream(out))
        picture.form = pictureForm(out);
    writeBytes(out, pictureBytes(picture), force);
}

// Every picture is tried; each failure is told.
ExitStatus mapFolder(const LutImage& table, std::optional<int> bits, const QString& in, const QString& out,
                     bool force)
{
    const QStringList pictures = picturesIn(in);
    if (pictures.isEmpty())
        throw Failure{kTrouble, QString("%1 holds no PNG, TIFF or PGM picture.").arg(quoted(in))};
    const auto target = [&](const QString& picture) {
        return QDir(out).filePath(QFileInfo(picture).fileName());
    };
    for (const QString& picture : pictures)
        refuseOverwriting(target(picture), force);
    if (!QDir().mkpath(out))
        throw Failure{kTrouble, QString("The folder %1 can't be made.").arg(quoted(out))};
    ProgressBar progress(pictures.size());
    ExitStatus status = kGood;
    for (const QString& picture : pictures) {
        try {
            mapFile(table, bits, picture, target(picture), force);
        } catch (const Failure& failure) {
            progress.clear();
            complain(failure.sentence);
            status = failure.status;
        }
        progress.step();
    }
    return status;
}

ExitStatus run(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption bitsOption = pictureBitsOption();
    const QCommandLineOption from = fromOption(), force = forceOption();
    parser.addOptions({bitsOption, from, force});
    parseArguments(parser, kApplyCommand, arguments);
    const QString tablePath = parser.positionalArguments()[0];
    const QString in = parser.positionalArguments()[1];
    const QString out = parser.positionalArguments()[2];
    const std::optional<int> bits = askedBits(parser, bitsOption);
    if (isStream(tablePath) && isStream(in))
        throw Failure{kTrouble, "The standard input holds a table or a picture, not both."};
    const bool isFolder = !isStream(in) && QFileInfo(in).isDir();
    // What isn't there may have been meant for a folder; reading it tells.
    const bool isFile = isStream(in) || QFileInfo(in).isFile();
    if (isFile && !isStream(out) && pictureForm(out).isEmpty())
        throw Failure{kTrouble, QString("%1 has to end in .png, .tif, .tiff or .pgm.").arg(quoted(out))};
    if (isFolder && isStream(out))
        throw Failure{kTrouble, "A folder's pictures go to a folder."};
    const LutImage table = readTable(tablePath, askedFormat(parser, from)).image;
    if (isFolder)
        return mapFolder(table, bits, in, out, parser.isSet(force));
    mapFile(table, bits, in, out, parser.isSet(force));
    return kGood;
}

} // namespace

const Command kApplyCommand = {
    "apply",
    "TABLE IN OUT",
    3,
    3,
    "Maps pictures through a table, as the frames of a camera are mapped.",
    "IN is a PNG, TIFF or PGM picture of 8 or 16 bits, - for one on the standard\n"
    "input, or a folder of them, which all go to the folder OUT. A picture of 8 bits\n"
    "is mapped with 8, and a PGM tells 10 or 12 by its maximum of 1023 or 4095. Other\n"
    "pictures of 16 bits hold frames of 10 or 12 bits in the low bits, with --bits 10\n"
    "or 12, or use all 16, of which the leading 12 are mapped. Colour channels are\n"
    "mapped each, alpha is kept.\n\n"
    "Exit status: 0, 1 when TABLE holds no table, 2 for other trouble.",
    run};

QCommandLineOption pictureBitsOption()
{
    return {"bits", "Significant bits of the samples: 8, 10, 12, or 16 for pictures that use all 16.", "N"};
}

std::optional<int> askedBits(const QCommandLineParser& parser, const QCommandLineOption& option)
{
    if (!parser.isSet(option))
        return {};
    const int bits = parser.value(option).toInt();
    if (bits != 8 && bits != 10 && bits != kTableBits && bits != kFullScaleBits)
        throw Failure{kTrouble,
                      QString("--bits takes 8, 10, 12 or 16, not %1.").arg(quoted(parser.value(option)))};
    return bits;
}

int pictureBits(const Picture& picture, std::optional<int> asked, const QString& name)
{
    const auto fail = [&](const QString& what) -> Failure {
        return {kTrouble, QString("The picture %1 %2.").arg(quoted(name), what)};
    };
    const int told = !picture.isDeep() ? 8 : picture.maximum == 1023 ? 10 : picture.maximum == 4095 ? 12 : 0;
    if (told != 0) {
        if (asked && *asked != told)
            throw fail(QString("has samples of %1 bits, not %2").arg(told).arg(*asked));
        return told;
    }
    if (asked == 8)
        throw fail("has samples of 16 bits, not 8");
    const int largest = largestSample(picture);
    const int bits = asked.value_or(kFullScaleBits);
    if (largest >= 1 << bits)
        throw fail(QString("has samples up to %1, too large for %2 bits; --bits 16 maps the leading ones")
                       .arg(largest)
                       .arg(bits));
    if (!asked && largest < 1 << kTableBits)
        throw fail(
            QString("has 16 bits, but samples up to %1 only; --bits has to tell 10, 12 or 16").arg(largest));
    return bits;
}

void mapPicture(Picture& picture, const LutImage& table, int bits)
{
    const auto entries = frameTable(table, bits);
    const int pixels = picture.image.width();
    const int samples = pixels * picture.channels();
    QImage original = hasFourth(picture) ? picture.image : QImage();
    for (int y = 0; y < picture.image.height(); ++y) {
        if (!picture.isDeep()) {
            uchar* line = picture.image.scanLine(y);
            orlune::ApplyLut8(line, line, samples, 1, entries.data());
            if (hasFourth(picture))
                restoreFourth(line, original.constScanLine(y), pixels);
            continue;
        }
        quint16* line = deepLine(picture.image, y);
        if (bits == kFullScaleBits)
            std::transform(line, line + samples, line, [](quint16 sample) { return quint16(sample >> 4); });
        orlune::ApplyLut16(line, line, samples, 1, entries.data(), 1 << std::min(bits, kTableBits));
        if (hasFourth(picture))
            restoreFourth(line, reinterpret_cast<const quint16*>(original.constScanLine(y)), pixels);
    }
    picture.maximum = (1 << bits) - 1;
}

} // namespace tools
