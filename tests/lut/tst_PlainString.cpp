#include <QTextCodec>
#include <QtTest>

#include "lut/PlainString.h"

using namespace orlune;

class tst_PlainString : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { SetPlainStringCodec(nullptr); }

    void ByCodec()
    {
        const QString german = QString::fromUtf8("Größe"), chinese = QString::fromUtf8("内存不足");
        const std::string inLatin1 = "Gr\xf6\xdf\x65", inGb2312 = "\xc4\xda\xb4\xe6\xb2\xbb\xd7\xe3";
        QCOMPARE(ToPlainString(german), inLatin1); // from the start
        QCOMPARE(FromPlainString(inLatin1.c_str()), german);
        SetPlainStringCodec(QTextCodec::codecForName("GB2312"));
        QCOMPARE(ToPlainString(chinese), inGb2312);
        QCOMPARE(FromPlainString(inGb2312.c_str()), chinese);
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

QTEST_GUILESS_MAIN(tst_PlainString)
#include "tst_PlainString.moc"
