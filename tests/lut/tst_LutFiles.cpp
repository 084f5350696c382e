#include <csignal>
#include <cstring>
#include <memory>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <QTextCodec>

#include "lut/LutFiles.h"
#include "lut/ResultCodes.h"
#include "support/Rows.h"

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
QByteArray CsvLines(int count, int at = -1, const QByteArray& other = {}, const QByteArray& end = "\n")
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += (i == at ? other : QByteArray::number(i)) + end;
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
    QByteArray line;
    std::optional<int> value;
} kCsvLines[] = {
    {"largest", "4095", 4095},
    {"negative", "-1", -1},
    {"most negative", "-2147483648", std::numeric_limits<int>::min()},
    {"above 32 bits", "4294967297", {}},
    {"above 64 bits", QByteArray(1000, '9'), {}},
    {"blanks around", " \t12 ", 12},
    {"carriage return inside", "1\r2", {}},
    {"blank", "", {}},
    {"two fields", "12,34", {}},
    {"hexadecimal", "0x10", {}},
    {"zero byte", QByteArray("12\0", 3), {}},
    {"no text at all", QByteArray("\xff\xfe\x80\x81\x00\x01", 6), {}},
    {"longest line", QByteArray(65534, '0') + "7", 7},
    {"line too long", QByteArray(65535, '0') + "7", {}},
};

const struct
{
    const char* name;
    QByteArray text;
    bool isGood;
} kCsvFiles[] = {
    {"a line short", CsvLines(4095), false},
    {"a line more", CsvLines(4097), true},
    {"no last line end", CsvLines(4096).chopped(1), true},
    {"carriage returns", CsvLines(4096, -1, {}, "\r\n"), true},
    {"only carriage returns", CsvLines(4096, -1, {}, "\r"), false},
    {"UTF-16", QTextCodec::codecForName("UTF-16")->fromUnicode(CsvLines(4096)), true}, // with its mark
    {"a picture", QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16), false},
};

} // namespace

