#include <cmath>
#include <functional>

#include <QtTest>

#include "curves/StandardCurves.h"
#include "lut/LutFiles.h"
#include "lut/StandardCatalogue.h"

using namespace orlune;

namespace {

using Function = std::function<double(double)>;
using Values = QVector<int>;

const QString kStandardFolder = ORLUNE_TABLES "/StandardLut";
const QString kExampleFolder = ORLUNE_TABLES "/Lut12";

LutImage Read(const QString& path)
{
    LutImage current, base;
    if (ReadLutFile(path, current, base) != 0)
        qFatal("%s is missing", qPrintable(path));
    return current;
}

Values Pick(const LutImage& image, const Values& places)
{
    Values entries;
    for (int place : places)
        entries += image.Entries[place];
    return entries;
}

int Lost(const Function& f)
{
    QSet<int> outputs;
    for (int i = 0; i < 4096; ++i)
        outputs += qRound(4095 * f(i / 4095.0));
    return 4096 - outputs.size();
}

} // namespace

class tst_StandardCurves : public QObject
{
    Q_OBJECT

private slots:
    // The files are those of the rows, found as the dialog finds them, and a trailer can hold each name.
    void Catalogue()
    {
        QSet<QString> rows, files;
        for (const CurveSource& curve : StandardCurves())
            rows += QString::fromLatin1(curve.Name);
        QVERIFY(rows.contains(kDefaultStandardName));
        QCOMPARE(rows.size(), int(StandardCurves().size()));
        for (const StandardCurve& curve : ScanStandardCatalogue(kStandardFolder, "bin")) {
            files += curve.Name;
            QCOMPARE(QFileInfo(curve.Path).size(), qint64(kTableBytes));
            LutImage image{};
            StampTrailer(image, {}, curve.Name);
            QCOMPARE(QString::fromLatin1(ReadTrailer(image)->StandardName), curve.Name);
        }
        QCOMPARE(files, rows);
    }

    // Worked out in another language with its own mathematics library.
    void Points()
    {
        // Entries 1, 737 (18 % grey), 2048 and 4094, and the outputs that are lost.
        const std::tuple<const char*, Values, int> rows[] = {
            {"lut4_11", {1, 737, 2048, 4094}, 0},
            {"gamma_0_45", {97, 1893, 2998, 4095}, 1172},
            {"gamma_0_7", {12, 1233, 2521, 4094}, 534},
            {"gamma_2_2", {0, 94, 892, 4093}, 1158},
            {"srgb", {13, 1889, 3012, 4095}, 1176},
            {"rec709", {5, 1675, 2889, 4095}, 986},
            {"bt1886_inverse", {128, 2004, 3068, 4095}, 1278},
            {"cie_lightness", {9, 2027, 3115, 4095}, 1314},
            {"log", {7, 2052, 3226, 4095}, 1392},
            {"log_inverse", {0, 149, 734, 4092}, 1392},
            {"sigmoid", {0, 364, 2048, 4095}, 826},
            {"inverse", {4094, 3358, 2047, 1}, 0},
            {"threshold", {0, 0, 4095, 4095}, 4094}};
        for (const auto& [name, points, lost] : rows) {
            const LutImage image = Read(kStandardFolder + "/" + name + ".bin");
            const bool falls = image.Entries[0] > 0;
            QCOMPARE(falls, !strcmp(name, "inverse"));
            QVERIFY2(Pick(image, {1, 737, 2048, 4094}) == points, name);
            QCOMPARE(image.Entries[4095], falls ? 0 : 4095);
            QCOMPARE(image.Entries[0], falls ? 4095 : 0);
            for (int i = 1; i < kLutEntries; ++i)
                QVERIFY2(image.Entries[i] == image.Entries[i - 1] ||
                             (image.Entries[i] < image.Entries[i - 1]) == falls,
                         name);
            QVERIFY2(LostCodes(image) == lost && !ReadTrailer(image), name);
        }
    }

