#include <memory>

#include <QBuffer>
#include <QImage>
#include <QXmlStreamReader>
#include <QtTest>

#include "Tables.h"
#include "ToolProcess.h"

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

// A TIFF file whose only picture is named once more.
QByteArray twoPages(QByteArray tiff)
{
    const int at = qFromLittleEndian<qint32>(tiff.constData() + 4); // the page's directory
    const int size = 2 + 12 * tiff[at] + 4;
    const QByteArray directory = tiff.mid(at, size);
    return tiff.replace(at + size - 4, 4, littleEndian(tiff.size())) + directory;
}

QImage pixelOf(QImage::Format format, const QColor& colour)
{
    QImage image(1, 1, format);
    image.setPixelColor(0, 0, colour);
    return image;
}

// The first curve's colour.
bool hasBlue(const QImage& plot, const QRect& part)
{
    const QImage image = plot.copy(part).convertToFormat(QImage::Format_RGB32);
    const auto* pixels = reinterpret_cast<const QRgb*>(image.constBits());
    return std::any_of(pixels, pixels + part.width() * part.height(),
                       [](QRgb pixel) { return qBlue(pixel) > qRed(pixel) + 60; });
}

} // namespace

// apply and plot with small pictures. inverse.lut gives 4095 - i.
class tst_PictureCommands : public QObject
{
    Q_OBJECT

    std::unique_ptr<ToolFolder> m_folder;

private slots:
    void init()
    {
        m_folder = std::make_unique<ToolFolder>();
        m_folder->put("inverse.lut", tableOf([](int i) { return 4095 - i; }));
        m_folder->put("identity.lut", identity());
        for (const char* folder : {"in", "in/d.png", "out"})
            QDir(m_folder->path()).mkdir(folder);
    }

    // The picture mapped to a PGM; and to its own form, and from there to a PGM.
    void apply()
    {
        const QByteArray eight = pgm(255, {255, 254, 128, 0});
        const QByteArray ten = pgm(1023, {1023, 1022, 512, 0});
        const QByteArray twelve = pgm(4095, {4095, 4094, 2048, 0});
        const QByteArray sixteen = pgm(65535, {65535, 65519, 32759, 0}); // steps of 65535 / 4095
        const std::tuple<const char*, QByteArray, const char*, QByteArray, int> rows[] = {
            {"8.pgm", pgm(255, {0, 1, 127, 255}), "", eight, 8},
            {"10.pgm", pgm(1023, {0, 1, 511, 1023}), "", ten, 10},
            {"12in16.pgm", pgm(65535, {0, 1, 2047, 4095}), "--bits 12", twelve, 12},
            {"text.pgm", "P2 # a picture\n4 1\n1023\n0 1\n511#\n1023", "", ten, 10},
            {"12.png", deepGrey("png", {0, 1, 2047, 4095}), "--bits 12", twelve, 12},
            {"16.png", deepGrey("png", {0, 31, 32768, 65535}), "", sixteen, 16},
            {"12.tif", deepGrey("tiff", {0, 1, 2047, 4095}), "--bits 12", twelve, 12},
            {"single bits.png", encoded(QImage::fromData(QByteArray("P4\n2 1\n\x80")), "png"), "",
             pgm(255, {255, 0}), 8},
        };
        for (const auto& [title, picture, options, expected, bits] : rows) {
            const QString name = QString(title).remove(' ');
            m_folder->put(name, picture);
            QVERIFY(m_folder->works(QString("apply inverse.lut %1 1-%1.pgm %2").arg(name, options)));
            QVERIFY2(m_folder->get("1-" + name + ".pgm") == expected, title);
            QVERIFY(m_folder->works(QString("apply inverse.lut %1 2-%1 %2").arg(name, options)));
            const QString back = "apply identity.lut 2-%1 3-%1.pgm --bits %2";
            QVERIFY(m_folder->works(back.arg(name).arg(bits)));
            QVERIFY2(m_folder->get("3-" + name + ".pgm") == expected, title);
        }
    }

