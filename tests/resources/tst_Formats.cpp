#include <QtTest>

#include "lut/LutFiles.h"
#include "lut/RegisterImage.h"

using namespace orlune;

namespace {

QByteArray Contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray InRegister(const QString& path, int length)
{
    LutImage image{}, base;
    QByteArray bytes(length, '\0');
    const bool written = ReadLutFile(path, image, base) == 0 &&
                         TableToRegister(image, reinterpret_cast<uchar*>(bytes.data()), length);
    return written ? bytes : QByteArray();
}

} // namespace

// The worked examples of docs/formats.md, read from the page itself.
class tst_Formats : public QObject
{
    Q_OBJECT

private slots:
    // The tag tells the form, the file and, for a register, its length.
    void Examples()
    {
        const QString page = QString::fromUtf8(Contents(ORLUNE_DOCS "/formats.md"));
        const QRegularExpression block("^```((?:hex|csv) .*)\n((?:.*\n)+?)```$",
                                       QRegularExpression::MultilineOption);
        int count = 0;
        for (auto found = block.globalMatch(page); found.hasNext(); ++count) {
            const auto match = found.next();
            const QStringList tag = match.captured(1).split(' ');
            const QString path = ORLUNE_TABLES "/Lut12/" + tag[1], lines = match.captured(2).trimmed();
            const QByteArray bytes = tag.size() > 2 ? InRegister(path, tag[2].toInt()) : Contents(path);
            if (tag[0] == "csv") {
                QVERIFY(bytes.startsWith(lines.toLatin1() + '\n'));
                continue;
            }
            int end = 0;
            for (const QString& line : lines.split('\n')) {
                const int offset = line.section(": ", 0, 0).toInt(nullptr, 16);
                const QByteArray shown = line.section(": ", 1).toLatin1();
                end = offset + QByteArray::fromHex(shown).size();
                QCOMPARE(bytes.mid(offset, end - offset).toHex(' '), shown);
            }
            QCOMPARE(end, bytes.size());
        }
        QCOMPARE(count, 3);
    }
};

QTEST_GUILESS_MAIN(tst_Formats)
#include "tst_Formats.moc"
