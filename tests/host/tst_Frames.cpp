#include <QtTest>

#include "host/frames/FrameSource.h"

using host::FrameSource;
using Raw = std::vector<std::uint16_t>;
Q_DECLARE_METATYPE(Raw)

static const QSize kOwnSize(0, 0);

class tst_Frames : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void formatTableIsConsistent();
    void rampRunsFromBlackToWhite();
    void chartRepeatsByFrameNumber();
    void sensorSeesThroughTheTile_data();
    void sensorSeesThroughTheTile();
    void pictureKeepsItsLeadingBits_data();
    void pictureKeepsItsLeadingBits();
    void pictureIsStretchedToTheFrame();
    void folderIsShownInTurn();
    void badSourceIsRefused_data();
    void badSourceIsRefused();

private:
    QString path(const QString& name) const { return m_folder->filePath(name); }
    void store(const QString& name, const QByteArray& bytes) const;
    Raw read(const QString& what, QSize size, const char* format, std::uint64_t number = 0);

    std::unique_ptr<QTemporaryDir> m_folder;
    QStringList m_warnings;
    QString m_error;
};

void tst_Frames::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_warnings.clear();
    m_error.clear();
}

void tst_Frames::store(const QString& name, const QByteArray& bytes) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

// Empty, with m_error set, when there is no such source.
Raw tst_Frames::read(const QString& what, QSize size, const char* format, std::uint64_t number)
{
    const host::PixelFormat* pixelFormat = host::pixelFormatByName(QString::fromLatin1(format));
    const auto source = FrameSource::open(what, size, *pixelFormat, &m_error, &m_warnings);
    Raw raw;
    if (source) {
        source->read(number, raw);
    }
    return raw;
}

void tst_Frames::formatTableIsConsistent()
{
    QSet<QString> names;
    QSet<std::uint32_t> codes;
    for (const host::PixelFormat& format : host::pixelFormats()) {
        const QString name = QString::fromLatin1(format.name);
        names << name;
        codes << format.code;
        QVERIFY(name.endsWith(QString::number(format.bits)));
        QCOMPARE(int(format.code >> 16 & 0xff), 8 * format.bytesPerPixel()); // PFNC holds the stored bits
        if (format.isBayer()) {
            QCOMPARE(name.mid(5, 2), QString::fromLatin1(format.tile, 2)); // and names the tile's first row
        }
    }
    QCOMPARE(names.size(), 15);
    QCOMPARE(codes.size(), 15);
}

void tst_Frames::rampRunsFromBlackToWhite()
{
    QCOMPARE(read("ramp", QSize(4, 2), "Mono12"), (Raw{0, 1365, 2730, 4095, 0, 1365, 2730, 4095}));
    QCOMPARE(read("ramp", QSize(1, 1), "BayerRG12"), (Raw{0}));
}

void tst_Frames::chartRepeatsByFrameNumber()
{
    const QSize size(161, 120);
    const Raw frame = read("chart", size, "BayerRG8", 7);
    const Raw next = read("chart", size, "BayerRG8", 8);
    QCOMPARE(frame, read("chart", size, "BayerRG8", 7));
    QVERIFY(frame != next);
    for (std::size_t i = 0; i < frame.size(); ++i) {
        QVERIFY(frame[i] <= 4095 && std::abs(frame[i] - next[i]) <= 31); // noise, not another picture
    }
    // The grey steps: columns 5, 85 and 160 lie on steps 0, 8 and 15.
    QVERIFY(frame[5] <= 15);
    QVERIFY(std::abs(frame[85] - 2184) <= 16);
    QVERIFY(frame[160] >= 4079);
    QVERIFY(read("chart", size, "Mono8", 7) != frame); // the colour patches
}

void tst_Frames::sensorSeesThroughTheTile_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<Raw>("raw");
    QTest::newRow("RG") << QByteArray("BayerRG8") << Raw{256, 512, 256, 512, 768, 512, 256, 512, 256};
    QTest::newRow("GB") << QByteArray("BayerGB12") << Raw{512, 768, 512, 256, 512, 256, 512, 768, 512};
    QTest::newRow("grey") << QByteArray("Mono12") << Raw(9, 464); // 0.30, 0.59 and 0.11 of the three
}