    void applyInColour()
    {
        const QImage deep = pixelOf(QImage::Format_RGBA64, qRgba64(0, 32768, 65535, 1234));
        const QImage deepMapped = pixelOf(QImage::Format_RGBA64, qRgba64(65535, 32759, 0, 1234));
        const std::tuple<const char*, QImage, QImage> rows[] = {
            {"opaque.png", pixelOf(QImage::Format_RGB32, qRgb(0, 100, 255)),
             pixelOf(QImage::Format_RGB32, qRgb(255, 155, 0))},
            {"deep.png", deep, deepMapped},
            {"deep.tif", deep, deepMapped}};
        for (const auto& [name, picture, expected] : rows) {
            QVERIFY(picture.save(m_folder->path(name)));
            QVERIFY(m_folder->works(QString("apply inverse.lut %1 %1 --force").arg(name)));
            const QImage mapped(m_folder->path(name));
            QCOMPARE(mapped.hasAlphaChannel(), expected.hasAlphaChannel());
            constexpr auto kDeep = QImage::Format_RGBA64;
            QVERIFY2(mapped.convertToFormat(kDeep) == expected.convertToFormat(kDeep), name);
            QVERIFY(m_folder->refuses(QString("apply inverse.lut %1 x.pgm").arg(name), "grey only"));
        }
    }

    void applyStreams()
    {
        const ToolRun mapped = m_folder->run("apply inverse.lut - -", pgm(4095, {0, 1, 4095}));
        QVERIFY2(mapped.status == 0, mapped.err);
        QCOMPARE(mapped.out, pgm(4095, {4095, 4094, 0}));
        m_folder->put("x.pgm", pgm(255, {1}));
        QCOMPARE(m_folder->run("apply - x.pgm -", m_folder->get("inverse.lut")).out, pgm(255, {254}));
        QVERIFY(m_folder->refuses("apply - - -", "standard input"));
    }

    void applyRefuses()
    {
        const QByteArray eight = pgm(255, {1, 2});
        const QByteArray hugePng = deepGrey("png", {1}).replace(16, 8, QByteArray("\0\1\0\0\0\1\0\0", 8));
        const std::tuple<QByteArray, const char*, const char*> rows[] = {
            {"", "", "PNG, TIFF or PGM"},
            {eight.chopped(1), "", "ends before"},
            {"P2 2 2 255 111 222 333", "", "above 255"}, // a pixel too few: 111222333 is none
            {"P5", "", "header"},
            {"P5 1 1 1000 ab", "", "maximum is 1000"},
            {"P5 1000000 1000000 255 a", "", "too many"},
            {hugePng, "", "can't be read"},
            {deepGrey("png", {1, 70, 4000}).left(50), "", "can't be read"},
            {twoPages(deepGrey("tiff", {1})), "", "more than one picture"},
            {deepGrey("png", {0, 1024}), "--bits 10", "up to 1024, too large for 10 bits"},
            {deepGrey("png", {0, 4095}), "", "--bits"}, // dark or a camera's
            {eight, "--bits 12", "of 8 bits, not 12"}};
        for (const auto& [picture, options, words] : rows) {
            m_folder->put("x", picture);
            const ToolRun result = m_folder->run(QString("apply inverse.lut x out.pgm ") + options);
            QCOMPARE(result.status, 2);
            QVERIFY2(result.err.contains(words), result.err); // libpng may have added a line
            QVERIFY(!QFile::exists(m_folder->path("out.pgm")));
        }
    }

