#include <cmath>
#include <functional>

#include <QtTest>

#include "curves/StandardCurves.h"
#include "lut/LutFiles.h"
#include "lut/StandardCatalogue.h"

using namespace orlune;

namespace {

using Function = std::function<double(double)>;

const QString kStandardFolder = ORLUNE_TABLES "/StandardLut";
const QString kExampleFolder = ORLUNE_TABLES "/Lut12";

LutImage Read(const QString& path)
{
    LutImage current, base;
    if (ReadLutFile(path, current, base) != 0)
        qFatal("%s is missing", qPrintable(path));
    return current;
}

} // namespace

Q_DECLARE_METATYPE(Function)

class tst_StandardCurves : public QObject
{
    Q_OBJECT

private slots:
    void Catalogue();
    void Points_data();
    void Points();
    void Decoding_data();
    void Decoding();
    void Symmetry();
    void ExampleFiles();
};

// The files are those of the rows, found as the dialog finds them, and a trailer can hold each name.
void tst_StandardCurves::Catalogue()
{
    QSet<QString> rows, files;
    for (const CurveSource& curve : StandardCurves())
        rows += QString::fromLatin1(curve.Name);
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
void tst_StandardCurves::Points_data()
{
    QTest::addColumn<int>("at1");
    QTest::addColumn<int>("at737"); // 18 % grey
    QTest::addColumn<int>("at2048");
    QTest::addColumn<int>("at4094");
    QTest::addColumn<int>("lost");
    QTest::newRow("lut4_11") << 1 << 737 << 2048 << 4094 << 0;
    QTest::newRow("gamma_0_45") << 97 << 1893 << 2998 << 4095 << 1172;
    QTest::newRow("gamma_0_7") << 12 << 1233 << 2521 << 4094 << 534;
    QTest::newRow("gamma_2_2") << 0 << 94 << 892 << 4093 << 1158;
    QTest::newRow("srgb") << 13 << 1889 << 3012 << 4095 << 1176;
    QTest::newRow("rec709") << 5 << 1675 << 2889 << 4095 << 986;
    QTest::newRow("bt1886_inverse") << 128 << 2004 << 3068 << 4095 << 1278;
    QTest::newRow("cie_lightness") << 9 << 2027 << 3115 << 4095 << 1314;
    QTest::newRow("log") << 7 << 2052 << 3226 << 4095 << 1392;
    QTest::newRow("log_inverse") << 0 << 149 << 734 << 4092 << 1392;
    QTest::newRow("sigmoid") << 0 << 364 << 2048 << 4095 << 826;
    QTest::newRow("inverse") << 4094 << 3358 << 2047 << 1 << 0;
    QTest::newRow("threshold") << 0 << 0 << 4095 << 4095 << 4094;
}

void tst_StandardCurves::Points()
{
    QFETCH(int, at1);
    QFETCH(int, at737);
    QFETCH(int, at2048);
    QFETCH(int, at4094);
    QFETCH(int, lost);
    const QString name = QTest::currentDataTag();
    const LutImage image = Read(kStandardFolder + "/" + name + ".bin");
    const bool falls = name == "inverse";
    QCOMPARE(image.Entries[0], falls ? 4095 : 0);
    QCOMPARE(image.Entries[1], at1);
    QCOMPARE(image.Entries[737], at737);
    QCOMPARE(image.Entries[2048], at2048);
    QCOMPARE(image.Entries[4094], at4094);
    QCOMPARE(image.Entries[4095], falls ? 0 : 4095);
    for (int i = 1; i < kLutEntries; ++i)
        QVERIFY(falls ? image.Entries[i] < image.Entries[i - 1] : image.Entries[i] >= image.Entries[i - 1]);
    QCOMPARE(LostCodes(image), lost);
    QVERIFY(!ReadTrailer(image));
}

// Each curve's way back, as its standard gives it, leads to within half a code of the input.
void tst_StandardCurves::Decoding_data()
{
    QTest::addColumn<Function>("decode");
    const auto row = [](const char* name, const Function& decode) { QTest::newRow(name) << decode; };
    row("gamma_0_45", [](double y) { return std::exp(std::log(y) / 0.45); });
    row("gamma_0_7", [](double y) { return std::exp(std::log(y) / 0.7); });
    row("gamma_2_2", [](double y) { return std::exp(std::log(y) / 2.2); });
    row("srgb", [](double y) { return y <= 0.04045 ? y / 12.92 : std::pow((y + 0.055) / 1.055, 2.4); });
    row("rec709", [](double y) { return y < 0.081 ? y / 4.5 : std::pow((y + 0.099) / 1.099, 1 / 0.45); });
    row("bt1886_inverse", [](double y) { return std::pow(y, 2.4); });
    row("cie_lightness", [](double y) {
        const double lightness = 100 * y;
        return lightness <= 8 ? lightness * 27 / 24389 : std::pow((lightness + 16) / 116, 3);
    });
    row("log", [](double y) { return (std::pow(21, y) - 1) / 20; });
    row("log_inverse", [](double y) { return std::log(1 + 20 * y) / std::log(21); });
    row("sigmoid", [](double y) {
        const double half = std::tanh(1.5); // the logistic function is a hyperbolic tangent
        return 0.5 + std::atanh((2 * y - 1) * half) / 3;
    });
}

void tst_StandardCurves::Decoding()
{
    QFETCH(Function, decode);
    const LutImage image = Read(kStandardFolder + "/" + QTest::currentDataTag() + ".bin");
    constexpr double kSlack = 1e-7; // the standards' own constants are rounded
    for (int i = 0; i < kLutEntries; ++i) {
        const double input = i / 4095.0;
        const int output = image.Entries[i];
        QVERIFY2(decode(qMax(0.0, output - 0.5) / 4095) <= input + kSlack, QByteArray::number(i));
        QVERIFY2(decode((output + 0.5) / 4095) >= input - kSlack, QByteArray::number(i));
    }
}

void tst_StandardCurves::Symmetry()
{
    const LutImage sigmoid = Read(kStandardFolder + "/sigmoid.bin");
    for (int i = 0; i < kLutEntries; ++i)
        QCOMPARE(sigmoid.Entries[i] + sigmoid.Entries[4095 - i], 4095);
}

void tst_StandardCurves::ExampleFiles()
{
    QSet<QString> rows;
    for (const ExampleSource& example : Examples()) {
        rows += QString::fromLatin1(example.File);
        const QString path = kExampleFolder + "/" + example.File;
        if (path.endsWith(".csv"))
            continue;
        const auto trailer = ReadTrailer(Read(path));
        QVERIFY(trailer);
        QCOMPARE(trailer->StandardName, QByteArray(example.Standard));
        QCOMPARE(trailer->Settings.Gamma, example.Settings.Gamma);
        QCOMPARE(trailer->Settings.RangeMax, example.Settings.RangeMax);
    }
    const QStringList files = QDir(kExampleFolder).entryList(QDir::Files);
    QCOMPARE(QSet<QString>(files.begin(), files.end()), rows);
}

QTEST_GUILESS_MAIN(tst_StandardCurves)
#include "tst_StandardCurves.moc"