void tst_Frames::sensorSeesThroughTheTile()
{
    QFETCH(QByteArray, format);
    QImage picture(3, 3, QImage::Format_RGB32);
    picture.fill(qRgb(16, 32, 48));
    QVERIFY(picture.save(path("p.png")));
    QTEST(read(path("p.png"), kOwnSize, format), "raw");
}

void tst_Frames::pictureKeepsItsLeadingBits_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("bytes"); // empty: Qt writes the picture
    QTest::addColumn<Raw>("raw");
    QTest::newRow("8-bit PNG") << "p.png" << QByteArray() << Raw{0x120, 0xff0};
    QTest::newRow("16-bit TIFF") << "p.tiff" << QByteArray() << Raw{0x123, 0xfff};
    QTest::newRow("12-bit PGM") << "p.pgm" << QByteArray("P5\n# by hand\n2 1\n4095\n\x01\x23\x0f\xff")
                                << Raw{0x123, 0xfff};
    QTest::newRow("10-bit PGM, a value above its maximum")
        << "p.pgm" << QByteArray("P5 2 1 1023\n\x01\x02\x04\x00", 16) << Raw{0x408, 0xffc};
}

void tst_Frames::pictureKeepsItsLeadingBits()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    if (bytes.isEmpty()) {
        const bool deep = file.endsWith(".tiff");
        QImage picture(2, 1, deep ? QImage::Format_Grayscale16 : QImage::Format_Grayscale8);
        const QByteArray samples(deep ? "\x34\x12\xff\xff" : "\x12\xff");
        std::copy(samples.begin(), samples.end(), picture.bits());
        QVERIFY(picture.save(path(file)));
    } else {
        store(file, bytes);
    }
    QTEST(read(path(file), kOwnSize, "Mono12"), "raw");
}

void tst_Frames::pictureIsStretchedToTheFrame()
{
    store("p.pgm", "P5 2 2 255\n\x01\x02\x03\x04");
    QCOMPARE(read(path("p.pgm"), QSize(4, 2), "Mono8"), (Raw{16, 16, 32, 32, 48, 48, 64, 64}));
}

void tst_Frames::folderIsShownInTurn()
{
    store("c.pgm", "P5 1 1 255\n\x03");
    store("a.pgm", "P5 2 1 255\n\x01\x01");
    store("b.png", "no picture");
    store("d.txt", "not even by name");
    QCOMPARE(read(m_folder->path(), kOwnSize, "Mono8", 0), (Raw{16, 16}));
    QCOMPARE(m_warnings.size(), 1);
    QVERIFY(m_warnings.first().contains("b.png"));
    QCOMPARE(read(m_folder->path(), kOwnSize, "Mono8", 1), (Raw{48, 48})); // at the size of the first
    QCOMPARE(read(m_folder->path(), kOwnSize, "Mono8", 2), (Raw{16, 16}));
}

void tst_Frames::badSourceIsRefused_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("mentions");
    QTest::newRow("no such file") << "" << QByteArray() << kOwnSize << "missing.png";
    QTest::newRow("deep PGM that ends early")
        << "p.pgm" << QByteArray("P5 2 1 4095\n\x01\x02\x03") << kOwnSize << "p.pgm";
    QTest::newRow("deep PGM without pixels") << "p.pgm" << QByteArray("P5 0 9 4095\n") << kOwnSize << "0 x 9";
    QTest::newRow("deep PGM of terabytes")
        << "p.pgm" << QByteArray("P5 999999 999999 4095\n") << kOwnSize << "999999";
    QTest::newRow("PNG cut off") << "cut.png" << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) << kOwnSize
                                 << "cut.png";
    QTest::newRow("wider than a frame")
        << "p.pgm" << QByteArray("P5 1 1 255\n\x01") << QSize(8193, 1) << "8193";
}

void tst_Frames::badSourceIsRefused()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, size);
    QFETCH(QString, mentions);
    if (!file.isEmpty()) {
        store(file, bytes);
    }
    QVERIFY(read(path(file.isEmpty() ? "missing.png" : file), size, "Mono8").empty());
    QVERIFY2(m_error.contains(mentions) && m_error.endsWith('.'), qPrintable(m_error));
}

QTEST_GUILESS_MAIN(tst_Frames)
#include "tst_Frames.moc"
