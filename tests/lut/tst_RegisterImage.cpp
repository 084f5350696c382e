#include <limits>
#include <memory>

#include <QtEndian>
#include <QtTest>

#include "lut/RegisterImage.h"

using namespace orlune;

namespace {

// On the heap and of the exact size, so that the address sanitizer sees a byte too many.
using Buffer = std::unique_ptr<uchar[]>;

Buffer MakeBuffer(qint64 length)
{
    return Buffer(new uchar[std::size_t(length)]());
}

qint32 EntryOf(const Buffer& buffer, int index)
{
    return qFromLittleEndian<qint32>(buffer.get() + 4 * index);
}

LutImage StampedIdentity()
{
    LutImage image;
    MakeIdentity(image);
    StampTrailer(image, {150, -20, 7, 64, 4000}, "0123456789abcdef");
    return image;
}

} // namespace

class tst_RegisterImage : public QObject
{
    Q_OBJECT

private slots:
    void NoRoom_data()
    {
        QTest::addColumn<qint64>("length");
        for (qint64 length : {qint64(40), qint64(0), std::numeric_limits<qint64>::min()})
            QTest::addRow("%lld", length) << length;
    }

    void NoRoom()
    {
        QFETCH(qint64, length);
        const Buffer buffer = MakeBuffer(qMax<qint64>(length, 0));
        LutImage image = StampedIdentity();
        const auto before = ToBytes(image);
        QVERIFY(!TableToRegister(image, buffer.get(), length));
        QVERIFY(std::all_of(buffer.get(), buffer.get() + qMax<qint64>(length, 0),
                            [](uchar b) { return b == 0; }));
        QVERIFY(!RegisterToTable(buffer.get(), length, image));
        QVERIFY(ToBytes(image) == before);
    }

    // The image byte for byte, as far as both reach.
    void WholeBytes_data()
    {
        QTest::addColumn<int>("length");
        for (int length : {16384, 16387, 16424, 16427})
            QTest::addRow("%d", length) << length;
    }

    void WholeBytes()
    {
        QFETCH(int, length);
        const Buffer buffer = MakeBuffer(length);
        const auto bytes = ToBytes(StampedIdentity());
        const int common = qMin(length, kImageBytes);
        QVERIFY(TableToRegister(StampedIdentity(), buffer.get(), length));
        QVERIFY(std::equal(buffer.get(), buffer.get() + common, bytes.data()));
        for (int i = common; i < length; ++i)
            QCOMPARE(int(buffer[std::size_t(i)]), 0);

        LutImage image{};
        QVERIFY(RegisterToTable(buffer.get(), length, image));
        const auto back = ToBytes(image);
        QVERIFY(std::equal(back.data(), back.data() + common, bytes.data()));
        QCOMPARE(ReadTrailer(image).has_value(), length >= kImageBytes);
    }

    // From the identity table: the register's last entry, and what reading back gives.
    void Scaled_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("entries");
        QTest::addColumn<int>("lastEntry");
        QTest::addColumn<int>("reached");  // table entries that reading back sets
        QTest::addColumn<int>("lastRead"); // the last of them
        QTest::newRow("1024 entries") << 4136 << 1024 << 1023 << 4096 << 4092;
        QTest::newRow("256 entries") << 1064 << 256 << 1020 << 4096 << 4080;
        QTest::newRow("one entry") << 44 << 1 << 0 << 4096 << 0;
        QTest::newRow("no entry, 3 bytes") << 43 << 0 << 0 << 0 << 0;
        QTest::newRow("odd length") << 1067 << 256 << 3825 / 4 << 3840 << 3824;
        QTest::newRow("just above the table") << 16388 << 4087 << 1021 << 4087 << 4084;
        QTest::newRow("just below the image") << 16423 << 4095 << 1023 << 4095 << 4092;
        QTest::newRow("65536 entries, odd") << 262187 << 65536 << 1023 << 4096 << 4092;
    }

    void Scaled()
    {
        QFETCH(int, length);
        QFETCH(int, entries);
        QFETCH(int, lastEntry);
        QFETCH(int, reached);
        QFETCH(int, lastRead);
        const LutImage source = StampedIdentity();
        const Buffer buffer = MakeBuffer(length);
        QVERIFY(TableToRegister(source, buffer.get(), length));
        if (entries > 0)
            QCOMPARE(EntryOf(buffer, entries - 1), lastEntry);
        for (int i = 1; i < entries; ++i)
            QVERIFY(EntryOf(buffer, i) >= EntryOf(buffer, i - 1));
        QVERIFY(std::equal(source.Trailer, source.Trailer + kTrailerBytes,
                           buffer.get() + length - kTrailerBytes));

        LutImage image{};
        std::fill(std::begin(image.Entries), std::end(image.Entries), -7);
        QVERIFY(RegisterToTable(buffer.get(), length, image));
        const int step = entries == 0 ? 1 : qMax(1, reached / entries);
        for (int i = 0; i < reached; ++i)
            QCOMPARE(image.Entries[i], i / step * step / 4 * 4);
        if (reached > 0)
            QCOMPARE(image.Entries[reached - 1], lastRead);
        for (int i = reached; i < kLutEntries; ++i)
            QCOMPARE(image.Entries[i], -7);
        QCOMPARE(ReadTrailer(image)->StandardName, QByteArray("0123456789abcdef"));
    }

    void SignsAndExtremes()
    {
        constexpr qint32 low = std::numeric_limits<qint32>::min();
        constexpr qint32 high = std::numeric_limits<qint32>::max();
        LutImage source{};
        source.Entries[0] = -5;
        source.Entries[4] = low;
        source.Entries[8] = high;
        const Buffer buffer = MakeBuffer(4136);
        QVERIFY(TableToRegister(source, buffer.get(), 4136));
        QCOMPARE(EntryOf(buffer, 0), -2);
        QCOMPARE(EntryOf(buffer, 1), low / 4);
        QCOMPARE(EntryOf(buffer, 2), high / 4);

        qToLittleEndian<qint32>(high, buffer.get() + 12); // more than 10 bits: the upper two are lost
        LutImage image{};
        QVERIFY(RegisterToTable(buffer.get(), 4136, image));
        QCOMPARE(image.Entries[3], -8);
        QCOMPARE(image.Entries[4], low);
        QCOMPARE(image.Entries[8], high - 3);
        QCOMPARE(image.Entries[12], -4);
    }
};

QTEST_GUILESS_MAIN(tst_RegisterImage)
#include "tst_RegisterImage.moc"
