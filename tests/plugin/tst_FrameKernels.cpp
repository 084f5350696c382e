// The pixel loops of every processor kind that runs here, against the loop that a reader would write.
#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "plugin/FrameKernels.h"
#include "support/Rows.h"

using namespace orlune;

namespace {

// Bytes that end right before a page that can't be touched, and begin with a margin of known bytes: whatever
// reads or writes past the end stops the test, whatever writes before the start is seen.
class FencedBytes
{
public:
    // The bytes lie endOffset before the page.
    template <class T>
    explicit FencedBytes(const std::vector<T>& content, std::size_t endOffset = 0)
    {
        const std::size_t size = content.size() * sizeof(T);
        const auto page = std::size_t(sysconf(_SC_PAGESIZE));
        m_mapped = (size + endOffset + kMargin + page - 1) / page * page + page;
        m_base = static_cast<uchar*>(
            mmap(nullptr, m_mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        if (m_base == MAP_FAILED || mprotect(m_base + m_mapped - page, page, PROT_NONE) != 0)
            qFatal("no memory for a fenced buffer");
        m_data = m_base + m_mapped - page - endOffset - size;
        std::memset(m_base, kFill, m_mapped - page);
        std::memcpy(m_data, content.data(), size);
    }

    ~FencedBytes() { munmap(m_base, m_mapped); }
    Q_DISABLE_COPY(FencedBytes)

    uchar* data() const { return m_data; }
    // These, and nothing was written before them.
    bool holds(const std::vector<uchar>& bytes) const
    {
        return std::equal(bytes.begin(), bytes.end(), m_data) &&
               std::all_of(m_data - kMargin, m_data, [](uchar byte) { return byte == kFill; });
    }

private:
    static constexpr std::size_t kMargin = 128;
    static constexpr uchar kFill = 0xa5;
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

// What each set of loops is run with.
const struct
{
    const char* name;
    int bits;
    int entries;
    Entries kind;
    Words words;
} kCases[] = {
    {"8 bits", 8, 256, Entries::Any, Words::Any},
    {"10 bits, right frames and tables", 10, 1024, Entries::Fitting, Words::InTable},
    {"12 bits, right frames and tables", 12, 4096, Entries::Fitting, Words::InTable},
    {"10 bits, one entry too large", 10, 1024, Entries::AllButOneFitting, Words::InTable},
    {"12 bits, one entry too large", 12, 4096, Entries::AllButOneFitting, Words::InTable},
    {"10 bits, any word and entry", 10, 1024, Entries::Any, Words::Any},
    {"12 bits, any word and entry", 12, 4096, Entries::Any, Words::Any},
    {"10 bits, words about the end", 10, 1024, Entries::Fitting, Words::Boundary},
    {"12 bits, words about the end", 12, 4096, Entries::Fitting, Words::Boundary},
    {"1 entry", 16, 1, Entries::Fitting, Words::Boundary},
    {"1023 entries", 16, 1023, Entries::Fitting, Words::Boundary},
    {"1025 entries", 16, 1025, Entries::Fitting, Words::Boundary},
};

} // namespace

class tst_FrameKernels : public QObject
{
    Q_OBJECT

private slots:
    void resample()
    {
        constexpr qint32 low = std::numeric_limits<qint32>::min();
        const struct
        {
            int shift;
            std::vector<qint32> src, expected;
        } rows[] = {{4, {16, 900, 900, 32, 900, 900}, {1, 2}},          // sampled, not averaged
                    {2, {4, 0, 8, 0, 12, 0, 400}, {1, 2, 3}},           // a rest is never read
                    {4, {-1, -16, -17, low}, {-1, -1, -2, -0x8000000}}, // negative entries round down
                    {1, {6, 8}, {3, 3, 3}}};                            // more than there are
        for (const auto& [shift, src, expected] : rows) {
            std::vector<qint32> dst(expected.size());
            ResampleLut(src.data(), int(src.size()), dst.data(), int(dst.size()), shift);
            QCOMPARE(dst, expected);
        }
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
        QTest::addColumn<int>("row");
        const auto sets = AvailableKernelSets();
        QCOMPARE(sets.back().name, "baseline");
        for (int set = 0; set < int(sets.size()); ++set)
            for (int row = 0; row < int(std::size(kCases)); ++row)
                QTest::addRow("%s, %s", sets[set].name, kCases[row].name) << set << row;
    }

    // Every count of pixels up to a few vectors, and more than the caches hold, at every place within a
    // vector, into another buffer and in place.
    void everySetMapsLikeThePlainLoop()
    {
        QFETCH(int, set);
        const auto& [name, bits, entries, kind, words] = currentRow(kCases);
        const KernelSet kernels = AvailableKernelSets()[set];
        std::mt19937 random(1);
        const auto table = makeTable(kind, entries, random);
        const FencedBytes fencedTable(table);

        for (int i = 1; i <= 303; ++i) {
            const int count = i > 300 ? 1031 * 1033 : i;
            const int width = count % 3 == 0 ? count / 3 : count;
            const auto pixels = makePixels(bits, words, count, table.size(), random);
            const auto expected = bits == 8 ? mapped<uchar>(pixels, table) : mapped<quint16>(pixels, table);
            const FencedBytes src(pixels, random() % 70);
            const FencedBytes dst(std::vector<uchar>(pixels.size()),
                                  i > 300 ? (i - 301) * 63 / 2 : random() % 70);
            for (const FencedBytes* out : {&dst, &src}) {
                QVERIFY(src.holds(pixels));
                QCOMPARE(apply(kernels, bits, src.data(), out->data(), width, count / width,
                               reinterpret_cast<const qint32*>(fencedTable.data()), entries),
                         0);
                QVERIFY2(out->holds(expected), qPrintable(QString::number(count)));
            }
        }
    }

    // What ProcessFrame never asks for.
    void refuses()
    {
        qint32 table[1] = {1};
        uchar pixels[8] = {};
        for (const int bits : {8, 16}) {
            QCOMPARE(apply(FastestKernelSet(), bits, nullptr, pixels, 2, 2, table, 1), -3);
            QCOMPARE(apply(FastestKernelSet(), bits, pixels, nullptr, 2, 2, table, 1), -3);
            QCOMPARE(apply(FastestKernelSet(), bits, pixels, pixels, 2, 2, nullptr, 1), -3);
        }
        for (const int entries : {0, 4097})
            QCOMPARE(apply(FastestKernelSet(), 16, pixels, pixels, 2, 2, table, entries), -3);
    }
};

QTEST_GUILESS_MAIN(tst_FrameKernels)
#include "tst_FrameKernels.moc"
