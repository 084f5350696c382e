// The pixel loops of every processor kind that runs here, against the loop that a reader would write.
#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include <QtTest>

#include <sys/mman.h>
#include <unistd.h>

#include "plugin/FrameKernels.h"

using namespace orlune;

namespace {

// Bytes that end right before a page that can't be touched, and begin with a margin of known bytes: whatever
// reads or writes past the end stops the test, whatever writes before the start is seen.
class FencedBytes
{
public:
    // The bytes lie endOffset before the page.
    explicit FencedBytes(std::size_t size, std::size_t endOffset = 0) : m_size(size)
    {
        const auto page = std::size_t(sysconf(_SC_PAGESIZE));
        m_mapped = (size + endOffset + kMargin + page - 1) / page * page + page;
        m_base = static_cast<uchar*>(
            mmap(nullptr, m_mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        if (m_base == MAP_FAILED || mprotect(m_base + m_mapped - page, page, PROT_NONE) != 0)
            qFatal("no memory for a fenced buffer");
        m_data = m_base + m_mapped - page - endOffset - size;
        std::memset(m_base, kFill, m_mapped - page);
    }

    ~FencedBytes() { munmap(m_base, m_mapped); }
    Q_DISABLE_COPY(FencedBytes)

    template <class T>
    T* as()
    {
        return reinterpret_cast<T*>(m_data);
    }

    std::vector<uchar> bytes() const { return {m_data, m_data + m_size}; }
    bool marginIsWhole() const
    {
        return std::all_of(m_data - kMargin, m_data, [](uchar byte) { return byte == kFill; });
    }

private:
    static constexpr std::size_t kMargin = 128;
    static constexpr uchar kFill = 0xa5;
    std::size_t m_size;
    std::size_t m_mapped;
    uchar* m_base;
    uchar* m_data;
};

int apply(const KernelSet& kernels, int bits, const uchar* src, uchar* dst, int width, int height,
          const qint32* table, int entries)
{
    return bits == 8 ? ApplyLut8(src, dst, width, height, table, kernels)
                     : ApplyLut16(reinterpret_cast<const quint16*>(src), reinterpret_cast<quint16*>(dst),
                                  width, height, table, entries, kernels);
}

template <class Pixel>
std::vector<uchar> mapped(const std::vector<uchar>& src, const std::vector<qint32>& table)
{
    std::vector<uchar> result(src.size());
    for (std::size_t i = 0; i < src.size(); i += sizeof(Pixel)) {
        Pixel pixel;
        std::memcpy(&pixel, &src[i], sizeof pixel);
        pixel = Pixel(table[std::min<std::size_t>(pixel, table.size() - 1)]);
        std::memcpy(&result[i], &pixel, sizeof pixel);
    }

    return result;
}

enum class Words { InTable, Any, Boundary };

// Entries of any value; or what fits their number, as a right table's do; or that, but for the last one.
enum class Entries { Any, Fitting, AllButOneFitting };

std::vector<qint32> makeTable(Entries kind, int count, std::mt19937& random)
{
    std::vector<qint32> table(count);
    for (qint32& entry : table)
        entry = kind == Entries::Any ? qint32(random()) : qint32(random() % unsigned(count));
    if (kind == Entries::AllButOneFitting)
        table.back() = -1;
    return table;
}

std::vector<uchar> makePixels(int bits, Words words, int count, std::size_t entries, std::mt19937& random)
{
    std::vector<uchar> bytes(std::size_t(count) * (bits == 8 ? 1 : 2));
    for (uchar& byte : bytes)
        byte = uchar(random());
    if (bits == 8 || words == Words::Any)
        return bytes;
    const std::size_t edge[] = {0, entries - 1, entries};
    for (int i = 0; i < count; ++i) {
        const auto word =
            quint16(words == Words::InTable ? random() % entries : edge[random() % std::size(edge)]);
        std::memcpy(&bytes[2 * i], &word, 2);
    }

    return bytes;
}

} // namespace

Q_DECLARE_METATYPE(Words)
Q_DECLARE_METATYPE(Entries)

class tst_FrameKernels : public QObject
{
    Q_OBJECT

private slots:
    void resample_data()
    {
        QTest::addColumn<QVector<qint32>>("src");
        QTest::addColumn<int>("shift");
        QTest::addColumn<QVector<qint32>>("expected");
        QTest::newRow("sampled, not averaged")
            << QVector<qint32>{16, 900, 900, 32, 900, 900} << 4 << QVector<qint32>{1, 2};
        QTest::newRow("a rest is never read")
            << QVector<qint32>{4, 0, 8, 0, 12, 0, 400} << 2 << QVector<qint32>{1, 2, 3};
        QTest::newRow("negative entries round down")
            << QVector<qint32>{-1, -16, -17, std::numeric_limits<qint32>::min()} << 4
            << QVector<qint32>{-1, -1, -2, -0x8000000};
        QTest::newRow("more than there are") << QVector<qint32>{6, 8} << 1 << QVector<qint32>{3, 3, 3};
    }

