#include <limits>

#include <QtTest>

#include "lut/LutImage.h"

using namespace orlune;

class tst_LutImage : public QObject
{
    Q_OBJECT

private slots:
    void LiteralBytes()
    {
        LutImage image{};
        image.Entries[0] = 4095;
        image.Entries[1] = -2;
        image.Entries[4095] = 0x01020304;
        StampTrailer(image, {150, -20, 7, 64, 4000}, "lut4_11");
        const auto bytes = ToBytes(image);
        const QByteArray whole(reinterpret_cast<const char*>(bytes.data()), int(bytes.size()));

        QCOMPARE(whole.left(8).toHex(), QByteArray("ff0f0000feffffff"));
        QCOMPARE(whole.mid(16380, 4).toHex(), QByteArray("04030201"));
        QCOMPARE(whole.mid(16384).toHex(' '), QByteArray("43 42 47 30 96 00 00 00 ec ff ff ff 07 00 00 00 "
                                                         "40 00 00 00 a0 0f 00 00 6c 75 74 34 5f 31 31 00 "
                                                         "00 00 00 00 00 00 00 00"));
    }

    void Names()
    {
        const std::pair<const char*, QByteArray> rows[] = {{"", ""},
                                                           {"0123456789abcdef", "0123456789abcdef"}, // no end
                                                           {"0123456789abcdefg", "0123456789abcdef"},
                                                           {"für", "f\xfcr"},
                                                           {"曲线", "??"}};
        for (const auto& [name, stored] : rows) {
            LutImage image{};
            StampTrailer(image, {}, "an earlier name!");
            StampTrailer(image, {}, QString::fromUtf8(name));
            const QByteArray field(reinterpret_cast<const char*>(image.Trailer) + 24, 16);
            QCOMPARE(field, stored + QByteArray(16 - stored.size(), '\0'));
            QCOMPARE(ReadTrailer(image)->StandardName, stored);
        }
    }

    void SettingsOutsideTheirLimits()
    {
        constexpr qint32 low = std::numeric_limits<qint32>::min();
        constexpr qint32 high = std::numeric_limits<qint32>::max();
        LutImage image{};
        StampTrailer(image, {500, low, high, 4096, -1}, "srgb");
        const LutSettings settings = ReadTrailer(image)->Settings;
        QVERIFY(settings.Gamma == 500 && settings.Brightness == low && settings.Contrast == high);
        QVERIFY(settings.RangeMin == 4096 && settings.RangeMax == -1);
    }

    void BytesOfAnyLength()
    {
        LutImage source{};
        for (int i = 0; i < kLutEntries; ++i)
            source.Entries[i] = 1000 - i;
        StampTrailer(source, {}, "srgb");
        const auto bytes = ToBytes(source);

        LutImage image{};
        FromBytes(image, nullptr, 0);
        QVERIFY(ToBytes(image) == ToBytes(LutImage{}));
        FromBytes(image, bytes.data(), 6); // an entry and half of the next
        QCOMPARE(image.Entries[0], 1000);
        QCOMPARE(image.Entries[1], 999);
        QCOMPARE(image.Entries[2], 0);
        QVERIFY(!ReadTrailer(image));

        const QByteArray longer(kImageBytes + 1, '\x7f');
        FromBytes(image, longer.constData(), std::size_t(longer.size()));
        QCOMPARE(image.Entries[4095], 0x7f7f7f7f);
        FromBytes(image, bytes.data(), bytes.size());
        QVERIFY(ToBytes(image) == bytes);
    }
};

QTEST_GUILESS_MAIN(tst_LutImage)
#include "tst_LutImage.moc"
