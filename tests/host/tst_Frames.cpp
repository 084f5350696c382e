#include <QBuffer>
#include <QtTest>

#include "host/frames/FrameSource.h"
#include "support/TestFolder.h"

using Raw = std::vector<std::uint16_t>;

static const QSize kOwnSize(0, 0);

class tst_Frames : public QObject
{
    Q_OBJECT

    // A picture of the folder; empty, with m_error set, when there is no such source.
    Raw read(const QString& file, QSize size, const char* format, std::uint64_t number = 0)
    {
        return readScene(m_folder.path(file), size, format, number);
    }
    Raw readScene(const QString& what, QSize size, const char* format, std::uint64_t number = 0)
    {
        const host::PixelFormat* pixelFormat = host::pixelFormatByName(QString::fromLatin1(format));
        const auto source = host::FrameSource::open(what, size, *pixelFormat, &m_error, &m_warnings);
        Raw raw;
        if (source)
            source->read(number, raw);
        return raw;
    }

    const TestFolder m_folder;
    QStringList m_warnings;
    QString m_error;

private slots:
    void formatTableIsConsistent()
    {
        QSet<QString> names;
        QSet<std::uint32_t> codes;
        for (const host::PixelFormat& format : host::pixelFormats()) {
            const QString name = QString::fromLatin1(format.name);
            names << name;
            codes << format.code;
            QVERIFY(name.endsWith(QString::number(format.bits)));
            QCOMPARE(int(format.code >> 16 & 0xff), 8 * format.bytesPerPixel()); // PFNC holds the stored bits
            if (format.isBayer()) // and names the tile's first row
                QCOMPARE(name.mid(5, 2), QString::fromLatin1(format.tile, 2));
        }
        QCOMPARE(names.size(), 15);
        QCOMPARE(codes.size(), 15);
    }

    // Their pictures are in the transcripts.
    void scenes()
    {
        QCOMPARE(readScene("ramp", QSize(1, 1), "BayerRG12"), (Raw{0}));
        const QSize size(161, 120);
        const Raw frame = readScene("chart", size, "BayerRG8", 7),
                  next = readScene("chart", size, "BayerRG8", 8);
        QCOMPARE(frame, readScene("chart", size, "BayerRG8", 7));
        QVERIFY(frame != next);
        for (std::size_t i = 0; i < frame.size(); ++i) // noise, not another picture
            QVERIFY(frame[i] <= 4095 && std::abs(frame[i] - next[i]) <= 31);
    }

    void sensorSeesThroughTheTile()
    {
        QImage picture(3, 3, QImage::Format_RGB32);
        picture.fill(qRgb(16, 32, 48));
        QVERIFY(picture.save(m_folder.path("p.png")));
        QCOMPARE(read("p.png", kOwnSize, "BayerRG8"), (Raw{256, 512, 256, 512, 768, 512, 256, 512, 256}));
        QCOMPARE(read("p.png", kOwnSize, "BayerGB12"), (Raw{512, 768, 512, 256, 512, 256, 512, 768, 512}));
        QCOMPARE(read("p.png", kOwnSize, "Mono12"), Raw(9, 464)); // 0.30, 0.59 and 0.11 of the three
    }

    void pictureKeepsItsLeadingBits()
    {
        for (const bool deep : {false, true}) {
            QImage picture(2, 1, deep ? QImage::Format_Grayscale16 : QImage::Format_Grayscale8);
            const QByteArray samples(deep ? "\x34\x12\xff\xff" : "\x12\xff");
            std::copy(samples.begin(), samples.end(), picture.bits());
            QVERIFY(picture.save(m_folder.path(deep ? "p.tiff" : "p.png")));
        }
        m_folder.put("12.pgm", "P5\n# by hand\n2 1\n4095\n\x01\x23\x0f\xff");
        m_folder.put("10.pgm", QByteArray("P5 2 1 1023\n\x01\x02\x04\x00", 16)); // a value above its maximum
        m_folder.put("8.pgm", "P5 2 2 255\n\x01\x02\x03\x04");
        QCOMPARE(read("p.png", kOwnSize, "Mono12"), (Raw{0x120, 0xff0}));
        QCOMPARE(read("p.tiff", kOwnSize, "Mono12"), (Raw{0x123, 0xfff}));
        QCOMPARE(read("12.pgm", kOwnSize, "Mono12"), (Raw{0x123, 0xfff}));
        QCOMPARE(read("10.pgm", kOwnSize, "Mono12"), (Raw{0x408, 0xffc}));
        QCOMPARE(read("8.pgm", QSize(4, 2), "Mono8"), (Raw{16, 16, 32, 32, 48, 48, 64, 64})); // stretched
    }

    void folderIsShownInTurn()
    {
        m_folder.put("turn/c.pgm", "P5 1 1 255\n\x03");
        m_folder.put("turn/a.pgm", "P5 2 1 255\n\x01\x01");
        m_folder.put("turn/b.png", "no picture");
        m_folder.put("turn/d.txt", "not even by name");
        QCOMPARE(read("turn", kOwnSize, "Mono8", 0), (Raw{16, 16}));
        QCOMPARE(m_warnings.size(), 1);
        QVERIFY(m_warnings.first().contains("b.png"));
        QCOMPARE(read("turn", kOwnSize, "Mono8", 1), (Raw{48, 48})); // at the size of the first
        QCOMPARE(read("turn", kOwnSize, "Mono8", 2), (Raw{16, 16}));
    }

    void badSourceIsRefused()
    {
        QByteArray png;
        QBuffer whole(&png);
        QVERIFY(QImage(50, 50, QImage::Format_RGB32).save(&whole, "PNG"));
        const QByteArray dot = "P5 1 1 255\n\x01";
        const std::tuple<const char*, QByteArray, QSize, const char*> rows[] = {
            {"no picture.png", "GIF?", kOwnSize, "no picture.png"},
            {"early end.pgm", "P5 2 1 4095\n\x01\x02\x03", kOwnSize, "early end.pgm"},
            {"no pixels.pgm", "P5 0 9 4095\n", kOwnSize, "0 x 9"},
            {"terabytes.pgm", "P5 999999 999999 4095\n", kOwnSize, "999999"},
            {"cut off.png", png.left(40), kOwnSize, "cut off.png"},
            {"p.pgm", dot, QSize(8193, 1), "8193"},
            {"p.pgm", dot, QSize(1, -1), "-1"}};
        QVERIFY(read("missing.png", kOwnSize, "Mono8").empty() && m_error.contains("missing.png"));
        for (const auto& [file, bytes, size, mentions] : rows) {
            m_folder.put(file, bytes);
            QVERIFY2(read(file, size, "Mono8").empty(), file);
            QVERIFY2(m_error.contains(mentions) && m_error.endsWith('.'), qPrintable(m_error));
        }
    }
};

QTEST_GUILESS_MAIN(tst_Frames)
#include "tst_Frames.moc"