    void resample()
    {
        QFETCH(QVector<qint32>, src);
        QFETCH(int, shift);
        QFETCH(QVector<qint32>, expected);
        QVector<qint32> dst(expected.size());
        ResampleLut(src.constData(), src.size(), dst.data(), dst.size(), shift);
        QCOMPARE(dst, expected);
    }

    void resampleRefuses()
    {
        const qint32 src[4] = {1, 2, 3, 4};
        qint32 dst[2] = {-5, -5};
        ResampleLut(nullptr, 4, dst, 2, 0);
        ResampleLut(src, 4, nullptr, 2, 0);
        ResampleLut(src, 0, dst, 2, 0);
        ResampleLut(src, 4, dst, 0, 0);
        ResampleLut(src, 4, dst, 2, -1);
        ResampleLut(src, 4, dst, 2, 32);
        QVERIFY(dst[0] == -5 && dst[1] == -5);
    }

    void everySetMapsLikeThePlainLoop_data()
    {
        QTest::addColumn<int>("set");
        QTest::addColumn<int>("bits");
        QTest::addColumn<int>("entries");
        QTest::addColumn<Entries>("kind");
        QTest::addColumn<Words>("words");
        const auto sets = AvailableKernelSets();
        QCOMPARE(sets.back().name, "baseline");
        for (int set = 0; set < int(sets.size()); ++set) {
            const char* name = sets[set].name;
            QTest::addRow("%s, 8 bits", name) << set << 8 << 256 << Entries::Any << Words::Any;
            for (const int bits : {10, 12}) {
                const auto add = [&](const char* what, Entries kind, Words words) {
                    QTest::addRow("%s, %d bits, %s", name, bits, what)
                        << set << bits << (1 << bits) << kind << words;
                };
                add("right frames and tables", Entries::Fitting, Words::InTable);
                add("one entry too large", Entries::AllButOneFitting, Words::InTable);
                add("any word and entry", Entries::Any, Words::Any);
                add("words about the table's end", Entries::Fitting, Words::Boundary);
            }
            for (const int entries : {1, 2, 1023, 1025, 4095})
                QTest::addRow("%s, %d entries", name, entries)
                    << set << 16 << entries << Entries::Fitting << Words::Boundary;
        }
    }