class tst_LutFiles : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
    }

    void LutOfLength()
    {
        for (const int length : {0, 4095, 16424, 1000000}) { // 4095: part of an entry
            QByteArray bytes(length, '\0');
            for (int i = 0; i < length; ++i)
                bytes[i] = char(i * 7 + 1);
            const QByteArray expected = bytes.leftJustified(kImageBytes, '\0', true);
            const QString path = Put(bytes);
            LutImage current = Filled(1), base = Filled(2), baseOnly = Filled(3);
            QCOMPARE(ReadLutFile(path, current, base), length == 0 ? int(kInvalidData) : 0);
            QCOMPARE(ReadBaseLutFile(path, baseOnly), 0);
            QVERIFY(std::memcmp(ToBytes(current).data(), expected.constData(), kImageBytes) == 0);
            QVERIFY(Same(current, base) && Same(current, baseOnly));
        }
    }

    void CsvLine_data() { addRows(kCsvLines); }

    void CsvLine()
    {
        const auto& row = currentRow(kCsvLines);
        const QString path = Put(CsvLines(4096, 5, row.line));
        LutImage current = Filled(1), base = Filled(2), expected{};
        QCOMPARE(ReadCsvFile(path, current, base), row.value ? 0 : int(kInvalidData));
        for (int i = 0; i < (row.value ? 4096 : 5); ++i)
            expected.Entries[i] = i == 5 ? *row.value : i;
        QVERIFY(Same(current, expected));
        QVERIFY(Same(base, row.value ? expected : LutImage{}));
    }

    void CsvFile_data() { addRows(kCsvFiles); }

    void CsvFile()
    {
        const auto& row = currentRow(kCsvFiles);
        LutImage current = Filled(1), base = Filled(2), identity;
        QCOMPARE(ReadCsvFile(Put(row.text), current, base), row.isGood ? 0 : int(kInvalidData));
        MakeIdentity(identity);
        QCOMPARE(Same(current, identity), row.isGood);
        QVERIFY(Same(base, row.isGood ? identity : LutImage{}));
    }

    // Nothing that isn't a regular file is opened, to read or to write; none of it blocks, and all of it
    // stays.
    void NoRegularFile()
    {
        QDir(m_dir->path()).mkdir("directory");
        QCOMPARE(mkfifo(qPrintable(Path("pipe")), 0600), 0);
        for (const QString& name : {QString("absent/file"), QString("directory"), QString("pipe"),
                                    QString("/dev/zero"), QString(5000, 'x')}) {
            const QString path = QDir(m_dir->path()).absoluteFilePath(name);
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
        QVERIFY(QFile(Put(" ")).resize(qint64(1) << 31));
        rusage before{}, after{};
        getrusage(RUSAGE_SELF, &before);
        LutImage current, base;
        QCOMPARE(ReadLutFile(Path("file"), current, base), 0);
        QCOMPARE(current.Entries[0], int(' '));
        QCOMPARE(ReadCsvFile(Path("file"), current, base), int(kInvalidData));
        getrusage(RUSAGE_SELF, &after);
        QVERIFY2(after.ru_maxrss - before.ru_maxrss < 64 * 1024, "KiB that reading took");
    }

    void LutRoundTrip()
    {
        for (const bool withTrailer : {true, false}) {
            LutImage image = Filled(std::numeric_limits<int>::min()), current, base;
            Put(QByteArray(100000, 'x')); // longer than what replaces it
            QCOMPARE(WriteLutFile(Path("file"), image, withTrailer), 0);
            QCOMPARE(QFileInfo(Path("file")).size(), qint64(withTrailer ? 16424 : 16384));
            QCOMPARE(ReadLutFile(Path("file"), current, base), 0);
            if (!withTrailer)
                std::memset(image.Trailer, 0, kTrailerBytes);
            QVERIFY(Same(current, image));
        }
    }

    void CsvRoundTrip()
    {
        LutImage image = Filled(4095);
        image.Entries[0] = -1;
        image.Entries[4095] = 0;
        QCOMPARE(WriteCsvFile(Path("new"), image), 0);
        QCOMPARE(Get("new"), "-1\n" + QByteArray("4095\n").repeated(4094) + "0\n");
    }

    void WritingThroughALink()
    {
        Put("old");
        QVERIFY(QFile::setPermissions(Path("file"), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        const auto permissions = QFile::permissions(Path("file"));
        QVERIFY(QFile::link(Path("file"), Path("link")));
        QVERIFY(QFile::link(Path("made"), Path("dangling")));
        QCOMPARE(WriteCsvFile(Path("link"), LutImage{}), 0);
        QCOMPARE(WriteCsvFile(Path("dangling"), LutImage{}), 0);
        QVERIFY(QFileInfo(Path("link")).isSymLink());
        QVERIFY(QFileInfo(Path("dangling")).isSymLink());
        QCOMPARE(Get(), QByteArray("0\n").repeated(4096));
        QCOMPARE(Get("made"), Get());
        QVERIFY(QFile::permissions(Path("file")) == permissions);
    }

    void WritingOnAFullDisk()
    {
        Put("old");
        QList<int> codes;
        {
            const FullDisk full(4000);
            codes << WriteLutFile(Path("file"), LutImage{}, true) << WriteCsvFile(Path("file"), LutImage{})
                  << WriteCsvFile(Path("new"), LutImage{});
        }
        QCOMPARE(codes, (QList<int>{kOpenFailed, kOpenFailed, kOpenFailed}));
        QCOMPARE(Get(), QByteArray("old"));
        QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden), QStringList{"file"});
    }

    void Permissions()
    {
        const auto mode = [this](const char* name, mode_t bits) {
            return chmod(qPrintable(Path(name)), bits) == 0;
        };
        for (const char* name : {"secret", "writable", "fixed"})
            Put("old", name);
        QVERIFY(mode("secret", 0000) && mode("writable", 0666) && mode("fixed", 0444) && mode("", 0555));
        LutImage current = Filled(1), base = Filled(2);
        {
            const AsNobody nobody;
            QCOMPARE(ReadLutFile(Path("secret"), current, base), int(kOpenFailed));
            QCOMPARE(WriteLutFile(Path("fixed"), current, true), int(kOpenFailed));
            QCOMPARE(WriteLutFile(Path("new"), current, true), int(kOpenFailed));
            QCOMPARE(WriteLutFile(Path("writable"), current, true), 0);
            const FullDisk full(4000);
            QCOMPARE(WriteLutFile(Path("writable"), current, true), int(kOpenFailed));
        }
        QVERIFY(mode("", 0755));
        QCOMPARE(Get("fixed"), QByteArray("old"));
    }

private:
    QString Path(const QString& name) const { return m_dir->filePath(name); }
    QString Put(const QByteArray& bytes, const QString& name = "file")
    {
        QFile file(Path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("no file to test with");
        return file.fileName();
    }

    QByteArray Get(const QString& name = "file")
    {
        QFile file(Path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(tst_LutFiles)
#include "tst_LutFiles.moc"