    // Each curve's way back, as its standard gives it, leads to within half a code of the input.
    void Decoding()
    {
        const std::pair<const char*, Function> rows[] = {
            {"gamma_0_45", [](double y) { return std::exp(std::log(y) / 0.45); }},
            {"gamma_0_7", [](double y) { return std::exp(std::log(y) / 0.7); }},
            {"gamma_2_2", [](double y) { return std::exp(std::log(y) / 2.2); }},
            {"srgb", [](double y) { return y <= 0.04045 ? y / 12.92 : std::pow((y + 0.055) / 1.055, 2.4); }},
            {"rec709",
             [](double y) { return y < 0.081 ? y / 4.5 : std::pow((y + 0.099) / 1.099, 1 / 0.45); }},
            {"bt1886_inverse", [](double y) { return std::pow(y, 2.4); }},
            {"cie_lightness",
             [](double y) { return y <= 0.08 ? y * 2700 / 24389 : std::pow((100 * y + 16) / 116, 3); }},
            {"log", [](double y) { return (std::pow(21, y) - 1) / 20; }},
            {"log_inverse", [](double y) { return std::log(1 + 20 * y) / std::log(21); }},
            // The logistic function is a hyperbolic tangent.
            {"sigmoid", [](double y) { return 0.5 + std::atanh((2 * y - 1) * std::tanh(1.5)) / 3; }}};
        constexpr double kSlack = 1e-7; // the standards' own constants are rounded
        for (const auto& [name, decode] : rows) {
            const LutImage image = Read(kStandardFolder + "/" + name + ".bin");
            for (int i = 0; i < kLutEntries; ++i) {
                const double input = i / 4095.0;
                const int output = image.Entries[i];
                QVERIFY2(decode(qMax(0.0, output - 0.5) / 4095) <= input + kSlack, name);
                QVERIFY2(decode((output + 0.5) / 4095) >= input - kSlack, name);
            }
        }
    }

    // Of those that put 18 % grey at a half or above, the shipped logarithm and its inverse lose the fewest.
    void LogarithmLosesLeast()
    {
        const int shipped = LostCodes(Read(kStandardFolder + "/log.bin")) +
                            LostCodes(Read(kStandardFolder + "/log_inverse.bin"));
        for (int strength = 1; strength <= 200; ++strength) {
            const auto log = [=](double x) { return std::log(1 + strength * x) / std::log(1 + strength); };
            const auto back = [=](double x) { return (std::pow(1 + strength, x) - 1) / strength; };
            QVERIFY(log(0.18) < 0.5 || Lost(log) + Lost(back) >= shipped);
        }
    }

    void ExampleFiles()
    {
        QSet<QString> rows;
        for (const ExampleSource& example : Examples()) {
            rows += QString::fromLatin1(example.File);
            const QString path = kExampleFolder + "/" + example.File;
            if (path.endsWith(".csv"))
                continue;
            LutImage image = Read(path);
            const auto bytes = ToBytes(image);
            StampTrailer(image, example.Settings, example.Standard);
            QVERIFY2(ToBytes(image) == bytes, example.File);
        }
        const QStringList files = QDir(kExampleFolder).entryList(QDir::Files);
        QCOMPARE(QSet<QString>(files.begin(), files.end()), rows);
    }

    void ExampleEntries()
    {
        const LutImage shadows = Read(kExampleFolder + "/open_shadows.lut");
        QCOMPARE(Pick(shadows, {1, 100, 2048, 4080}), (Values{63, 639, 2906, 4089}));
        LutImage text, base;
        QCOMPARE(ReadCsvFile(kExampleFolder + "/open_shadows.csv", text, base), 0);
        QVERIFY(std::equal(std::begin(shadows.Entries), std::end(shadows.Entries), text.Entries));
        const LutImage half = Read(kExampleFolder + "/lower_half.lut");
        QVERIFY(half.Entries[1000] != 1000);
        for (int i = 2047; i < kLutEntries; ++i)
            QCOMPARE(half.Entries[i], i);
    }
};

QTEST_GUILESS_MAIN(tst_StandardCurves)
#include "tst_StandardCurves.moc"