    // Every count of pixels up to a few vectors, at every place within a vector, into another buffer and in
    // place.
    void everySetMapsLikeThePlainLoop()
    {
        QFETCH(int, set);
        QFETCH(int, bits);
        QFETCH(int, entries);
        QFETCH(Entries, kind);
        QFETCH(Words, words);
        const KernelSet kernels = AvailableKernelSets()[set];
        std::mt19937 random(1);
        FencedBytes fencedTable(sizeof(qint32) * entries);
        const auto table = makeTable(kind, entries, random);
        std::copy(table.begin(), table.end(), fencedTable.as<qint32>());

        for (int count = 1; count <= 300; ++count) {
            const auto pixels = makePixels(bits, words, count, table.size(), random);
            const auto expected = bits == 8 ? mapped<uchar>(pixels, table) : mapped<quint16>(pixels, table);
            const int width = count % 3 == 0 ? count / 3 : count;
            FencedBytes src(pixels.size(), random() % 70);
            FencedBytes dst(pixels.size(), random() % 70);
            std::copy(pixels.begin(), pixels.end(), src.as<uchar>());
            QCOMPARE(apply(kernels, bits, src.as<uchar>(), dst.as<uchar>(), width, count / width,
                           fencedTable.as<qint32>(), entries),
                     0);
            QVERIFY2(dst.bytes() == expected, qPrintable(QString::number(count)));
            QVERIFY(dst.marginIsWhole());
            QVERIFY(src.bytes() == pixels);
            QCOMPARE(apply(kernels, bits, src.as<uchar>(), src.as<uchar>(), width, count / width,
                           fencedTable.as<qint32>(), entries),
                     0);
            QVERIFY2(src.bytes() == expected, qPrintable(QString::number(count)));
            QVERIFY(src.marginIsWhole());
        }
    }

    void frameLargerThanTheCaches_data()
    {
        QTest::addColumn<int>("set");
        QTest::addColumn<int>("bits");
        QTest::addColumn<int>("offset"); // of the output's end from a page's
        const auto sets = AvailableKernelSets();
        for (int set = 0; set < int(sets.size()); ++set)
            for (const int bits : {8, 10, 12})
                for (const int offset : {0, 30, 63})
                    QTest::addRow("%s, %d bits, %d", sets[set].name, bits, offset) << set << bits << offset;
    }

    void frameLargerThanTheCaches()
    {
        QFETCH(int, set);
        QFETCH(int, bits);
        QFETCH(int, offset);
        const KernelSet kernels = AvailableKernelSets()[set];
        constexpr int kWidth = 1031, kHeight = 1033;
        std::mt19937 random(2);
        const auto table = makeTable(Entries::Fitting, 1 << bits, random);
        const auto pixels = makePixels(bits, Words::Any, kWidth * kHeight, table.size(), random);
        const auto expected = bits == 8 ? mapped<uchar>(pixels, table) : mapped<quint16>(pixels, table);
        FencedBytes src(pixels.size());
        FencedBytes dst(pixels.size(), offset);
        std::copy(pixels.begin(), pixels.end(), src.as<uchar>());
        QCOMPARE(
            apply(kernels, bits, src.as<uchar>(), dst.as<uchar>(), kWidth, kHeight, table.data(), 1 << bits),
            0);
        QVERIFY(dst.bytes() == expected);
        QVERIFY(dst.marginIsWhole());
    }

    void refuses_data()
    {
        QTest::addColumn<int>("absent"); // which pointer is null: 1 src, 2 dst, 3 table
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("entries");
        QTest::newRow("no input") << 1 << 2 << 2 << 4096;
        QTest::newRow("no table") << 3 << 2 << 2 << 4096;
        QTest::newRow("width 0") << 0 << 0 << 2 << 4096;
        QTest::newRow("both negative") << 0 << -2 << -2 << 4096;
        QTest::newRow("2^31 pixels") << 0 << 65536 << 32768 << 4096;
        QTest::newRow("2^32 + 4 pixels, 4 in 32 bits") << 0 << 4 << (1 << 30) + 1 << 4096;
        QTest::newRow("more entries than 12 bits") << 0 << 2 << 2 << 4097;
    }

    void refuses()
    {
        QFETCH(int, absent);
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(int, entries);
        const std::vector<qint32> table(4097, 1);
        FencedBytes src(8);
        FencedBytes dst(8);
        const auto before = dst.bytes();
        for (const int bits : {8, 16}) {
            if (bits == 8 && entries != 4096)
                continue;
            QCOMPARE(apply(FastestKernelSet(), bits, absent == 1 ? nullptr : src.as<uchar>(),
                           absent == 2 ? nullptr : dst.as<uchar>(), width, height,
                           absent == 3 ? nullptr : table.data(), entries),
                     -3);
        }
        QVERIFY(dst.bytes() == before);
    }
};

QTEST_GUILESS_MAIN(tst_FrameKernels)
#include "tst_FrameKernels.moc"
