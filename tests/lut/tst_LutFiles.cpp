#include <csignal>
#include <cstring>
#include <memory>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTextCodec>

#include "lut/LutFiles.h"
#include "lut/ResultCodes.h"
#include "support/Rows.h"
#include "support/TestFolder.h"

using namespace orlune;

namespace {

LutImage Filled(int entry)
{
    LutImage image;
    std::fill(std::begin(image.Entries), std::end(image.Entries), entry);
    std::memset(image.Trailer, 0xaa, kTrailerBytes);
    return image;
}

bool Same(const LutImage& a, const LutImage& b)
{
    return ToBytes(a) == ToBytes(b);
}

// The identity as .csv lines, one of which may be another.
QByteArray CsvLines(const QByteArray& fifth = "5", const QByteArray& end = "\n")
{
    QByteArray text;
    for (int i = 0; i < kLutEntries; ++i)
        text += (i == 5 ? fifth : QByteArray::number(i)) + end;
    return text;
}

// Permissions bind while it lives, root's tests included.
class AsNobody
{
public:
    AsNobody() { Change(65534); }
    ~AsNobody() { Change(0); }

private:
    void Change(uid_t user)
    {
        if (m_isRoot && setresuid(user, user, 0) != 0)
            qFatal("setresuid");
    }

    const bool m_isRoot = getuid() == 0;
};

// No file grows beyond this size while it lives, as on a full disk.
class FullDisk
{
public:
    explicit FullDisk(rlim_t size)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit{size, m_old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }

    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_old); }

private:
    rlimit m_old{};
};

const struct
{
    const char* name;
    QByteArray text;
    int entries = 5; // that are read before it fails
    int fifth = 0;
} kCsvFiles[] = {
    {"most negative", CsvLines("-2147483648"), 4096, std::numeric_limits<int>::min()},
    {"above 32 bits", CsvLines("4294967297")},
    {"blanks around", CsvLines(" \t12 "), 4096, 12},
    {"carriage return inside", CsvLines("1\r2")},
    {"hexadecimal", CsvLines("0x10")},
    {"zero byte", CsvLines(QByteArray("12\0", 3))},
    {"longest line", CsvLines(QByteArray(65534, '0') + "7"), 4096, 7},
    {"line too long", CsvLines(QByteArray(65535, '0') + "7")},
    {"no last line end", CsvLines().chopped(1), 4096, 5},
    {"only carriage returns", CsvLines("5", "\r"), 0},
    {"UTF-16", QTextCodec::codecForName("UTF-16")->fromUnicode(CsvLines()), 4096, 5}, // with its mark
};

} // namespace