    // Everything that can be mapped is, whatever lies beside it; what is there already stays, or is replaced
    // where that was asked for.
    void folder()
    {
        m_folder->put("in/a.pgm", pgm(255, {0, 1}));
        m_folder->put("in/b.png", "no picture");
        m_folder->put("in/c.PNG", encoded(pixelOf(QImage::Format_Grayscale8, qRgb(1, 1, 1)), "png"));
        m_folder->put("in/notes.txt", "no picture");
        QVERIFY(m_folder->refuses("apply inverse.lut in made/out", "b.png"));
        QCOMPARE(QDir(m_folder->path("made/out")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 (QStringList{"a.pgm", "c.PNG"}));
        QCOMPARE(m_folder->get("made/out/a.pgm"), pgm(255, {255, 254}));
        QCOMPARE(QImage(m_folder->path("made/out/c.PNG")).pixel(0, 0), qRgb(254, 254, 254));

        QVERIFY(QFile::remove(m_folder->path("in/b.png")));
        m_folder->put("out/c.PNG", "old");
        QVERIFY(m_folder->refuses("apply inverse.lut in out", "--force"));
        QVERIFY(!QFile::exists(m_folder->path("out/a.pgm")));
        QCOMPARE(m_folder->get("out/c.PNG"), QByteArray("old"));
        const ToolRun result = m_folder->runProgram(
            "script", {"-qec", ORLUNE_LUT " apply inverse.lut in out --force", "/dev/null"});
        QCOMPARE(result.status, 0);
        QCOMPARE(m_folder->get("out/c.PNG"), m_folder->get("made/out/c.PNG"));
        QVERIFY2(result.out.contains("[####################                    ] 1 of 2"), result.out);
        QVERIFY2(result.out.endsWith("] 2 of 2\r\x1b[K"), result.out);
    }

    // The identity rises from the left, at the bottom, to the right.
    void plotCurves()
    {
        const ToolRun result = m_folder->run("plot identity.lut inverse.lut -o - --to png --size 400x300");
        QVERIFY2(result.status == 0 && result.err.isEmpty(), result.err);
        const QImage plot = QImage::fromData(result.out);
        QCOMPARE(plot.size(), QSize(400, 300));
        QVERIFY(hasBlue(plot, {60, 200, 100, 100}));
        QVERIFY(hasBlue(plot, {180, 0, 100, 60}));
        QVERIFY(!hasBlue(plot, {60, 0, 100, 60}));
    }

    // The lower half shows the mapped samples where the table puts them: left, or right.
    void plotHistograms()
    {
        m_folder->put("x.pgm", pgm(255, {10, 10, 10, 200}));
        for (const bool falls : {false, true}) {
            const QString table = falls ? "inverse" : "identity";
            QVERIFY(m_folder->works(QString("plot %1.lut -o %1.png --image x.pgm").arg(table)));
            const QImage plot(m_folder->path(table + ".png"));
            QCOMPARE(plot.size(), QSize(800, 1000));
            QCOMPARE(hasBlue(plot, {80, 600, 220, 1}), !falls);
            QCOMPARE(hasBlue(plot, {400, 600, 200, 1}), falls);
        }
    }

    void plotSvg()
    {
        m_folder->put("a & b.csv", QByteArray("7\n").repeated(4096));
        QCOMPARE(m_folder->runProgram(ORLUNE_LUT, {"plot", "a & b.csv", "-o", "x.svg"}).status, 0);
        QXmlStreamReader xml(m_folder->get("x.svg"));
        QString text;
        for (; !xml.atEnd(); xml.readNext())
            text += xml.text();
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QVERIFY(text.contains("a & b.csv"));
    }

    void plotRefuses()
    {
        m_folder->put("old.png", "old");
        const std::pair<QString, const char*> rows[] = {
            {"-o out.jpg", "png or svg"},
            {"-o out.png --size 199x600", "200"},
            {"-o out.png --image identity.lut", "identity.lut"},
            {"-o old.png", "--force"},
            {QString("identity.lut ").repeated(28) + "-o out.png", "curves"}};
        for (const auto& [options, words] : rows) {
            QVERIFY2(m_folder->refuses("plot identity.lut " + options, words), words);
            QVERIFY(!QFile::exists(m_folder->path("out.png")));
            QCOMPARE(m_folder->get("old.png"), QByteArray("old"));
        }
    }
};

QTEST_GUILESS_MAIN(tst_PictureCommands)
#include "tst_PictureCommands.moc"
