#include <memory>

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QXmlStreamReader>
#include <QtTest>

#include "Tables.h"
#include "ToolProcess.h"

Q_DECLARE_METATYPE(QVector<int>)

// apply and plot with small pictures. inverse.lut gives 4095 - i.
class tst_PictureCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void apply_data();
    void apply();
    void applyInColour_data();
    void applyInColour();
    void applyStreams();
    void applyRefuses_data();
    void applyRefuses();
    void folder();
    void folderAlreadyThere();
    void folderWithABar();
    void plotCurves();
    void plotHistograms();
    void plotSvg();
    void plotRefuses_data();
    void plotRefuses();

private:
    std::unique_ptr<ToolFolder> m_folder;
};

namespace {

using Samples = QVector<int>;

QByteArray pgm(int maximum, const Samples& samples)
{
    QByteArray bytes =
        "P5\n" + QByteArray::number(samples.size()) + " 1\n" + QByteArray::number(maximum) + '\n';
    for (int sample : samples) {
        if (maximum > 255)
            bytes += char(sample >> 8);
        bytes += char(sample);
    }
    return bytes;
}

QByteArray encoded(const QImage& image, const char* form)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!image.save(&buffer, form))
        qFatal("no picture to test with");
    return bytes;
}

QByteArray deepGrey(const char* form, const Samples& samples)
{
    QImage image(samples.size(), 1, QImage::Format_Grayscale16);
    std::copy(samples.begin(), samples.end(), reinterpret_cast<quint16*>(image.bits()));
    return encoded(image, form);
}

QByteArray grey(const char* form, const Samples& samples)
{
    QImage image(samples.size(), 1, QImage::Format_Grayscale8);
    std::copy(samples.begin(), samples.end(), image.bits());
    return encoded(image, form);
}

QByteArray blackAndWhite()
{
    QImage image(2, 1, QImage::Format_Mono);
    image.setColorTable({0xff000000, 0xffffffff});
    image.setPixel(0, 0, 0);
    image.setPixel(1, 0, 1);
    return encoded(image, "png");
}

// A TIFF file of one grey pixel a page.
QByteArray tiffOfPages(int pages)
{
    QByteArray bytes("II*\0\x08\0\0\0", 8);
    const auto word = [](int value) { return QByteArray(1, char(value)) + char(value >> 8); };
    for (int page = 0; page < pages; ++page) {
        const int next = page + 1 < pages ? bytes.size() + 2 + 8 * 12 + 4 : 0;
        bytes += word(8);
        const int tags[8][2] = {{256, 1}, {257, 1}, {258, 8}, {259, 1},
                                {262, 1}, {273, 0}, {278, 1}, {279, 1}};
        for (const auto& tag : tags)
            bytes += word(tag[0]) + word(4) + littleEndian(1) + littleEndian(tag[1]);
        bytes += littleEndian(next);
    }
    return bytes;
}

} // namespace

void tst_PictureCommands::init()
{
    m_folder = std::make_unique<ToolFolder>();
    m_folder->put("inverse.lut", tableOf([](int i) { return 4095 - i; }));
    m_folder->put("identity.lut", identity());
}

void tst_PictureCommands::apply_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("picture");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("expected"); // as a PGM
    const auto row = [](const char* title, const char* name, const QByteArray& picture,
                        const QString& options, const QByteArray& expected) {
        QTest::newRow(title) << name << picture << options.split(' ', Qt::SkipEmptyParts) << expected;
    };
    const QByteArray eight = pgm(255, {255, 254, 128, 0});
    const QByteArray ten = pgm(1023, {1023, 1022, 512, 0});
    const QByteArray twelve = pgm(4095, {4095, 4094, 2048, 0});
    const QByteArray sixteen = pgm(65535, {65535, 65519, 32759, 0}); // steps of 65535 / 4095
    row("PGM of 8 bits", "x.pgm", pgm(255, {0, 1, 127, 255}), "", eight);
    row("PGM of 10 bits", "x.pgm", pgm(1023, {0, 1, 511, 1023}), "", ten);
    row("PGM of 16 bits that hold 12", "x.pgm", pgm(65535, {0, 1, 2047, 4095}), "--bits 12", twelve);
    row("PGM in text", "x.pgm", "P2 # a picture\n4 1\n1023\n0 1\n511#\n1023", "", ten);
    row("PNG of 12 bits", "x.png", deepGrey("png", {0, 1, 2047, 4095}), "--bits 12", twelve);
    row("PNG of 16 bits", "x.png", deepGrey("png", {0, 31, 32768, 65535}), "", sixteen);
    row("TIFF of 12 bits", "x.tif", deepGrey("tiff", {0, 1, 2047, 4095}), "--bits 12", twelve);
    row("TIFF of one page", "x.tif", tiffOfPages(1), "", pgm(255, {255 - 'I'}));
    row("single bits", "x.png", blackAndWhite(), "", pgm(255, {255, 0}));
}

