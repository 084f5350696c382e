// The texts of a trailer and of a language, where not all of a text goes through; whole ones: tst_Sources.
#include <QTextCodec>
#include <QtTest>

#include "lut/LutImage.h"
#include "lut/PlainString.h"

using namespace orlune;

class tst_Texts : public QObject
{
    Q_OBJECT

private slots:
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

    // Half a character and a byte that begins none: some text, no matter which, and no read beyond the bytes.
    void BadBytes()
    {
        SetPlainStringCodec(QTextCodec::codecForName("GB2312"));
        QVERIFY(FromPlainString(QByteArray("ok\xff\xc4")).startsWith("ok"));
        SetPlainStringCodec(nullptr);
        QCOMPARE(ToPlainString(QString::fromUtf8("曲")), std::string("?"));
        QVERIFY(FromPlainString(static_cast<const char*>(nullptr)).isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_Texts)
#include "tst_Texts.moc"
