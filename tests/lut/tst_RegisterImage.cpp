#include <limits>
#include <memory>

#include <QtEndian>

#include "lut/RegisterImage.h"
#include "support/Rows.h"

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

// From the identity table: the register's last entry, and what reading back gives.
const struct
{
    const char* name;
    int length;
    int entries;
    int lastEntry;
    int reached;  // table entries that reading back sets
    int lastRead; // the last of them
} kScaled[] = {
    {"1024 entries", 4136, 1024, 1023, 4096, 4092},
    {"256 entries", 1064, 256, 1020, 4096, 4080},
    {"one entry", 44, 1, 0, 4096, 0},
    {"no entry, 3 bytes", 43, 0, 0, 0, 0},
    {"odd length", 1067, 256, 3825 / 4, 3840, 3824},
    {"just above the table", 16388, 4087, 1021, 4087, 4084},
    {"just below the image", 16423, 4095, 1023, 4095, 4092},
    {"65536 entries, odd", 262187, 65536, 1023, 4096, 4092},
};

} // namespace

class tst_RegisterImage : public QObject
{
    Q_OBJECT

private slots:
    void NoRoom()
    {
        for (const qint64 length : {qint64(40), qint64(0), std::numeric_limits<qint64>::min()}) {
            const Buffer buffer = MakeBuffer(40);
            LutImage image = StampedIdentity();
            QVERIFY(!TableToRegister(image, buffer.get(), length));
            QVERIFY(std::all_of(buffer.get(), buffer.get() + 40, [](uchar b) { return b == 0; }));
            QVERIFY(!RegisterToTable(buffer.get(), length, image));
            QVERIFY(ToBytes(image) == ToBytes(StampedIdentity()));
        }
    }

    // The image byte for byte, as far as both reach.
    void WholeBytes()
    {
        for (const int length : {16384, 16387, 16424, 16427}) {
            const Buffer buffer = MakeBuffer(length);
            const auto bytes = ToBytes(StampedIdentity());
            const int common = qMin(length, kImageBytes);
            QVERIFY(TableToRegister(StampedIdentity(), buffer.get(), length));
            QVERIFY(std::equal(buffer.get(), buffer.get() + common, bytes.data()));
            QVERIFY(
                std::all_of(buffer.get() + common, buffer.get() + length, [](uchar b) { return b == 0; }));
            LutImage image{};
            QVERIFY(RegisterToTable(buffer.get(), length, image));
            QVERIFY(std::equal(bytes.data(), bytes.data() + common, ToBytes(image).data()));
            QCOMPARE(ReadTrailer(image).has_value(), length >= kImageBytes);
        }
    }

    void Scaled_data() { addRows(kScaled); }

    void Scaled()
    {
        const auto& row = currentRow(kScaled);
        const LutImage source = StampedIdentity();
        const Buffer buffer = MakeBuffer(row.length);
        QVERIFY(TableToRegister(source, buffer.get(), row.length));
        for (int i = 1; i < row.entries; ++i)
            QVERIFY(EntryOf(buffer, i) >= EntryOf(buffer, i - 1));
        if (row.entries > 0)
            QCOMPARE(EntryOf(buffer, row.entries - 1), row.lastEntry);
        QVERIFY(std::equal(source.Trailer, source.Trailer + kTrailerBytes,
                           buffer.get() + row.length - kTrailerBytes));

        LutImage image{};
        std::fill(std::begin(image.Entries), std::end(image.Entries), -7);
        QVERIFY(RegisterToTable(buffer.get(), row.length, image));
        const int step = row.entries == 0 ? 1 : qMax(1, row.reached / row.entries);
        for (int i = 0; i < kLutEntries; ++i)
            QCOMPARE(image.Entries[i], i < row.reached ? i / step * step / 4 * 4 : -7);
        if (row.reached > 0)
            QCOMPARE(image.Entries[row.reached - 1], row.lastRead);
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
