#include <QTextCodec>
#include <QtTest>

#include "lut/PlainString.h"

using namespace orlune;

class tst_PlainString : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { SetPlainStringCodec(nullptr); }

    void ByCodec_data()
    {
        QTest::addColumn<QByteArray>("codec");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("plain");
        QTest::newRow("Latin-1 from the start") << QByteArray() << QString::fromUtf8("Größe")
                                                << QByteArray("Gr\xf6\xdf"
                                                              "e");
        QTest::newRow("Chinese") << QByteArray("GB2312") << QString::fromUtf8("内存不足")
                                 << QByteArray("\xc4\xda\xb4\xe6\xb2\xbb\xd7\xe3");
    }

    void ByCodec()
    {
        QFETCH(QByteArray, codec);
        QFETCH(QString, text);
        QFETCH(QByteArray, plain);
        SetPlainStringCodec(codec.isEmpty() ? nullptr : QTextCodec::codecForName(codec));
        QCOMPARE(ToPlainString(text), plain.toStdString());
        QCOMPARE(FromPlainString(plain), text);
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
