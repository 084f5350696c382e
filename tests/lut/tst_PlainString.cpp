// Texts that go through whole: tst_Module.
#include <QTextCodec>
#include <QtTest>

#include "lut/PlainString.h"

using namespace orlune;

class tst_PlainString : public QObject
{
    Q_OBJECT

private slots:
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