class tst_LutFiles : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TestFolder>(); }

    void CsvFile_data() { addRows(kCsvFiles); }

    void CsvFile()
    {
        const auto& row = currentRow(kCsvFiles);
        const bool isGood = row.entries == kLutEntries;
        LutImage current = Filled(1), base = Filled(2), expected{};
        QCOMPARE(ReadCsvFile(m_folder->put("file", row.text), current, base), isGood ? 0 : int(kInvalidData));
        for (int i = 0; i < row.entries; ++i)
            expected.Entries[i] = i == 5 ? row.fifth : i;
        QVERIFY(Same(current, expected));
        QVERIFY(Same(base, isGood ? expected : LutImage{}));
    }

    // Nothing that isn't a regular file is opened, to read or to write; none of it blocks, and all of it
    // stays.
    void NoRegularFile()
    {
        QDir(m_folder->path()).mkdir("directory");
        QCOMPARE(mkfifo(qPrintable(m_folder->path("pipe")), 0600), 0);
        for (const QString& name : {QString("absent/file"), QString("directory"), QString("pipe"),
                                    QString("/dev/zero"), QString(5000, 'x')}) {
            const QString path = QDir(m_folder->path()).absoluteFilePath(name);
            const bool existed = QFileInfo::exists(path);
            LutImage current = Filled(1), base = Filled(2);
            QVERIFY2(ReadLutFile(path, current, base) == kOpenFailed, qPrintable(name));
            QVERIFY2(ReadBaseLutFile(path, base) == kOpenFailed, qPrintable(name));
            QVERIFY2(ReadCsvFile(path, current, base) == kOpenFailed, qPrintable(name));
            QVERIFY(Same(current, Filled(1)) && Same(base, Filled(2)));
            if (path.startsWith("/dev/"))
                continue; // a fault here must not cost root's machine a device
            QVERIFY2(WriteLutFile(path, current, true) == kOpenFailed, qPrintable(name));
            QVERIFY2(WriteCsvFile(path, current) == kOpenFailed, qPrintable(name));
            QVERIFY2(!QFileInfo(path).isFile() && QFileInfo::exists(path) == existed, qPrintable(name));
        }
    }

    // 2 GiB that hold one line: read as an image like any other, and refused as numbers without being taken
    // in.
    void Endless()
    {
        const QString path = m_folder->put("file", " ");
        QVERIFY(QFile::resize(path, qint64(1) << 31));
        rusage before{}, after{};
        getrusage(RUSAGE_SELF, &before);
        LutImage current, base;
        QCOMPARE(ReadLutFile(path, current, base), 0);
        QCOMPARE(current.Entries[0], int(' '));
        QCOMPARE(ReadCsvFile(path, current, base), int(kInvalidData));
        getrusage(RUSAGE_SELF, &after);
        QVERIFY2(after.ru_maxrss - before.ru_maxrss < 64 * 1024, "KiB that reading took");
    }

    void WritingThroughALink()
    {
        const QString file = m_folder->put("file", "old"), link = m_folder->path("link"),
                      dangling = m_folder->path("dangling");
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        const auto permissions = QFile::permissions(file);
        QVERIFY(QFile::link(file, link));
        QVERIFY(QFile::link(m_folder->path("made"), dangling));
        QCOMPARE(WriteCsvFile(link, Filled(-1)), 0);
        QCOMPARE(WriteCsvFile(dangling, Filled(-1)), 0);
        QVERIFY(QFileInfo(link).isSymLink() && QFileInfo(dangling).isSymLink());
        QCOMPARE(m_folder->get("file"), QByteArray("-1\n").repeated(4096));
        QCOMPARE(m_folder->get("made"), m_folder->get("file"));
        QVERIFY(QFile::permissions(file) == permissions);
    }

    void WritingOnAFullDisk()
    {
        const QString file = m_folder->put("file", "old");
        QList<int> codes;
        {
            const FullDisk full(4000);
            codes << WriteLutFile(file, LutImage{}, true) << WriteCsvFile(file, LutImage{})
                  << WriteCsvFile(m_folder->path("new"), LutImage{});
        }
        QCOMPARE(codes, (QList<int>{kOpenFailed, kOpenFailed, kOpenFailed}));
        QCOMPARE(m_folder->get("file"), QByteArray("old"));
        QCOMPARE(m_folder->names(), QStringList{"file"});
    }

    void Permissions()
    {
        const QString secret = m_folder->put("secret"), fixed = m_folder->put("fixed", "old");
        const QString writable = m_folder->put("writable", QByteArray(100000, 'x'));
        const auto mode = [](const QString& path, mode_t bits) { return chmod(qPrintable(path), bits) == 0; };
        QVERIFY(mode(secret, 0000) && mode(writable, 0666) && mode(fixed, 0444));
        QVERIFY(mode(m_folder->path(), 0555));
        LutImage current = Filled(1), base = Filled(2);
        {
            const AsNobody nobody;
            QCOMPARE(ReadLutFile(secret, current, base), int(kOpenFailed));
            QCOMPARE(WriteLutFile(fixed, current, true), int(kOpenFailed));
            QCOMPARE(WriteLutFile(m_folder->path("new"), current, true), int(kOpenFailed));
            QCOMPARE(WriteLutFile(writable, current, true), 0); // in place
            QCOMPARE(QFileInfo(writable).size(), qint64(kImageBytes));
            const FullDisk full(4000);
            QCOMPARE(WriteLutFile(writable, current, true), int(kOpenFailed));
        }
        QVERIFY(mode(m_folder->path(), 0755));
        QCOMPARE(m_folder->get("fixed"), QByteArray("old"));
    }

private:
    std::unique_ptr<TestFolder> m_folder;
};

QTEST_GUILESS_MAIN(tst_LutFiles)
#include "tst_LutFiles.moc"