void tst_PictureCommands::apply()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, picture);
    QFETCH(QStringList, options);
    QFETCH(QByteArray, expected);
    m_folder->put(name, picture);
    const ToolRun result = m_folder->run(QStringList{"apply", "inverse.lut", name, "out.pgm"} + options);
    QVERIFY2(result.status == 0 && result.err.isEmpty(), result.err);
    QCOMPARE(m_folder->get("out.pgm"), expected);

    // Through a file of the picture's own form, too.
    QVERIFY(m_folder->run(QStringList{"apply", "inverse.lut", name, "out-" + name} + options).status == 0);
    const int maximum = expected.split('\n').value(2).toInt();
    const QStringList bits{"--bits", QString::number(maximum == 255    ? 8
                                                     : maximum == 1023 ? 10
                                                     : maximum == 4095 ? 12
                                                                       : 16)};
    QVERIFY(m_folder->run(QStringList{"apply", "identity.lut", "out-" + name, "again.pgm"} + bits).status ==
            0);
    QCOMPARE(m_folder->get("again.pgm"), expected);
}

void tst_PictureCommands::applyInColour_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<QImage>("expected");
    QImage opaque(1, 1, QImage::Format_RGB32), opaqueMapped = opaque;
    opaque.setPixel(0, 0, qRgb(0, 100, 255));
    opaqueMapped.setPixel(0, 0, qRgb(255, 155, 0));
    QImage deep(1, 1, QImage::Format_RGBA64), deepMapped = deep;
    deep.setPixelColor(0, 0, qRgba64(0, 32768, 65535, 1234));
    deepMapped.setPixelColor(0, 0, qRgba64(65535, 32759, 0, 1234));
    QTest::newRow("PNG") << "x.png" << opaque << opaqueMapped;
    QTest::newRow("deep PNG with alpha") << "x.png" << deep << deepMapped;
    QTest::newRow("deep TIFF with alpha") << "x.tif" << deep << deepMapped;
}

void tst_PictureCommands::applyInColour()
{
    QFETCH(QString, name);
    QFETCH(QImage, picture);
    QFETCH(QImage, expected);
    QVERIFY(picture.save(m_folder->path(name)));
    const ToolRun result = m_folder->run({"apply", "inverse.lut", name, name, "--force"});
    QVERIFY2(result.status == 0, result.err);
    const QImage mapped(m_folder->path(name));
    QCOMPARE(mapped.hasAlphaChannel(), expected.hasAlphaChannel());
    QCOMPARE(mapped.convertToFormat(QImage::Format_RGBA64), expected.convertToFormat(QImage::Format_RGBA64));
    QVERIFY(m_folder->run({"apply", "inverse.lut", name, "x.pgm"}).complains());
}

void tst_PictureCommands::applyStreams()
{
    const ToolRun mapped = m_folder->run({"apply", "inverse.lut", "-", "-"}, pgm(4095, {0, 1, 4095}));
    QVERIFY2(mapped.status == 0, mapped.err);
    QCOMPARE(mapped.out, pgm(4095, {4095, 4094, 0}));
    m_folder->put("x.pgm", pgm(255, {1}));
    const ToolRun table = m_folder->run({"apply", "-", "x.pgm", "-"}, m_folder->get("inverse.lut"));
    QCOMPARE(table.out, pgm(255, {254}));
    QVERIFY(m_folder->run({"apply", "-", "-", "-"}).complains());
}

