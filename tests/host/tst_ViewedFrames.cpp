// What the viewer makes of a frame: counts, losses, pictures, files; and the mailbox that it comes through.
#include <cstring>

#include <QtTest>

#include "host/app/FrameImage.h"
#include "host/app/FrameMailbox.h"
#include "host/app/Histogram.h"

using host::Frame;

static Frame frame8(int width, int height, std::vector<std::uint8_t> pixels)
{
    return {0x01080001, width, height, 0, std::move(pixels)};
}

static Frame frame16(int width, int height, const std::vector<std::uint16_t>& words)
{
    Frame frame{0x01100005, width, height, 0, std::vector<std::uint8_t>(2 * words.size())};
    std::memcpy(frame.pixels.data(), words.data(), frame.pixels.size());
    return frame;
}

class tst_ViewedFrames : public QObject
{
    Q_OBJECT

    const host::PixelFormat &m_mono8 = *host::pixelFormatByName("Mono8"),
                            &m_mono12 = *host::pixelFormatByName("Mono12");

private slots:
    void wordsAboveTheLastCodeCountAsIt()
    {
        const host::Histogram histogram = host::countCodes(frame16(3, 1, {1023, 1024, 0xffff}), 10);
        QCOMPARE(histogram.counts.size(), std::size_t(1024));
        QCOMPARE(histogram.counts[1023], 3u);
    }

    void shortBufferIsReadAsFarAsItGoes()
    {
        Frame frame = frame16(2, 2, {5, 6, 7, 8});
        frame.pixels.resize(5);
        QCOMPARE(host::countCodes(frame, 12).usedCodes(), 2);
        QCOMPARE(host::codeAt(frame, 12, 1, 0), 6);
        for (const QPoint outside : {QPoint(0, 1), QPoint(0, -1), QPoint(2, 0)})
            QCOMPARE(host::codeAt(frame, 12, outside.x(), outside.y()), -1);
        QVERIFY(host::frameImage(frame, m_mono12).isNull());
        QVERIFY(!host::saveFrame(frame, m_mono12, QTemporaryDir().filePath("frame.pgm")).isEmpty());
    }

    void lossIsOfTheCodesThatOccur()
    {
        using Codes = std::vector<std::uint8_t>;
        const std::tuple<Codes, Codes, double, double> rows[] = {
            {{0, 9, 9, 255}, {0, 9, 9, 255}, 0, 0}, // extremes are no clipping
            {{1, 2, 3, 4}, {1, 1, 3, 4}, 0, 0.25},
            {{1, 2, 253, 254}, {0, 0, 255, 255}, 1, 0.5},
            {{}, {}, 0, 0}};
        for (const auto& [before, after, clipped, lost] : rows) {
            const int width = int(before.size());
            const auto loss = host::compareFrames(frame8(width, 1, before), frame8(width, 1, after), 8);
            QCOMPARE(loss.clipped, clipped);
            QCOMPARE(loss.lost, lost);
        }
    }

    void bayerTileBecomesItsColour()
    {
        // Two RG/GB tiles and a column that has half of one.
        const Frame frame = frame8(5, 2, {200, 10, 1, 2, 7, 30, 40, 4, 3, 9});
        const QImage image = host::frameImage(frame, *host::pixelFormatByName("BayerRG8"));
        QCOMPARE(QColor(image.pixel(0, 0)), QColor(200, 20, 40));
        QCOMPARE(image.pixel(1, 1), image.pixel(0, 0));
        QCOMPARE(QColor(image.pixel(4, 0)), QColor(7, (2 + 9) / 2, 3));
    }

    // What a deep one holds is in the transcripts.
    void savedFrameFollowsItsSuffix()
    {
        const QTemporaryDir folder;
        const std::pair<const char*, bool> rows[] = {
            {"frame.pgm", true}, {"frame.PNG", true}, {"frame", false}, {"folder/frame.png", false}};
        for (const auto& [name, saved] : rows) {
            const QString path = folder.filePath(name);
            QCOMPARE(host::saveFrame(frame8(2, 1, {7, 200}), m_mono8, path).isEmpty(), saved);
            QCOMPARE(QFileInfo::exists(path), saved);
            if (saved)
                QCOMPARE(qGray(QImage(path).pixel(1, 0)), 200);
        }
    }

    void mailboxKeepsTheLatestFrame()
    {
        host::FrameMailbox mailbox;
        const auto put = [&](std::uint64_t number) {
            auto shown = std::make_shared<host::ShownFrame>();
            shown->after.number = number;
            return mailbox.put(shown);
        };
        QVERIFY(put(0));
        QVERIFY(!put(1));
        QCOMPARE(mailbox.take()->after.number, std::uint64_t(1));
        QVERIFY(!mailbox.take());
        QVERIFY(put(2));
    }
};

QTEST_MAIN(tst_ViewedFrames)
#include "tst_ViewedFrames.moc"
