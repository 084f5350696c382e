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

private slots:
    void wordsAboveTheLastCodeCountAsIt();
    void shortBufferIsReadAsFarAsItGoes();
    void lossIsOfTheCodesThatOccur_data();
    void lossIsOfTheCodesThatOccur();
    void bayerTileBecomesItsColour();
    void deepPgmIsBigEndian();
    void savedFrameFollowsItsSuffix_data();
    void savedFrameFollowsItsSuffix();
    void mailboxKeepsTheLatestFrame();
};

void tst_ViewedFrames::wordsAboveTheLastCodeCountAsIt()
{
    const host::Histogram histogram = host::countCodes(frame16(3, 1, {1023, 1024, 0xffff}), 10);
    QCOMPARE(histogram.counts.size(), std::size_t(1024));
    QCOMPARE(histogram.counts[1023], 3u);
}

void tst_ViewedFrames::shortBufferIsReadAsFarAsItGoes()
{
    Frame frame = frame16(2, 2, {5, 6, 7, 8});
    frame.pixels.resize(5);
    const host::Histogram histogram = host::countCodes(frame, 12);
    QCOMPARE(histogram.usedCodes(), 2);
    QCOMPARE(host::codeAt(frame, 12, 1, 0), 6);
    QCOMPARE(host::codeAt(frame, 12, 0, 1), -1);
    QCOMPARE(host::codeAt(frame, 12, 0, -1), -1);
    QCOMPARE(host::codeAt(frame, 12, 2, 0), -1);
    QVERIFY(host::frameImage(frame, *host::pixelFormatByName("Mono12")).isNull());
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    QVERIFY(!host::writePgm(frame, *host::pixelFormatByName("Mono12"), file));
}

void tst_ViewedFrames::lossIsOfTheCodesThatOccur_data()
{
    using Pixels = QVector<int>;
    QTest::addColumn<Pixels>("before");
    QTest::addColumn<Pixels>("after");
    QTest::addColumn<double>("clipped");
    QTest::addColumn<double>("lost");

    QTest::newRow("untouched, extremes are no clipping")
        << Pixels{0, 9, 9, 255} << Pixels{0, 9, 9, 255} << 0. << 0.;
    QTest::newRow("two codes run together") << Pixels{1, 2, 3, 4} << Pixels{1, 1, 3, 4} << 0. << 0.25;
    QTest::newRow("clipped at both ends") << Pixels{1, 2, 253, 254} << Pixels{0, 0, 255, 255} << 1. << 0.5;
    QTest::newRow("no pixels") << Pixels{} << Pixels{} << 0. << 0.;
}

void tst_ViewedFrames::lossIsOfTheCodesThatOccur()
{
    QFETCH(QVector<int>, before);
    QFETCH(QVector<int>, after);
    const auto frame = [](const QVector<int>& codes) {
        return frame8(codes.size(), 1, std::vector<std::uint8_t>(codes.begin(), codes.end()));
    };
    const host::MappingLoss loss = host::compareFrames(frame(before), frame(after), 8);
    QTEST(loss.clipped, "clipped");
    QTEST(loss.lost, "lost");
}

void tst_ViewedFrames::bayerTileBecomesItsColour()
{
    // Two RG/GB tiles and a column that has half of one.
    const Frame frame = frame8(5, 2, {200, 10, 1, 2, 7, 30, 40, 4, 3, 9});
    const QImage image = host::frameImage(frame, *host::pixelFormatByName("BayerRG8"));
    QCOMPARE(QColor(image.pixel(0, 0)), QColor(200, 20, 40));
    QCOMPARE(image.pixel(1, 1), image.pixel(0, 0));
    QCOMPARE(QColor(image.pixel(4, 0)), QColor(7, (2 + 9) / 2, 3));
}

void tst_ViewedFrames::deepPgmIsBigEndian()
{
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    QVERIFY(host::writePgm(frame16(2, 1, {0x0102, 0x0fff}), *host::pixelFormatByName("Mono12"), file));
    QCOMPARE(file.data(), QByteArray("P5\n2 1\n4095\n\x01\x02\x0f\xff"));
}

void tst_ViewedFrames::savedFrameFollowsItsSuffix_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("saved");

    QTest::newRow("pgm") << "frame.pgm" << true;
    QTest::newRow("png") << "frame.PNG" << true;
    QTest::newRow("no suffix") << "frame" << false;
    QTest::newRow("no such folder") << "folder/frame.png" << false;
}

void tst_ViewedFrames::savedFrameFollowsItsSuffix()
{
    QFETCH(QString, name);
    QFETCH(bool, saved);
    const QTemporaryDir folder;
    const QString path = folder.filePath(name);
    const QString error = host::saveFrame(frame8(2, 1, {7, 200}), *host::pixelFormatByName("Mono8"), path);
    QCOMPARE(error.isEmpty(), saved);
    QCOMPARE(QFileInfo::exists(path), saved);
    if (saved)
        QCOMPARE(qGray(QImage(path).pixel(1, 0)), 200);
}

void tst_ViewedFrames::mailboxKeepsTheLatestFrame()
{
    host::FrameMailbox mailbox;
    const auto frame = [](std::uint64_t number) {
        auto shown = std::make_shared<host::ShownFrame>();
        shown->after.number = number;
        return shown;
    };
    QVERIFY(mailbox.put(frame(0)));
    QVERIFY(!mailbox.put(frame(1)));
    QCOMPARE(mailbox.take()->after.number, std::uint64_t(1));
    QVERIFY(!mailbox.take());
    QVERIFY(mailbox.put(frame(2)));
}

QTEST_MAIN(tst_ViewedFrames)
#include "tst_ViewedFrames.moc"
