#include <vector>

#include <QtTest>

#include "lut/LutFiles.h"
#include "lut/RegisterImage.h"

using namespace orlune;

// The worked examples of docs/formats.md, read from the page itself.
class tst_Formats : public QObject
{
    Q_OBJECT

private slots:
    void Examples_data();
    void Examples();

private:
    void CompareHex(const QByteArray& bytes, const QStringList& lines);
};

namespace {

QByteArray Contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray InRegister(const QString& path, int length)
{
    LutImage image{}, base;
    std::vector<uchar> buffer(std::size_t(qMax(0, length)));
    if (ReadLutFile(path, image, base) != 0 || !TableToRegister(image, buffer.data(), length))
        return {};
    return QByteArray(reinterpret_cast<const char*>(buffer.data()), length);
}

} // namespace

void tst_Formats::Examples_data()
{
    QTest::addColumn<QString>("lines");
    const QString page = QString::fromUtf8(Contents(ORLUNE_DOCS "/formats.md"));
    const QRegularExpression block("^```((?:hex|csv) .*)\n((?:.*\n)+?)```$",
                                   QRegularExpression::MultilineOption);
    int count = 0;
    for (auto found = block.globalMatch(page); found.hasNext(); ++count) {
        const auto match = found.next();
        QTest::newRow(qPrintable(match.captured(1))) << match.captured(2).trimmed();
    }
    QCOMPARE(count, 3);
}

// The tag tells the form, the file and, for a register, its length.
void tst_Formats::Examples()
{
    QFETCH(QString, lines);
    const QStringList tag = QString(QTest::currentDataTag()).split(' ');
    const QString path = ORLUNE_TABLES "/Lut12/" + tag[1];
    if (tag[0] == "csv")
        QVERIFY(Contents(path).startsWith(lines.toLatin1() + '\n'));
    else
        CompareHex(tag.size() > 2 ? InRegister(path, tag[2].toInt()) : Contents(path), lines.split('\n'));
}

void tst_Formats::CompareHex(const QByteArray& bytes, const QStringList& lines)
{
    int end = 0;
    for (const QString& line : lines) {
        bool isOffset = false;
        const int offset = line.section(": ", 0, 0).toInt(&isOffset, 16);
        const QByteArray shown = line.section(": ", 1).toLatin1();
        QVERIFY(isOffset && !shown.isEmpty());
        end = offset + QByteArray::fromHex(shown).size();
        QCOMPARE(bytes.mid(offset, end - offset).toHex(' '), shown);
    }
    QCOMPARE(end, bytes.size());
}

QTEST_GUILESS_MAIN(tst_Formats)
#include "tst_Formats.moc"