void tst_PictureCommands::applyRefuses_data()
{
    QTest::addColumn<QByteArray>("picture");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("words");
    const auto row = [](const char* name, const QByteArray& picture, const QString& options,
                        const char* words) {
        QTest::newRow(name) << picture << options.split(' ', Qt::SkipEmptyParts) << words;
    };
    const QByteArray eight = pgm(255, {1, 2});
    row("empty", "", "", "PNG, TIFF or PGM");
    row("a pixel short", eight.chopped(1), "", "ends before");
    row("text with a pixel too few", "P2 2 2 255 111 222 333", "", "above 255");
    row("no header", "P5", "", "header");
    row("unknown depth", "P5 1 1 1000 ab", "", "maximum is 1000");
    row("endless PGM", "P5 1000000 1000000 255 a", "", "too many");
    row("endless PNG", deepGrey("png", {1}).replace(16, 8, QByteArray("\0\1\0\0\0\1\0\0", 8)), "",
        "can't be read");
    row("PNG cut off", deepGrey("png", {1, 70, 4000}).left(50), "", "can't be read");
    row("TIFF of two pages", tiffOfPages(2), "", "more than one picture");
    row("too few bits asked", deepGrey("png", {0, 1024}), "--bits 10", "up to 1024, too large for 10 bits");
    row("dark or a camera's", deepGrey("png", {0, 4095}), "", "--bits");
    row("12 asked of 8", eight, "--bits 12", "of 8 bits, not 12");
}

void tst_PictureCommands::applyRefuses()
{
    QFETCH(QByteArray, picture);
    QFETCH(QStringList, options);
    QFETCH(QString, words);
    m_folder->put("x", picture);
    const ToolRun result = m_folder->run(QStringList{"apply", "inverse.lut", "x", "out.pgm"} + options);
    QCOMPARE(result.status, 2);
    QVERIFY2(QString(result.err).contains(words), result.err);
    QVERIFY(!QFile::exists(m_folder->path("out.pgm")));
}

