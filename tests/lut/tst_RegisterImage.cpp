#include <limits>
#include <vector>

#include <QtEndian>

#include "lut/RegisterImage.h"
#include "support/Rows.h"

using namespace orlune;

namespace {

using Bytes = std::vector<uchar>;

constexpr qint32 kLowest = std::numeric_limits<qint32>::min();
constexpr qint32 kHighest = std::numeric_limits<qint32>::max();

qint32 EntryOf(const Bytes& bytes, int index)
{
    return qFromLittleEndian<qint32>(bytes.data() + 4 * index);
}

LutImage StampedIdentity()
{
    LutImage image;
    MakeIdentity(image);
    StampTrailer(image, {150, -20, 7, 64, 4000}, "0123456789abcdef");
    return image;
}

Bytes BytesOf(const LutImage& image)
{
    const auto bytes = ToBytes(image);
    return Bytes(bytes.begin(), bytes.end());
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
    // The image byte for byte, as far as both reach.
    void WholeBytes()
    {
        for (const int length : {16384, 16387, 16424, 16427}) {
            Bytes expected = BytesOf(StampedIdentity()), bytes(length);
            expected.resize(length);
            QVERIFY(TableToRegister(StampedIdentity(), bytes.data(), length));
            QVERIFY(bytes == expected);
            LutImage image{};
            QVERIFY(RegisterToTable(bytes.data(), length, image));
            expected.resize(kImageBytes);
            QVERIFY(BytesOf(image) == expected);
        }
    }

    void Scaled_data() { addRows(kScaled); }

    void Scaled()
    {
        const auto& row = currentRow(kScaled);
        const LutImage source = StampedIdentity();
        Bytes bytes(row.length);
        QVERIFY(TableToRegister(source, bytes.data(), row.length));
        for (int i = 1; i < row.entries; ++i)
            QVERIFY(EntryOf(bytes, i) >= EntryOf(bytes, i - 1));
        if (row.entries > 0)
            QCOMPARE(EntryOf(bytes, row.entries - 1), row.lastEntry);
        QVERIFY(std::equal(bytes.end() - kTrailerBytes, bytes.end(), source.Trailer));

        LutImage image{};
        std::fill(std::begin(image.Entries), std::end(image.Entries), -7);
        QVERIFY(RegisterToTable(bytes.data(), row.length, image));
        const int step = row.entries == 0 ? 1 : qMax(1, row.reached / row.entries);
        for (int i = 0; i < kLutEntries; ++i)
            QCOMPARE(image.Entries[i], i < row.reached ? i / step * step / 4 * 4 : -7);
        if (row.reached > 0)
            QCOMPARE(image.Entries[row.reached - 1], row.lastRead);
        QVERIFY(std::equal(bytes.end() - kTrailerBytes, bytes.end(), image.Trailer));
    }

    void SignsAndExtremes()
    {
        LutImage image{};
        image.Entries[0] = -5;
        image.Entries[4] = kLowest;
        image.Entries[8] = kHighest;
        Bytes bytes(4136);
        QVERIFY(TableToRegister(image, bytes.data(), 4136));
        QVERIFY(EntryOf(bytes, 0) == -2 && EntryOf(bytes, 1) == kLowest / 4 &&
                EntryOf(bytes, 2) == kHighest / 4);
        qToLittleEndian<qint32>(kHighest, bytes.data() + 12); // more than 10 bits: the upper two are lost
        QVERIFY(RegisterToTable(bytes.data(), 4136, image));
        QVERIFY(image.Entries[3] == -8 && image.Entries[4] == kLowest);
        QVERIFY(image.Entries[8] == kHighest - 3 && image.Entries[12] == -4);
    }
};

QTEST_GUILESS_MAIN(tst_RegisterImage)
#include "tst_RegisterImage.moc"