// Everything that can be mapped is, whatever lies beside it.
void tst_PictureCommands::folder()
{
    QDir(m_folder->path("")).mkdir("in");
    m_folder->put("in/a.pgm", pgm(255, {0, 1}));
    m_folder->put("in/b.png", "no picture");
    m_folder->put("in/c.PNG", grey("png", {0, 1}));
    m_folder->put("in/notes.txt", "no picture");
    QDir(m_folder->path("in")).mkdir("d.png");
    const ToolRun result = m_folder->run({"apply", "inverse.lut", "in", "made/out"});
    QCOMPARE(result.status, 2);
    QVERIFY2(result.complains() && result.err.contains("b.png"), result.err);
    QCOMPARE(QDir(m_folder->path("made/out")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             (QStringList{"a.pgm", "c.PNG"}));
    QCOMPARE(m_folder->get("made/out/a.pgm"), pgm(255, {255, 254}));
    QCOMPARE(QImage(m_folder->path("made/out/c.PNG")).pixel(1, 0), qRgb(254, 254, 254));
}

void tst_PictureCommands::folderAlreadyThere()
{
    for (const char* folder : {"in", "out"})
        QDir(m_folder->path("")).mkdir(folder);
    m_folder->put("in/a.pgm", pgm(255, {0}));
    m_folder->put("in/b.pgm", pgm(255, {0}));
    m_folder->put("out/b.pgm", "old");
    QVERIFY(m_folder->run({"apply", "inverse.lut", "in", "out"}).complains());
    QVERIFY(!QFile::exists(m_folder->path("out/a.pgm")));
    QCOMPARE(m_folder->get("out/b.pgm"), QByteArray("old"));
    QCOMPARE(m_folder->run({"apply", "inverse.lut", "in", "out", "--force"}).status, 0);
    QCOMPARE(m_folder->get("out/b.pgm"), pgm(255, {255}));
}

void tst_PictureCommands::folderWithABar()
{
    QDir(m_folder->path("")).mkdir("in");
    m_folder->put("in/a.pgm", pgm(255, {0}));
    m_folder->put("in/b.pgm", pgm(255, {0}));
    const ToolRun result =
        m_folder->runProgram("script", {"-qec", ORLUNE_LUT " apply inverse.lut in out", "/dev/null"});
    QCOMPARE(result.status, 0);
    QVERIFY2(result.out.contains("[####################                    ] 1 of 2"), result.out);
    QVERIFY2(result.out.endsWith("] 2 of 2\r\x1b[K"), result.out);
}

// The curve's own colour along the diagonal that it runs on.
void tst_PictureCommands::plotCurves()
{
    const ToolRun result =
        m_folder->run({"plot", "identity.lut", "inverse.lut", "-o", "-", "--to", "png", "--size", "400x300"});
    QVERIFY2(result.status == 0 && result.err.isEmpty(), result.err);
    const QImage plot = QImage::fromData(result.out);
    QCOMPARE(plot.size(), QSize(400, 300));
    const auto isBlue = [](QRgb pixel) { return qBlue(pixel) > qRed(pixel) + 60; };
    int top = 300, bottom = 0;
    for (int x = 60; x < 280; ++x) {
        for (int y = 0; y < 300; ++y) {
            if (isBlue(plot.pixel(x, y))) {
                top = qMin(top, y);
                bottom = qMax(bottom, y);
                QVERIFY2(x < 250 ? y > 30 || x > 200 : true, "blue off the diagonal");
            }
        }
    }
    QVERIFY2(top < 60 && bottom > 200, "the curve reaches both ends");
}

void tst_PictureCommands::plotHistograms()
{
    m_folder->put("x.pgm", pgm(255, {10, 10, 10, 200}));
    QVERIFY(m_folder->run({"plot", "identity.lut", "-o", "with.png", "--image", "x.pgm"}).status == 0);
    QVERIFY(m_folder->run({"plot", "inverse.lut", "-o", "inverse.png", "--image", "x.pgm"}).status == 0);
    const QImage with(m_folder->path("with.png")), inverse(m_folder->path("inverse.png"));
    QCOMPARE(with.size(), QSize(800, 1000));
    // The lower half shows the mapped samples where the table puts them: left, or right.
    const auto blueColumns = [](const QImage& plot, int from, int to) {
        int count = 0;
        for (int x = from; x < to; ++x) {
            const QRgb pixel = plot.pixel(x, 600);
            count += qBlue(pixel) > qRed(pixel) + 60;
        }
        return count;
    };
    QVERIFY(blueColumns(with, 80, 300) > 0 && blueColumns(with, 400, 600) == 0);
    QVERIFY(blueColumns(inverse, 80, 300) == 0 && blueColumns(inverse, 400, 600) > 0);
}

void tst_PictureCommands::plotSvg()
{
    m_folder->put("a & b.csv", QByteArray("7\n").repeated(4096));
    QCOMPARE(m_folder->run({"plot", "a & b.csv", "-o", "x.svg"}).status, 0);
    QXmlStreamReader xml(m_folder->get("x.svg"));
    QString text;
    while (!xml.atEnd()) {
        xml.readNext();
        text += xml.text();
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QVERIFY(text.contains("a & b.csv"));
}

void tst_PictureCommands::plotRefuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    const auto row = [](const char* name, const QString& arguments) {
        QTest::newRow(name) << arguments.split(' ');
    };
    row("another form", "identity.lut -o out.jpg");
    row("size too small", "identity.lut -o out.png --size 199x600");
    row("no picture", "identity.lut -o out.png --image identity.lut");
    row("output exists", "identity.lut -o old.png");
    row("too many curves", QString("identity.lut ").repeated(29) + "-o out.png");
}

void tst_PictureCommands::plotRefuses()
{
    QFETCH(QStringList, arguments);
    m_folder->put("old.png", "old");
    const ToolRun result = m_folder->run(QStringList("plot") + arguments);
    QVERIFY2(result.status == 2 && result.complains(), result.err);
    QVERIFY(!QFile::exists(m_folder->path("out.png")));
    QCOMPARE(m_folder->get("old.png"), QByteArray("old"));
}

QTEST_GUILESS_MAIN(tst_PictureCommands)
#include "tst_PictureCommands.moc"
